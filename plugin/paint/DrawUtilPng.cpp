// The PNG half of DrawUtil.
#include "paint/DrawUtil.h"
#include "paint/ImageSize.h"
#include "paint/PngStructure.h"

#include <QBuffer>

#include <algorithm>
#include <cstring>
#include <new>

namespace vellix {

namespace {

const QSize LAYER_SIZE(IMAGE_WIDTH, IMAGE_WIDTH);

bool HasMemoryFor(const QByteArray& packed) {
    const PngStructure::Header header = PngStructure::HeaderOf(packed);
    const int words = header.depth == 16 ? 2 : 1; // of four bytes, for a pixel
    return !QImage(header.width * words, header.height, QImage::Format_RGBA8888).isNull();
}

// Returns a null image for bytes that cannot be decoded. Throws std::bad_alloc when memory is short, which a
// decoder tells no differently.
QImage Decode(const QByteArray& packed) {
    QImage image;
    if (!PngStructure::IsSound(packed)) {
        return image;
    }
    QBuffer buffer;
    buffer.setData(packed);
    buffer.open(QIODevice::ReadOnly);
    if (!image.load(&buffer, "PNG")) {
        image = QImage();
        if (!HasMemoryFor(packed)) {
            throw std::bad_alloc();
        }
    }
    return image;
}

// Copies the top left of a picture of any size onto a new layer image. Copies pixels only, no metadata such
// as text keys. Returns a null image when memory is short.
QImage OnLayer(const QImage& picture) {
    const int width = std::min(picture.width(), IMAGE_WIDTH);
    const int height = std::min(picture.height(), IMAGE_WIDTH);
    const QImage visible = picture.copy(0, 0, width, height).convertToFormat(QImage::Format_RGBA8888);
    QImage layer(LAYER_SIZE, QImage::Format_RGBA8888);
    if (visible.isNull() || layer.isNull()) {
        return QImage();
    }
    layer.fill(Qt::transparent);
    for (int row = 0; row < height; ++row) {
        std::memcpy(layer.scanLine(row), visible.constScanLine(row), size_t(width) * 4);
    }
    return layer;
}

} // namespace

void DrawUtil::PackPngBuffer(const QImage& image, QByteArray& packed) {
    packed.clear();
    QByteArray written; // apart, so that an exception leaves no part of a picture
    QBuffer buffer(&written);
    if (buffer.open(QIODevice::WriteOnly) && image.save(&buffer, "PNG")) {
        buffer.close();
        packed = written;
    }
}

bool DrawUtil::UnpackPngBuffer(const QByteArray& packed, QImage& image) {
    image = QImage();
    QImage picture = Decode(packed);
    if (picture.isNull()) {
        return false;
    }
    if (picture.size() == LAYER_SIZE && picture.textKeys().isEmpty()) {
        image = std::move(picture).convertToFormat(QImage::Format_RGBA8888);
    } else {
        image = OnLayer(picture);
    }
    if (image.isNull()) {
        throw std::bad_alloc();
    }
    return true;
}

} // namespace vellix
