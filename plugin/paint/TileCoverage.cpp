#include "paint/TileCoverage.h"

#include "paint/Composite.h"
#include "paint/CompositeKernels.h"

#include <QImage>

#include <algorithm>

namespace vellix {

TileCoverage TileCoverage::Of(const QImage& image) {
    TileCoverage coverage;
    if (!Composite::IsLayerImage(image)) {
        return coverage;
    }
    std::array<quint32, IMAGE_WIDTH> any;
    std::array<quint32, IMAGE_WIDTH> all;
    for (int row = 0; row < TileMask::COUNT; ++row) {
        any.fill(0);
        all.fill(~quint32(0));
        for (int y = row * TileMask::TILE_WIDTH; y < (row + 1) * TileMask::TILE_WIDTH; ++y) {
            CompositeKernels::Gather(reinterpret_cast<const quint32*>(image.constScanLine(y)), IMAGE_WIDTH,
                                     any.data(), all.data());
        }
        quint64 occupied = 0;
        quint64 opaque = 0;
        for (int column = 0; column < TileMask::COUNT; ++column) {
            quint32 anyBits = 0;
            quint32 allBits = ~quint32(0);
            for (int x = column * TileMask::TILE_WIDTH; x < (column + 1) * TileMask::TILE_WIDTH; ++x) {
                anyBits |= any[x];
                allBits &= all[x];
            }
            occupied |= quint64(anyBits >> 24 != 0) << column;
            opaque |= quint64(allBits >> 24 == 255) << column;
        }
        coverage.occupied.SetRow(row, occupied);
        coverage.opaque.SetRow(row, opaque);
    }
    return coverage;
}

} // namespace vellix
