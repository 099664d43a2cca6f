// The packing half of DrawUtil.
#include "paint/DrawUtil.h"
#include "paint/ImageSize.h"

#include <QBuffer>
#include <QImageReader>
#include <QtEndian>

#include <algorithm>
#include <cstring>

namespace vellix {

namespace {

const QSize LAYER_SIZE(IMAGE_WIDTH, IMAGE_WIDTH);

// The fields of a PNG's first chunk (PNG specification, 11.2.2).
struct PngHeader {
    quint32 width = 0;
    quint32 height = 0;
    int bitDepth = 0;
    int colorType = 0;
};

bool ReadHeader(const QByteArray& packed, PngHeader& header) {
    static const char signatureAndChunk[] = "\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR";
    constexpr int prefix = int(sizeof signatureAndChunk) - 1;
    if (packed.size() < prefix + 13 || std::memcmp(packed.constData(), signatureAndChunk, prefix) != 0) {
        return false;
    }
    const uchar* field = reinterpret_cast<const uchar*>(packed.constData()) + prefix;
    header.width = qFromBigEndian<quint32>(field);
    header.height = qFromBigEndian<quint32>(field + 4);
    header.bitDepth = field[8];
    header.colorType = field[9];
    return true;
}

int BitsPerPixel(const PngHeader& header) {
    const int channels = header.colorType == 2   ? 3
                         : header.colorType == 4 ? 2
                         : header.colorType == 6 ? 4
                                                 : 1;
    return channels * header.bitDepth;
}

// Whether it is worth a decoder's allocation: the sides are in bounds, and there are enough bytes to fill the
// rows (deflate yields at most 1032 bytes from one).
bool IsPlausible(const QByteArray& packed) {
    PngHeader header;
    if (!ReadHeader(packed, header) || header.width < 1 || header.height < 1 ||
        header.width > quint32(MAX_PNG_SIDE) || header.height > quint32(MAX_PNG_SIDE)) {
        return false;
    }
    const qint64 rowBytes = (qint64(header.width) * BitsPerPixel(header) + 7) / 8;
    return qint64(header.height) * rowBytes <= 1032 * qint64(packed.size());
}

QImage Decode(const QByteArray& packed) {
    QImage image;
    if (IsPlausible(packed)) {
        QBuffer buffer;
        buffer.setData(packed);
        buffer.open(QIODevice::ReadOnly);
        if (!image.load(&buffer, "PNG")) {
            image = QImage();
        }
    }
    return image;
}

// The top left of any picture, on a fresh layer; nothing but pixels is taken over.
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
    QBuffer buffer(&packed);
    if (!buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, "PNG")) {
        packed.clear();
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
    return !image.isNull();
}

DrawUtil::PngContent DrawUtil::CheckPngBuffer(const QByteArray& packed) {
    const QImage picture = Decode(packed);
    if (picture.isNull()) {
        return PngContent::Undecodable;
    }
    return picture.size() == LAYER_SIZE ? PngContent::LayerSize : PngContent::OtherSize;
}

bool DrawUtil::NormalisePngBuffer(QByteArray& packed) {
    switch (CheckPngBuffer(packed)) {
    case PngContent::Undecodable:
        return false;
    case PngContent::LayerSize:
        return true;
    case PngContent::OtherSize:
        break;
    }
    QImage layer;
    QByteArray repacked;
    if (UnpackPngBuffer(packed, layer)) {
        PackPngBuffer(layer, repacked);
    }
    if (repacked.isEmpty()) {
        return false;
    }
    packed = repacked;
    return true;
}

} // namespace vellix
