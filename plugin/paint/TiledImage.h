#pragma once

#include "paint/TileMask.h"

#include <QtGlobal>

#include <array>
#include <cstddef>
#include <memory>
#include <vector>

class QImage;

namespace vellix {

/// A layer image of which only some tiles are kept; the others are 0. Most drawings cover few tiles: the
/// tiles of a few strokes take up some hundred kilobytes where the image takes up four megabytes.
class TiledImage {
public:
    static constexpr int TILE_PIXELS = TileMask::TILE_WIDTH * TileMask::TILE_WIDTH;

    /// A transparent image.
    TiledImage() = default;
    /// The tiles of a layer image that are not 0, colours under alpha 0 included. From any other image no
    /// tile is kept.
    explicit TiledImage(const QImage& image);

    /// The whole image. Throws std::bad_alloc when memory is short.
    QImage ToImage() const;

    const TileMask& Tiles() const { return tiles_; }
    /// The pixels of a tile, row by row; 0 for one that is not kept.
    const quint32* Tile(int row, int column) const;

    /// Keeps these tiles too, as they are: 0. Throws std::bad_alloc, with nothing changed, when memory is
    /// short.
    void Add(const TileMask& tiles);
    /// Lets go of those of these tiles that are 0.
    void RemoveEmpty(const TileMask& tiles);
    /// The pixels of a tile that is kept.
    quint32* Tile(int row, int column) { return PixelsAt(places_[PlaceOf(row, column)]); }

private:
    static constexpr int BLOCK_TILES = 16;
    using Block = std::unique_ptr<quint32[]>;

    static std::size_t PlaceOf(int row, int column) {
        return static_cast<std::size_t>(row) * TileMask::COUNT + static_cast<std::size_t>(column);
    }
    quint32* PixelsAt(quint16 number) const;

    TileMask tiles_;
    /// The number of each tile that is kept, in the blocks. Tiles keep their number, so that nothing moves.
    std::array<quint16, static_cast<std::size_t>(TileMask::COUNT) * TileMask::COUNT> places_;
    std::vector<Block> blocks_;
    std::vector<quint16> free_; ///< numbers in the blocks that no tile has
};

/// The tiles of a layer image, whichever way it is kept. Borrows the image.
class TileSource {
public:
    TileSource(const QImage& image);    // NOLINT(google-explicit-constructor): either may be passed
    TileSource(const TiledImage& image) // NOLINT(google-explicit-constructor)
        : tiles_(&image) {}

    /// The first pixel of a tile.
    const quint32* Tile(int row, int column) const;
    /// The pixels from one row of a tile to the next.
    std::ptrdiff_t Stride() const { return stride_; }
    /// Whether the tile is known to be 0.
    bool IsZero(int row, int column) const {
        return tiles_ != nullptr && !tiles_->Tiles().Contains(row, column);
    }

private:
    const TiledImage* tiles_ = nullptr;
    const quint32* pixels_ = nullptr;
    std::ptrdiff_t stride_ = TileMask::TILE_WIDTH;
};

} // namespace vellix
