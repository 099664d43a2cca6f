#include "paint/PackedTiles.h"

#include "paint/Composite.h"
#include "paint/CompositeKernels.h"
#include "paint/TiledImage.h"

#include <QImage>

#include <cstring>

namespace vellix {

using composite_kernels::TILE_PIXELS;
using composite_kernels::TILE_VALUES;

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
            byteCount_ -= std::size_t(qPopulationCount(coverage_.occupied.Row(row))) * TILE_VALUES;
            PackRow(image, row);
            byteCount_ += std::size_t(qPopulationCount(coverage_.occupied.Row(row))) * TILE_VALUES;
        }
    }
}

/// Makes room for some tiles of a row in place of those it had.
quint8* PackedTiles::Reserve(int row, quint64 tiles) {
    std::shared_ptr<quint8>& packed = rows_[std::size_t(row)];
    packed.reset();
    if (tiles != 0) {
        const std::size_t bytes = std::size_t(qPopulationCount(tiles)) * TILE_VALUES;
        packed.reset(new quint8[bytes], std::default_delete<quint8[]>());
    }
    return packed.get();
}

void PackedTiles::PackRow(const QImage& image, int row) {
    coverage_.ReadRow(image, row);
    const quint64 occupied = coverage_.occupied.Row(row);
    quint8* tile = Reserve(row, occupied);
    const std::ptrdiff_t stride = image.bytesPerLine() / 4;
    const auto* pixels = reinterpret_cast<const quint32*>(image.constScanLine(row * TileMask::TILE_WIDTH));
    TileMask::ForEachRun(occupied, [&](int begin, int end) {
        for (int column = begin; column < end; ++column, tile += TILE_VALUES) {
            composite_kernels::SplitTile(tile, pixels + column * TileMask::TILE_WIDTH, stride);
        }
    });
}

// A tile that has no more than colours under alpha 0 is not occupied.
void PackedTiles::PackRow(const TiledImage& image, int row) {
    const quint64 kept = image.Tiles().Row(row);
    quint8* tile = Reserve(row, kept);
    quint64 occupied = 0;
    quint64 opaque = 0;
    TileMask::ForEachRun(kept, [&](int begin, int end) {
        for (int column = begin; column < end; ++column) {
            composite_kernels::SplitTile(tile, image.Tile(row, column), TileMask::TILE_WIDTH);
            const quint8* const alpha = tile + 3 * TILE_PIXELS;
            quint8 any = 0;
            quint8 all = 255;
            for (int i = 0; i < TILE_PIXELS; ++i) {
                any |= alpha[i];
                all &= alpha[i];
            }
            if (any != 0) {
                occupied |= quint64(1) << column;
                opaque |= quint64(all == 255) << column;
                tile += TILE_VALUES;
            }
        }
    });
    if (occupied == 0) {
        rows_[std::size_t(row)].reset();
    }
    coverage_.occupied.SetRow(row, occupied);
    coverage_.opaque.SetRow(row, opaque);
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
            std::memcmp(a.Tile(row, column), b.Tile(row, column), TILE_VALUES) == 0) {
            same.Add(row, column);
        }
    });
    return changed.Remove(same);
}

const quint8* PackedTiles::Tile(int row, int column) const {
    const quint64 before = coverage_.occupied.Row(row) & ((quint64(1) << column) - 1);
    return rows_[std::size_t(row)].get() + std::size_t(qPopulationCount(before)) * TILE_VALUES;
}

} // namespace vellix
