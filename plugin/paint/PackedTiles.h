#pragma once

#include "paint/TileCoverage.h"

#include <array>
#include <cstddef>
#include <memory>

class QImage;

namespace vellix {

/// A layer image made ready for composition: only the tiles that have pixels, one after the other in memory,
/// each parted into planes (see CompositeKernels). Composing scattered tiles of images whose rows lie a
/// memory page apart spends most of its time on finding the pages.
class PackedTiles {
public:
    /// Of an image that is no layer image nothing is packed.
    explicit PackedTiles(const QImage& image);

    const TileCoverage& Coverage() const { return m_coverage; }

    /// The planes of an occupied tile.
    const quint8* Tile(int row, int column) const;

    /// Memory that it takes.
    std::size_t ByteCount() const { return m_byteCount; }

private:
    TileCoverage m_coverage;
    std::array<std::unique_ptr<quint8[]>, TileMask::COUNT> m_rows;
    std::size_t m_byteCount = sizeof(PackedTiles);
};

} // namespace vellix
