#pragma once

#include <QByteArray>
#include <QImage>

namespace vellix {

/// Our own reader of PNG (ISO/IEC 15948), for what PngEncoder writes of layer images, and other PNG of that
/// kind.
struct PngDecoder {
    enum class Result {
        Decoded,
        Damaged, ///< the pixels do not decompress to the picture, or not to the checksum
        NotOurs, ///< not RGBA of eight bits without interlace, or with chunks between that may change pixels
    };

    /// Decodes data that PngStructure found sound into a `Format_RGBA8888` image; leaves out metadata. Leaves
    /// the image as it is unless the result is Decoded. Reads the bands that a chunk names (PngBand) on all
    /// processors. Allocates one picture and, on each processor, a band of it and its bytes; a copy of the
    /// compressed pixels if they lie in several chunks. Throws std::bad_alloc when memory is short.
    static Result Decode(const QByteArray& packed, QImage& image);
};

} // namespace vellix
