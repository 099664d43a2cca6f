#include "paint/TileCoverage.h"

#include "paint/Composite.h"
#include "paint/CompositeKernels.h"

#include <QImage>

#include <array>

namespace vellix {

TileCoverage TileCoverage::Of(const QImage& image) {
    TileCoverage coverage;
    if (composite::IsLayerImage(image)) {
        for (int row = 0; row < TileMask::COUNT; ++row) {
            coverage.ReadRow(image, row);
        }
    }
    return coverage;
}

void TileCoverage::ReadRow(const QImage& image, int row) {
    std::array<quint32, IMAGE_WIDTH> any;
    std::array<quint32, IMAGE_WIDTH> all;
    any.fill(0);
    all.fill(~quint32(0));
    for (int y = row * TileMask::TILE_WIDTH; y < (row + 1) * TileMask::TILE_WIDTH; ++y) {
        composite_kernels::Gather(reinterpret_cast<const quint32*>(image.constScanLine(y)), IMAGE_WIDTH,
                                  any.data(), all.data());
    }
    quint64 occupiedBits = 0;
    quint64 opaqueBits = 0;
    for (int column = 0; column < TileMask::COUNT; ++column) {
        quint32 anyBits = 0;
        quint32 allBits = ~quint32(0);
        for (int x = column * TileMask::TILE_WIDTH; x < (column + 1) * TileMask::TILE_WIDTH; ++x) {
            anyBits |= any[x];
            allBits &= all[x];
        }
        occupiedBits |= quint64(anyBits >> 24 != 0) << column;
        opaqueBits |= quint64(allBits >> 24 == 255) << column;
    }
    occupied.SetRow(row, occupiedBits);
    opaque.SetRow(row, opaqueBits);
}

} // namespace vellix
