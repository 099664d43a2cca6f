#pragma once

#include "paint/TileCoverage.h"

#include <array>
#include <cstddef>
#include <memory>

class QImage;

namespace vellix {

class TiledImage;

/// A layer image prepared for composition: only the tiles that have pixels, one after the other in memory,
/// each split into planes (see CompositeKernels). In a plain image the rows of a tile lie a memory page
/// apart, and composing scattered tiles would spend most of its time on page look-ups.
class PackedTiles {
public:
    /// Packs a layer image. From any other image nothing is packed.
    explicit PackedTiles(const QImage& image);
    /// Packs the tiles that are kept of a layer image.
    explicit PackedTiles(const TiledImage& image);
    /// The same for an image that differs from an earlier one only in the tiles `changed`. Shares the other
    /// rows of tiles with what was packed of that.
    PackedTiles(const QImage& image, const PackedTiles& earlier, const TileMask& changed);
    PackedTiles(const TiledImage& image, const PackedTiles& earlier, const TileMask& changed);

    const TileCoverage& Coverage() const { return coverage_; }

    /// The planes of a tile, which must be occupied (see Coverage()).
    const quint8* Tile(int row, int column) const;

    /// The tiles in which two drawings may look different: all of both, unless they share some.
    static TileMask Differences(const PackedTiles& a, const PackedTiles& b);

    /// Memory used, in bytes, with what is shared.
    std::size_t ByteCount() const { return byteCount_; }

private:
    /// Packs the rows of tiles in which something has changed.
    template <typename Image>
    void PackRows(const Image& image, const TileMask& changed);
    void PackRow(const QImage& image, int row);
    void PackRow(const TiledImage& image, int row);
    quint8* Reserve(int row, quint64 tiles);
    bool SharesRow(const PackedTiles& other, int row) const;

    TileCoverage coverage_;
    std::array<std::shared_ptr<quint8>, TileMask::COUNT> rows_; ///< arrays
    std::size_t byteCount_ = sizeof(PackedTiles);
};

} // namespace vellix
