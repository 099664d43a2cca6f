#include "paint/PngCodec.h"

#include "paint/PngStructure.h"

#ifdef VELLIX_WITH_LIBDEFLATE
#include "paint/PngDecoder.h"
#include "paint/PngEncoder.h"
#endif

#include <QBuffer>

#include <new>

namespace vellix {

namespace {

bool EncodeWithQt(const QImage& image, QByteArray& packed) {
    QByteArray written; // apart, so that an exception leaves no part of a picture
    QBuffer buffer(&written);
    if (!buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, "PNG")) {
        return false;
    }
    buffer.close();
    packed = written;
    return true;
}

bool HasMemoryFor(const QByteArray& packed) {
    const PngStructure::Header header = PngStructure::HeaderOf(packed);
    const int words = header.depth == 16 ? 2 : 1; // of four bytes, for a pixel
    return !QImage(header.width * words, header.height, QImage::Format_RGBA8888).isNull();
}

bool DecodeWithQt(const QByteArray& packed, QImage& image) {
    QImage picture;
    if (!picture.loadFromData(PngStructure::WithoutTexts(packed), "PNG")) {
        // Qt tells a lack of memory no differently from a fault of the bytes.
        if (!HasMemoryFor(packed)) {
            throw std::bad_alloc();
        }
        return false;
    }
    image = picture;
    return true;
}

} // namespace

bool PngCodec::Encode(const QImage& image, QByteArray& packed) {
#ifdef VELLIX_WITH_LIBDEFLATE
    if (PngEncoder::CanEncode(image)) {
        packed = PngEncoder::Encode(image);
        return true;
    }
#endif
    return EncodeWithQt(image, packed);
}

QByteArray PngCodec::Encoded(const QImage& image) {
    QByteArray packed;
    if (!Encode(image, packed)) {
        throw std::bad_alloc();
    }
    return packed;
}

bool PngCodec::Decode(const QByteArray& packed, QImage& image) {
    if (!PngStructure::IsSound(packed)) {
        return false;
    }
#ifdef VELLIX_WITH_LIBDEFLATE
    const PngDecoder::Result result = PngDecoder::Decode(packed, image);
    if (result != PngDecoder::Result::NotOurs) {
        return result == PngDecoder::Result::Decoded;
    }
#endif
    return DecodeWithQt(packed, image);
}

} // namespace vellix
