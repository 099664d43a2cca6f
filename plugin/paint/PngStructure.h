#pragma once

#include <QByteArray>

namespace vellix {

/// Checks PNG data (ISO/IEC 15948) without decoding it.
struct PngStructure {
    /// Returns whether the data is whole chunks from the signature to IEND, with a header that the standard
    /// allows, sides of 1..8192 pixels, correct checksums of the critical chunks, a palette where one is
    /// needed, and bytes enough to fill all rows. Data that fails cannot be decoded; data that passes may
    /// still not decompress. Allocates nothing.
    static bool IsSound(const QByteArray& packed);

    /// The data of a PNG without its texts, which may be packed and take a thousand times their bytes. One
    /// between chunks of pixels stays: it is a fault, and a reader has to see it.
    static QByteArray WithoutTexts(const QByteArray& packed);

    /// Whether the data begins as a PNG does.
    static bool IsPng(const QByteArray& packed);

    struct Header {
        int width = 0; ///< in pixels
        int height = 0;
        int depth = 0; ///< bits per channel
        int colorType = 0;
    };
    /// The header of data that IsSound.
    static Header HeaderOf(const QByteArray& packed);
};

} // namespace vellix
