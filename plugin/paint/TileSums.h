#pragma once

#include "paint/CompositeKernels.h"
#include "paint/TileCoverage.h"

#include <cstddef>
#include <memory>

namespace vellix {

/// A merged picture at the full precision of composition: the sums (see CompositeKernels) of every occupied
/// tile. Memory is reserved for all tiles but written only for occupied ones.
class TileSums {
public:
    TileSums()
        : sums_(
              new quint16[std::size_t(TileMask::COUNT) * TileMask::COUNT * composite_kernels::TILE_VALUES]) {}

    TileCoverage coverage;

    quint16* Tile(int row, int column) {
        return sums_.get() + std::size_t(row * TileMask::COUNT + column) * composite_kernels::TILE_VALUES;
    }
    const quint16* Tile(int row, int column) const { return const_cast<TileSums*>(this)->Tile(row, column); }

private:
    std::unique_ptr<quint16[]> sums_;
};

} // namespace vellix
