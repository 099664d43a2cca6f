#pragma once

#include "paint/TileMask.h"

class QImage;

namespace vellix {

/// Where a picture has pixels. Both masks err on the safe side: every tile with a pixel that is not fully
/// transparent is in `occupied`, and a tile in `opaque` holds nothing but opaque pixels.
struct TileCoverage {
    TileMask occupied;
    TileMask opaque;

    /// Looks at every pixel of the image. An image that is no layer image (Composite::IsLayerImage) covers
    /// nothing.
    static TileCoverage Of(const QImage& image);
    /// Looks at one row of a layer image's tiles.
    void ReadRow(const QImage& image, int row);
};

} // namespace vellix
