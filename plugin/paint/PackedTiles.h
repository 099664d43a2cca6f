#pragma once

#include "paint/TileCoverage.h"

#include <array>
#include <cstddef>
#include <memory>

class QImage;

namespace vellix {

/// A layer image prepared for composition: only the tiles that have pixels, one after the other in memory,
/// each split into planes (see CompositeKernels). In a plain image the rows of a tile lie a memory page
/// apart, and composing scattered tiles would spend most of its time on page look-ups.
class PackedTiles {
public:
    /// Packs a layer image. From any other image nothing is packed.
    explicit PackedTiles(const QImage& image);

    const TileCoverage& Coverage() const { return coverage_; }

    /// The planes of a tile, which must be occupied (see Coverage()).
    const quint8* Tile(int row, int column) const;

    /// Memory used, in bytes.
    std::size_t ByteCount() const { return byteCount_; }

private:
    TileCoverage coverage_;
    std::array<std::unique_ptr<quint8[]>, TileMask::COUNT> rows_;
    std::size_t byteCount_ = sizeof(PackedTiles);
};

} // namespace vellix
