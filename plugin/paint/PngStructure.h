#pragma once

#include <QByteArray>

namespace vellix {

/// Checks the chunk structure of PNG data (ISO/IEC 15948) before a decoder sees it.
struct PngStructure {
    /// Returns whether the data is whole chunks from the signature to IEND, critical chunks have correct
    /// checksums, the sides are 1..8192 pixels, and the data is long enough to fill all rows. Data that fails
    /// cannot be decoded; data that passes may still fail to decompress. Allocates nothing.
    static bool IsSound(const QByteArray& packed);
};

} // namespace vellix
