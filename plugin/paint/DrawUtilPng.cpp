// The PNG half of DrawUtil.
#include "paint/DrawUtil.h"
#include "paint/ImageSize.h"
#include "paint/PngCodec.h"

#include <QImage>

#include <algorithm>
#include <cstring>
#include <new>

namespace vellix {

namespace {

const QSize LAYER_SIZE(IMAGE_WIDTH, IMAGE_WIDTH);

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
    PngCodec::Encode(image, packed);
}

bool DrawUtil::UnpackPngBuffer(const QByteArray& packed, QImage& image) {
    image = QImage();
    QImage picture;
    if (!PngCodec::Decode(packed, picture)) {
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
