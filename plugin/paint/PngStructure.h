#pragma once

#include <QByteArray>

namespace vellix {

/// The outer form of PNG bytes (ISO/IEC 15948, PNG), looked at before a decoder is let near
/// them.
struct PngStructure {
    /// Whether the bytes are chunks from the signature to IEND with right checksums where they matter, the
    /// picture's sides are 1..8192 pixels, and there are enough bytes to fill its rows. Bytes that are not
    /// are undecodable; bytes that are may still hold pixels that do not decompress. Allocates nothing.
    static bool IsSound(const QByteArray& packed);
};

} // namespace vellix
