#include "paint/ContactSheet.h"

#include <QColor>
#include <QFont>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace vellix {

namespace {

// Measures are pixels of the finished sheet. The warm grey sets off white cards and dark lines without glare.
const QColor TABLE_COLOR(0xd9, 0xd6, 0xd0);
const QColor CARD_COLOR(0xff, 0xfe, 0xfb);
const QColor EDGE_COLOR(0xb8, 0xb4, 0xac);
const QColor LABEL_COLOR(0x4a, 0x47, 0x42);
const int LARGEST_CELL = 256;
const int SMALLEST_CELL = 40;
const double SCREEN_ASPECT = 1.5;

int GapOf(int cell) {
    return std::max(4, cell / 16);
}
int LabelHeightOf(int cell) {
    return std::max(9, cell / 10);
}
int TitleHeightOf(int cell) {
    return std::max(14, cell / 7);
}

int ColumnsFor(int count) {
    return std::min(count, std::max(1, static_cast<int>(std::ceil(std::sqrt(count * SCREEN_ASPECT)))));
}

QSize SheetSize(int count, int columns, int cell) {
    const int rows = (count + columns - 1) / columns;
    const int gap = GapOf(cell);
    return QSize(gap + columns * (cell + gap),
                 gap + TitleHeightOf(cell) + gap + rows * (cell + LabelHeightOf(cell) + gap));
}

int CellFor(int count, int columns) {
    for (int cell = LARGEST_CELL; cell > SMALLEST_CELL; --cell) {
        const QSize size = SheetSize(count, columns, cell);
        if (size.width() <= ContactSheet::MAX_SIDE && size.height() <= ContactSheet::MAX_SIDE) {
            return cell;
        }
    }
    return SMALLEST_CELL;
}

QFont FontOf(int pixels) {
    QFont font;
    font.setPixelSize(std::max(6, pixels));
    return font;
}

} // namespace

ContactSheet::ContactSheet(int count, const QString& title)
    : count_(std::max(1, std::min(count, static_cast<int>(MAX_COUNT))))
    , columns_(ColumnsFor(count_))
    , cell_(CellFor(count_, columns_))
    , image_(SheetSize(count_, columns_, cell_), QImage::Format_RGB32) {
    image_.fill(TABLE_COLOR);
    PaintTitle(title);
}

void ContactSheet::PaintTitle(const QString& title) {
    const int gap = GapOf(cell_);
    const int height = TitleHeightOf(cell_);
    QPainter painter(&image_);
    painter.setPen(LABEL_COLOR);
    painter.setFont(FontOf(height * 2 / 3));
    const QRect line(gap, gap, image_.width() - 2 * gap, height);
    const QString shown = painter.fontMetrics().elidedText(title, Qt::ElideRight, line.width());
    painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, shown);
}

void ContactSheet::Add(const QImage& drawing, const QString& label) {
    if (added_ >= count_) {
        return;
    }
    const int gap = GapOf(cell_);
    const int labelHeight = LabelHeightOf(cell_);
    const int left = gap + added_ % columns_ * (cell_ + gap);
    const int top = 2 * gap + TitleHeightOf(cell_) + added_ / columns_ * (cell_ + labelHeight + gap);
    ++added_;

    const QRect card(left, top, cell_, cell_);
    QPainter painter(&image_);
    painter.fillRect(card, CARD_COLOR);
    Scale(drawing);
    painter.drawImage(card.topLeft() + QPoint((cell_ - small_.width()) / 2, (cell_ - small_.height()) / 2),
                      small_);
    painter.setPen(EDGE_COLOR);
    painter.drawRect(card.adjusted(0, 0, -1, -1));
    painter.setPen(LABEL_COLOR);
    painter.setFont(FontOf(labelHeight * 3 / 4));
    painter.drawText(QRect(left, top + cell_, cell_, labelHeight), Qt::AlignRight | Qt::AlignVCenter, label);
}

void ContactSheet::Scale(const QImage& drawing) {
    if (smallOf_ == drawing.cacheKey()) {
        return;
    }
    // Premultiplied before scaling: otherwise the colour of transparent pixels bleeds into the edges of the
    // lines.
    small_ = drawing.convertToFormat(QImage::Format_ARGB32_Premultiplied)
                 .scaled(QSize(cell_, cell_), Qt::KeepAspectRatio, Qt::SmoothTransformation);
    smallOf_ = drawing.cacheKey();
}

} // namespace vellix
