#include "faults/DiskFault.h"
#include "paint/ContactSheet.h"
#include "paint/ImageSequence.h"
#include "paint/PngWriter.h"

#include <QColor>
#include <QDir>
#include <QFile>
#include <QSet>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace vellix {
namespace {

TEST(ImageSequenceTest, NumbersTheLastRunInTheName) {
    const struct {
        const char* pattern;
        int frame;
        const char* path;
    } cases[] = {
        {"out/walk.####.png", 12, "out/walk.0012.png"}, {"walk.##.png", 12345, "walk.12345.png"},
        {"walk.####.png", -12, "walk.-012.png"},        {"#1/take#2.##.png", 3, "#1/take#2.03.png"},
        {"%1 %2/a%1.#.png", 7, "%1 %2/a%1.7.png"},      {"#/still.png", 7, "#/still.png"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(ImageSequence(c.pattern).GetPath(c.frame).toStdString(), c.path);
    }
    EXPECT_FALSE(ImageSequence("#/still.png").HasNumber());
}

QImage Drawing(const QColor& color) {
    QImage image(1024, 1024, QImage::Format_RGBA8888);
    image.fill(color);
    return image;
}

TEST(PngWriterTest, WritesEveryFileWholeOrNotAtAll) {
    const QTemporaryDir folder;
    const auto path = [&folder](int number) { return folder.filePath(QString("%1.png").arg(number)); };
    {
        PngWriter writer;
        for (int i = 0; i < 20; i += 2) {
            EXPECT_TRUE(writer.Write(Drawing(QColor(i, 0, 0, 128)), {path(i), path(i + 1)}));
        }
        EXPECT_EQ(writer.Finish(), QString());
    }
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(QImage(path(i)).pixelColor(500, 500), QColor(i - i % 2, 0, 0, 128));
    }
    // A failed write leaves what was there, and no part of a file.
    ASSERT_TRUE(QDir(folder.path()).mkdir("taken.png"));
    PngWriter writer;
    writer.Write(Drawing(Qt::red), {folder.filePath("taken.png")});
    writer.Write(Drawing(Qt::red), {folder.filePath("missing/a.png")});
    const QString fault = writer.Finish();
    EXPECT_TRUE(fault.contains(".png\" cannot be written")) << fault.toStdString();
    EXPECT_FALSE(writer.Write(Drawing(Qt::red), {folder.filePath("late.png")}));
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(), 21);
}

TEST(PngWriterTest, AFullDiskLeavesTheOldPictureAndStopsWriting) {
    const QTemporaryDir folder;
    const QString path = folder.filePath("a.png");
    ASSERT_TRUE(Drawing(Qt::blue).save(path));
    PngWriter writer;
    const DiskFault fault = DiskFault::Full(folder.path(), 100);
    writer.Write(Drawing(Qt::red), {path});
    EXPECT_EQ(writer.Finish(), '"' + path + "\" cannot be written: No space left on device.");
    EXPECT_EQ(QImage(path).pixelColor(500, 500), QColor(Qt::blue));
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

// Every drawing has a card of its own colour; one more than the sheet has cards for changes nothing.
TEST(ContactSheetTest, ShowsEveryDrawingOnce) {
    for (const int count : {1, 2, 24, 150}) {
        ContactSheet sheet(count, "persp");
        for (int i = 0; i < count; ++i) {
            sheet.Add(Drawing(QColor(255, i, 64)), QString::number(i));
        }
        const QImage full = sheet.GetImage();
        sheet.Add(Drawing(Qt::blue), "more");
        EXPECT_EQ(sheet.GetImage(), full);
        EXPECT_LE(std::max(full.width(), full.height()), +ContactSheet::MAX_SIDE);
        QSet<QRgb> colors;
        for (int y = 0; y < full.height(); y += 4) {
            for (int x = 0; x < full.width(); x += 4) {
                const QRgb pixel = full.pixel(x, y);
                if (qRed(pixel) == 255 && qBlue(pixel) == 64) {
                    colors.insert(pixel);
                }
            }
        }
        EXPECT_EQ(colors.size(), count);
    }
    const QImage longest = ContactSheet(ContactSheet::MAX_COUNT, "").GetImage();
    EXPECT_LE(std::max(longest.width(), longest.height()), +ContactSheet::MAX_SIDE);
}

} // namespace
} // namespace vellix
