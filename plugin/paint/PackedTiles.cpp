#include "paint/PackedTiles.h"

#include "paint/Composite.h"
#include "paint/CompositeKernels.h"

#include <QImage>

#include <cstring>

namespace vellix {

using composite_kernels::TILE_VALUES;

PackedTiles::PackedTiles(const QImage& image) {
    if (!composite::IsLayerImage(image)) {
        return;
    }
    for (int row = 0; row < TileMask::COUNT; ++row) {
        PackRow(image, row);
    }
}

PackedTiles::PackedTiles(const QImage& image, const PackedTiles& earlier, const TileMask& changed)
    : PackedTiles(earlier) {
    if (!composite::IsLayerImage(image)) {
        return;
    }
    for (int row = 0; row < TileMask::COUNT; ++row) {
        if (changed.Row(row) != 0) {
            byteCount_ -= std::size_t(qPopulationCount(coverage_.occupied.Row(row))) * TILE_VALUES;
            PackRow(image, row);
        }
    }
}

void PackedTiles::PackRow(const QImage& image, int row) {
    rows_[std::size_t(row)].reset();
    coverage_.ReadRow(image, row);
    const quint64 occupied = coverage_.occupied.Row(row);
    if (occupied == 0) {
        return;
    }
    const std::size_t bytes = std::size_t(qPopulationCount(occupied)) * TILE_VALUES;
    rows_[std::size_t(row)].reset(new quint8[bytes], std::default_delete<quint8[]>());
    byteCount_ += bytes;
    quint8* tile = rows_[std::size_t(row)].get();
    const std::ptrdiff_t stride = image.bytesPerLine() / 4;
    const auto* pixels = reinterpret_cast<const quint32*>(image.constScanLine(row * TileMask::TILE_WIDTH));
    TileMask::ForEachRun(occupied, [&](int begin, int end) {
        for (int column = begin; column < end; ++column, tile += TILE_VALUES) {
            composite_kernels::SplitTile(tile, pixels + column * TileMask::TILE_WIDTH, stride);
        }
    });
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
