#pragma once

#include <QByteArray>
#include <QImage>

namespace vellix {

/// PNG (ISO/IEC 15948) in memory. What drawings and exported pictures are is read and written by PngDecoder
/// and PngEncoder, where the build has libdeflate; everything else that a PNG may be by Qt. May run on any
/// thread. Throws std::bad_alloc when memory is short.
struct PngCodec {
    /// Encodes the image. Returns false, and leaves `packed` as it is, for what is no picture.
    static bool Encode(const QImage& image, QByteArray& packed);
    /// The bytes of an image that is a picture; that they cannot be made is taken for a lack of memory.
    static QByteArray Encoded(const QImage& image);

    /// Decodes any PNG with sides of at most MAX_PNG_SIDE, in the image format that comes closest. Returns
    /// false, and leaves `image` as it is, for bytes that cannot be decoded: see PngStructure, and streams
    /// that hold less than the picture. Allocates no more than the bytes, the picture, and for one that is
    /// in bands 4 MB on each processor.
    static bool Decode(const QByteArray& packed, QImage& image);
};

} // namespace vellix
