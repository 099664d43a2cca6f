#include "openmaya/ApiBridge.h"

#include <maya/MCursor.h>

#include <QBitmap>
#include <QCursor>
#include <QImage>

#include <algorithm>

using lightbox::ApiBridge;

enum class MCursor::Shape { Arrow, CrossHair, DoubleCrossHair, Edit, Pencil, Hand };

/// Not a QCursor, since the constants exist before the application.
struct MCursor::Content {
    Shape shape = Shape::Arrow;
    QImage bits;
    QImage mask;
    QPoint hotSpot;
};

const MCursor MCursor::defaultCursor;
const MCursor MCursor::crossHairCursor(Shape::CrossHair);
const MCursor MCursor::doubleCrossHairCursor(Shape::DoubleCrossHair);
const MCursor MCursor::editCursor(Shape::Edit);
const MCursor MCursor::pencilCursor(Shape::Pencil);
const MCursor MCursor::handCursor(Shape::Hand);

namespace {

/// Copies the rows of an X bitmap.
QImage BitmapOf(const unsigned char* bits, int width, int height) {
    QImage image(width, height, QImage::Format_MonoLSB);
    const int rowBytes = (width + 7) / 8;
    for (int row = 0; row < height; ++row) {
        std::copy(bits + static_cast<std::ptrdiff_t>(row) * rowBytes,
                  bits + static_cast<std::ptrdiff_t>(row + 1) * rowBytes, image.scanLine(row));
    }
    image.setColorTable({qRgb(255, 255, 255), qRgb(0, 0, 0)});
    return image;
}

} // namespace

MCursor::MCursor()
    : MCursor(Shape::Arrow) {}

MCursor::MCursor(Shape shape) {
    auto content = std::make_shared<Content>();
    content->shape = shape;
    content_ = std::move(content);
}

MCursor::MCursor(short width, short height, short hotSpotX, short hotSpotY, unsigned char* bits,
                 unsigned char* mask)
    : MCursor() {
    if (width > 0 && height > 0 && bits && mask) {
        auto content = std::make_shared<Content>();
        content->bits = BitmapOf(bits, width, height);
        content->mask = BitmapOf(mask, width, height);
        content->hotSpot = QPoint(hotSpotX, hotSpotY);
        content_ = std::move(content);
    }
}

MCursor::MCursor(const MCursor& other) = default;
// A cursor that was moved from is still one.
MCursor::MCursor(MCursor&& other) noexcept {
    content_ = other.content_;
}
MCursor& MCursor::operator=(const MCursor& other) = default;
MCursor& MCursor::operator=(MCursor&& other) noexcept {
    content_ = other.content_;
    return *this;
}
MCursor::~MCursor() = default;

bool MCursor::operator==(const MCursor& other) const {
    const Content& a = *content_;
    const Content& b = *other.content_;
    return a.shape == b.shape && a.bits == b.bits && a.mask == b.mask && a.hotSpot == b.hotSpot;
}

QCursor ApiBridge::ToQt(const MCursor& cursor) {
    const MCursor::Content& content = *cursor.content_;
    if (!content.bits.isNull()) {
        return QCursor(QBitmap::fromImage(content.bits), QBitmap::fromImage(content.mask),
                       content.hotSpot.x(), content.hotSpot.y());
    }
    switch (content.shape) {
    case MCursor::Shape::CrossHair:
    case MCursor::Shape::DoubleCrossHair:
    case MCursor::Shape::Pencil:
        return QCursor(Qt::CrossCursor);
    case MCursor::Shape::Hand:
        return QCursor(Qt::OpenHandCursor);
    case MCursor::Shape::Edit:
    case MCursor::Shape::Arrow:
        break;
    }
    return QCursor(Qt::ArrowCursor);
}
