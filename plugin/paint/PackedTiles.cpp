#include "paint/PackedTiles.h"

#include "paint/Composite.h"
#include "paint/CompositeKernels.h"

#include <QImage>

namespace vellix {

using composite_kernels::TILE_VALUES;

PackedTiles::PackedTiles(const QImage& image) {
    if (!composite::IsLayerImage(image)) {
        return;
    }
    const std::ptrdiff_t stride = image.bytesPerLine() / 4;
    for (int row = 0; row < TileMask::COUNT; ++row) {
        coverage_.ReadRow(image, row);
        const quint64 occupied = coverage_.occupied.Row(row);
        if (occupied == 0) {
            continue;
        }
        const std::size_t bytes = std::size_t(qPopulationCount(occupied)) * TILE_VALUES;
        rows_[std::size_t(row)].reset(new quint8[bytes]);
        byteCount_ += bytes;
        quint8* tile = rows_[std::size_t(row)].get();
        const auto* pixels =
            reinterpret_cast<const quint32*>(image.constScanLine(row * TileMask::TILE_WIDTH));
        TileMask::ForEachRun(occupied, [&](int begin, int end) {
            for (int column = begin; column < end; ++column, tile += TILE_VALUES) {
                composite_kernels::SplitTile(tile, pixels + column * TileMask::TILE_WIDTH, stride);
            }
        });
    }
}

const quint8* PackedTiles::Tile(int row, int column) const {
    const quint64 before = coverage_.occupied.Row(row) & ((quint64(1) << column) - 1);
    return rows_[std::size_t(row)].get() + std::size_t(qPopulationCount(before)) * TILE_VALUES;
}

} // namespace vellix
