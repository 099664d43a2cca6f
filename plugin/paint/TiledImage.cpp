#include "paint/TiledImage.h"

#include "paint/Composite.h"
#include "paint/CompositeKernels.h"

#include <QImage>

#include <algorithm>
#include <cstring>

namespace vellix {

namespace {

constexpr int KEPT_WIDTH = TileMask::TILE_WIDTH;
constexpr std::size_t KEPT_ROW_BYTES = KEPT_WIDTH * sizeof(quint32);
constexpr std::size_t KEPT_TILE_BYTES = TiledImage::TILE_PIXELS * sizeof(quint32);

const quint32 ZERO_TILE[TiledImage::TILE_PIXELS] = {};

/// The tiles of one row of tiles that are not 0.
quint64 FilledTiles(const QImage& image, int row) {
    std::array<quint32, IMAGE_WIDTH> any{};
    std::array<quint32, IMAGE_WIDTH> all{};
    for (int y = row * KEPT_WIDTH; y < (row + 1) * KEPT_WIDTH; ++y) {
        composite_kernels::Gather(reinterpret_cast<const quint32*>(image.constScanLine(y)), IMAGE_WIDTH,
                                  any.data(), all.data());
    }
    quint64 filled = 0;
    for (std::size_t column = 0; column < TileMask::COUNT; ++column) {
        const auto begin = any.begin() + std::ptrdiff_t(column) * KEPT_WIDTH;
        const bool isFilled = std::any_of(begin, begin + KEPT_WIDTH, [](quint32 bits) { return bits != 0; });
        filled |= quint64(isFilled) << column;
    }
    return filled;
}

} // namespace

TiledImage::TiledImage(const QImage& image) {
    if (!composite::IsLayerImage(image)) {
        return;
    }
    TileMask filled;
    for (int row = 0; row < TileMask::COUNT; ++row) {
        filled.SetRow(row, FilledTiles(image, row));
    }
    Add(filled);
    const TileSource source(image);
    filled.ForEach([&](int row, int column) {
        const quint32* from = source.Tile(row, column);
        quint32* const to = Tile(row, column);
        for (int y = 0; y < KEPT_WIDTH; ++y, from += source.Stride()) {
            std::memcpy(to + y * KEPT_WIDTH, from, KEPT_ROW_BYTES);
        }
    });
}

QImage TiledImage::ToImage() const {
    QImage image = composite::OrBadAlloc(composite::TransparentImage());
    const std::ptrdiff_t stride = image.bytesPerLine() / 4;
    auto* const pixels = reinterpret_cast<quint32*>(image.bits());
    tiles_.ForEach([&](int row, int column) {
        const quint32* const from = Tile(row, column);
        quint32* to = pixels + row * KEPT_WIDTH * stride + std::ptrdiff_t(column) * KEPT_WIDTH;
        for (int y = 0; y < KEPT_WIDTH; ++y, to += stride) {
            std::memcpy(to, from + y * KEPT_WIDTH, KEPT_ROW_BYTES);
        }
    });
    return image;
}

const quint32* TiledImage::Tile(int row, int column) const {
    return tiles_.Contains(row, column) ? PixelsAt(places_[PlaceOf(row, column)]) : ZERO_TILE;
}

void TiledImage::Add(const TileMask& tiles) {
    TileMask added = tiles;
    added.Remove(tiles_);
    const auto count = std::size_t(added.Size());
    while (free_.size() < count) {
        const std::size_t first = blocks_.size() * BLOCK_TILES;
        free_.reserve(first + BLOCK_TILES); // all there are: RemoveEmpty() needs no memory
        blocks_.push_back(Block(new quint32[std::size_t(BLOCK_TILES) * TILE_PIXELS]));
        for (std::size_t number = first + BLOCK_TILES; number-- > first;) {
            free_.push_back(quint16(number));
        }
    }
    added.ForEach([&](int row, int column) {
        const quint16 number = free_.back();
        free_.pop_back();
        places_[PlaceOf(row, column)] = number;
        std::memset(PixelsAt(number), 0, KEPT_TILE_BYTES);
    });
    tiles_ |= added;
}

void TiledImage::RemoveEmpty(const TileMask& tiles) {
    TileMask empty;
    tiles.ForEach([&](int row, int column) {
        if (tiles_.Contains(row, column) && std::memcmp(Tile(row, column), ZERO_TILE, KEPT_TILE_BYTES) == 0) {
            empty.Add(row, column);
            free_.push_back(places_[PlaceOf(row, column)]);
        }
    });
    tiles_.Remove(empty);
}

quint32* TiledImage::PixelsAt(quint16 number) const {
    return blocks_[number / BLOCK_TILES].get() + std::size_t(number % BLOCK_TILES) * TILE_PIXELS;
}

TileSource::TileSource(const QImage& image)
    : pixels_(reinterpret_cast<const quint32*>(image.constBits()))
    , stride_(image.bytesPerLine() / 4) {}

const quint32* TileSource::Tile(int row, int column) const {
    return tiles_ != nullptr ? tiles_->Tile(row, column)
                             : pixels_ + row * KEPT_WIDTH * stride_ + std::ptrdiff_t(column) * KEPT_WIDTH;
}

} // namespace vellix
