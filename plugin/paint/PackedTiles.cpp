#include "paint/PackedTiles.h"

#include "paint/Composite.h"
#include "paint/CompositeKernels.h"
#include "paint/TiledImage.h"

#include <QImage>

#include <cstring>

namespace vellix {

using composite_kernels::TILE_PIXELS;
using composite_kernels::TILE_VALUES;

namespace {

constexpr int WIDTH = TileMask::TILE_WIDTH;
/// Of a tile of one colour: its alphas and its colour.
constexpr std::size_t FLAT_BYTES = TILE_PIXELS + sizeof(quint32);

/// Where the tiles of a row begin, in words of four bytes from the row's first byte.
using Offsets = std::array<quint16, TileMask::COUNT>;
constexpr std::size_t OFFSET_UNIT = 4;

std::size_t Count(quint64 tiles) {
    return std::size_t(qPopulationCount(tiles));
}

const quint8* TileOf(const quint8* row, int column) {
    quint16 offset = 0;
    std::memcpy(&offset, row + std::size_t(column) * sizeof offset, sizeof offset);
    return row + offset * OFFSET_UNIT;
}

/// The first pixel of a tile of an image that is not fully transparent. There is one.
quint32 FirstVisible(const quint32* pixels, std::ptrdiff_t stride) {
    int i = 0;
    while (i < TILE_PIXELS - 1 && pixels[i / WIDTH * stride + i % WIDTH] >> 24 == 0) {
        ++i;
    }
    return pixels[i / WIDTH * stride + i % WIDTH];
}

} // namespace

PackedTiles::PackedTiles(const QImage& image) {
    if (composite::IsLayerImage(image)) {
        PackRows(image, TileMask::All());
    }
}

PackedTiles::PackedTiles(const TiledImage& image) {
    PackRows(image, image.Tiles());
}

PackedTiles::PackedTiles(const QImage& image, const PackedTiles& earlier, const TileMask& changed)
    : PackedTiles(earlier) {
    if (composite::IsLayerImage(image)) {
        PackRows(image, changed);
    }
}

PackedTiles::PackedTiles(const TiledImage& image, const PackedTiles& earlier, const TileMask& changed)
    : PackedTiles(earlier) {
    PackRows(image, changed);
}

template <typename Image>
void PackedTiles::PackRows(const Image& image, const TileMask& changed) {
    for (int row = 0; row < TileMask::COUNT; ++row) {
        if (changed.Row(row) != 0) {
            byteCount_ -= RowBytes(row);
            PackRow(image, row);
            byteCount_ += RowBytes(row);
        }
    }
}

void PackedTiles::PackRow(const QImage& image, int row) {
    coverage_.ReadRow(image, row);
    PackTiles(image, row);
}

void PackedTiles::PackRow(const TiledImage& image, int row) {
    quint64 occupied = 0;
    quint64 opaque = 0;
    TileMask::ForEachRun(image.Tiles().Row(row), [&](int begin, int end) {
        for (int column = begin; column < end; ++column) {
            const quint32* const pixels = image.Tile(row, column);
            quint32 any = 0;
            quint32 all = ~quint32(0);
            for (int i = 0; i < TILE_PIXELS; ++i) {
                any |= pixels[i];
                all &= pixels[i];
            }
            occupied |= quint64(any >> 24 != 0) << column; // it may have no more than colours under alpha 0
            opaque |= quint64(all >> 24 == 255) << column;
        }
    });
    coverage_.occupied.SetRow(row, occupied);
    coverage_.opaque.SetRow(row, opaque);
    PackTiles(image, row);
}

/// Packs the occupied tiles of a row of tiles.
void PackedTiles::PackTiles(const TileSource& image, int row) {
    rows_[std::size_t(row)].reset();
    const quint64 occupied = coverage_.occupied.Row(row);
    flat_.SetRow(row, FindFlatTiles(image, row, occupied));
    if (occupied == 0) {
        return;
    }
    rows_[std::size_t(row)].reset(new quint8[RowBytes(row)], std::default_delete<quint8[]>());
    quint8* const bytes = rows_[std::size_t(row)].get();
    Offsets offsets{};
    quint8* tile = bytes + sizeof offsets;
    TileMask::ForEachRun(occupied, [&](int begin, int end) {
        for (int column = begin; column < end; ++column) {
            const quint32* const pixels = image.Tile(row, column);
            if (flat_.Contains(row, column)) {
                const quint32 color = FirstVisible(pixels, image.Stride());
                composite_kernels::SplitAlphas(tile, pixels, image.Stride());
                std::memcpy(tile + TILE_PIXELS, &color, sizeof color);
            } else {
                composite_kernels::SplitTile(tile, pixels, image.Stride());
            }
            offsets[std::size_t(column)] = quint16((tile - bytes) / std::ptrdiff_t(OFFSET_UNIT));
            tile += TileBytes(row, column);
        }
    });
    std::memcpy(bytes, offsets.data(), sizeof offsets);
}

/// The occupied tiles of one colour in a row of tiles.
quint64 PackedTiles::FindFlatTiles(const TileSource& image, int row, quint64 occupied) {
    quint64 flat = 0;
    TileMask::ForEachRun(occupied, [&](int begin, int end) {
        for (int column = begin; column < end; ++column) {
            const quint32* const pixels = image.Tile(row, column);
            const quint32 color = FirstVisible(pixels, image.Stride());
            const bool isFlat = composite_kernels::IsFlat(pixels, image.Stride(), color);
            flat |= quint64(isFlat) << column;
        }
    });
    return flat;
}

std::size_t PackedTiles::RowBytes(int row) const {
    const quint64 occupied = coverage_.occupied.Row(row);
    const std::size_t flat = Count(flat_.Row(row));
    return occupied == 0 ? 0 : sizeof(Offsets) + (Count(occupied) - flat) * TILE_VALUES + flat * FLAT_BYTES;
}

std::size_t PackedTiles::TileBytes(int row, int column) const {
    return flat_.Contains(row, column) ? FLAT_BYTES : std::size_t(TILE_VALUES);
}

bool PackedTiles::SharesRow(const PackedTiles& other, int row) const {
    return rows_[std::size_t(row)] == other.rows_[std::size_t(row)];
}

TileMask PackedTiles::Differences(const PackedTiles& a, const PackedTiles& b) {
    TileMask changed;
    bool related = false;
    for (int row = 0; row < TileMask::COUNT; ++row) {
        const bool shared = a.SharesRow(b, row);
        changed.SetRow(row, shared ? 0 : a.coverage_.occupied.Row(row) | b.coverage_.occupied.Row(row));
        related = related || (shared && a.coverage_.occupied.Row(row) != 0);
    }
    if (!related) {
        return changed;
    }
    TileMask same;
    changed.ForEach([&](int row, int column) {
        if (a.coverage_.occupied.Contains(row, column) && b.coverage_.occupied.Contains(row, column) &&
            a.LooksAs(b, row, column)) {
            same.Add(row, column);
        }
    });
    return changed.Remove(same);
}

/// Whether a tile, occupied in both, is the same.
bool PackedTiles::LooksAs(const PackedTiles& other, int row, int column) const {
    return flat_.Contains(row, column) == other.flat_.Contains(row, column) &&
           std::memcmp(TileOf(RowAt(row).bytes, column), TileOf(other.RowAt(row).bytes, column),
                       TileBytes(row, column)) == 0;
}

PackedTiles::Tile PackedTiles::Row::At(int column) const {
    const quint8* const tile = TileOf(bytes, column);
    if ((flat >> column & 1) == 0) {
        return {tile, tile + 3 * TILE_PIXELS, 0};
    }
    quint32 color = 0;
    std::memcpy(&color, tile + TILE_PIXELS, sizeof color);
    return {nullptr, tile, color};
}

} // namespace vellix
