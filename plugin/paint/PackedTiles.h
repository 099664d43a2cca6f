#pragma once

#include "paint/TileCoverage.h"

#include <array>
#include <cstddef>
#include <memory>

class QImage;

namespace vellix {

class TiledImage;
class TileSource;

/// A layer image prepared for composition: only the tiles that have pixels, one after the other in memory,
/// each split into planes (see CompositeKernels). A tile of one colour, as most tiles of lines are, has its
/// plane of alphas alone: composing reads a quarter of the memory. In a plain image the rows of a tile lie a
/// memory page apart, and composing scattered tiles would spend most of its time on page look-ups.
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

    /// The planes of a tile.
    struct Tile {
        const quint8* planes; ///< null for a tile of one colour
        const quint8* alphas;
        quint32 color; ///< of such a tile, an image pixel's word; its highest byte does not matter
    };
    /// A row of tiles, borrowed.
    struct Row {
        const quint8* bytes;
        quint64 flat; ///< the tiles of one colour

        /// An occupied tile (see Coverage()).
        Tile At(int column) const;
    };
    Row RowAt(int row) const { return {rows_[std::size_t(row)].get(), flat_.Row(row)}; }

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
    void PackTiles(const TileSource& image, int row);
    static quint64 FindFlatTiles(const TileSource& image, int row, quint64 occupied);
    std::size_t RowBytes(int row) const;
    std::size_t TileBytes(int row, int column) const;
    bool LooksAs(const PackedTiles& other, int row, int column) const;
    bool SharesRow(const PackedTiles& other, int row) const;

    TileCoverage coverage_;
    TileMask flat_; ///< occupied tiles of one colour
    /// Of each row of tiles: where each tile begins (Offsets), and the tiles; null for an empty row.
    std::array<std::shared_ptr<quint8>, TileMask::COUNT> rows_;
    std::size_t byteCount_ = sizeof(PackedTiles);
};

} // namespace vellix
