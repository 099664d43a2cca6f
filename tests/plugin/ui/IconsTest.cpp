#include "ui/Icons.h"

#include "paint/ToolTable.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace vellix {

namespace {

/// Grey that stands out from dark and from light: the host shows its tools' icons as they are in the file.
const QColor FILE_LINE(134, 140, 146);

QImage Drawn(Icon icon, int side) {
    QImage image(side, side, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.scale(side / 24.0, side / 24.0);
    Icons::Draw(icon, painter, FILE_LINE, Icons::Accent());
    return image;
}

} // namespace

// The files that the host shows are the panels' own drawings. After a change of a drawing VELLIX_ICON_FOLDER
// names where they are written anew.
TEST(IconsTest, TheHostsFilesAreTheSameDrawings) {
    const struct {
        const char* name;
        Icon icon;
    } rows[] = {{"draw_context_01", ToolType::Pencil},
                {"transform_context_01", ToolType::Transform},
                {"refresh", Icon::Refresh},
                {"delete_layer", Icon::DeleteLayer}};
    const QString folder = qEnvironmentVariable("VELLIX_ICON_FOLDER");
    for (const auto& row : rows) {
        for (const int scale : {1, 2}) {
            const QString name = QString("%1%2.png").arg(row.name, scale == 2 ? "@2x" : "");
            const QImage drawn = Drawn(row.icon, 32 * scale);
            if (!folder.isEmpty()) {
                ASSERT_TRUE(drawn.save(folder + '/' + name));
                continue;
            }
            const QImage file = QImage(":/icons/" + name).convertToFormat(QImage::Format_ARGB32);
            ASSERT_EQ(file.size(), drawn.size()) << row.name;
            int worst = 0;
            for (int y = 0; y < drawn.height(); ++y) {
                for (int x = 0; x < drawn.width(); ++x) {
                    worst = qMax(worst, qAbs(qAlpha(file.pixel(x, y)) - qAlpha(drawn.pixel(x, y))));
                }
            }
            EXPECT_LE(worst, 16) << name.toStdString();
        }
    }
}

// A dozen icons on one sheet: none is empty, none is another one, none is cut at the edge.
TEST(IconsTest, EachIsADrawingOfItsOwn) {
    QList<Icon> icons = {ToolType::Transform};
    for (const ToolRow& tool : AllTools()) {
        icons.append(tool.type);
    }
    for (int name = 0; name <= int(Icon::Options); ++name) {
        icons.append(Icon::Name(name));
    }
    QList<QImage> all;
    for (int i = 0; i < icons.size(); ++i) {
        const QImage image = Drawn(icons[i], 48);
        int ink = 0;
        for (int y = 0; y < 48; ++y) {
            for (int x = 0; x < 48; ++x) {
                const int alpha = qAlpha(image.pixel(x, y));
                ink += alpha > 128 ? 1 : 0;
                EXPECT_FALSE((x == 0 || y == 0 || x == 47 || y == 47) && alpha > 0) << i;
            }
        }
        EXPECT_GT(ink, 60) << i;
        EXPECT_LT(ink, 48 * 48 / 2) << i;
        EXPECT_FALSE(all.contains(image)) << i;
        all.append(image);
    }
    const QString folder = qEnvironmentVariable("VELLIX_PICTURES");
    if (!folder.isEmpty()) {
        QImage sheet(6 * 56, 2 * 4 * 56, QImage::Format_RGB32);
        sheet.fill(QColor(58, 58, 60));
        QPainter painter(&sheet);
        painter.fillRect(0, 4 * 56, sheet.width(), 4 * 56, QColor(239, 239, 239));
        for (int i = 0; i < all.size(); ++i) {
            painter.drawImage(i % 6 * 56 + 4, i / 6 * 56 + 4, all[i]);
            painter.drawImage(i % 6 * 56 + 4, 4 * 56 + i / 6 * 56 + 4, all[i]);
        }
        painter.end();
        sheet.save(folder + "/icons.png");
    }
}

} // namespace vellix
