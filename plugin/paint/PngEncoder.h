#pragma once

#include <QByteArray>
#include <QImage>

namespace vellix {

/// Our own writer of PNG (ISO/IEC 15948), for the formats that drawings and exported pictures have.
struct PngEncoder {
    /// `Format_RGBA8888`, which becomes RGBA, and `Format_RGB32`, which becomes RGB.
    static bool CanEncode(const QImage& image);

    /// Encodes an image that CanEncode: its pixels, also the colours under alpha 0, and no metadata. Equal
    /// pixels give equal bytes. Throws std::bad_alloc when memory is short.
    static QByteArray Encode(const QImage& image);
};

} // namespace vellix
