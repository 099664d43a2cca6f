#pragma once

#include "paint/TileMask.h"

class QImage;

namespace vellix {

/// The tiles where a picture has pixels. Both masks are conservative: `occupied` holds every tile with a
/// pixel that is not fully transparent, and `opaque` holds only tiles whose pixels are all opaque.
struct TileCoverage {
    TileMask occupied;
    TileMask opaque;

    /// Reads every pixel of the image. Returns an empty coverage for an image that is no layer image
    /// (composite::IsLayerImage).
    static TileCoverage Of(const QImage& image);
    /// Updates both masks for one row of tiles of a layer image.
    void ReadRow(const QImage& image, int row);
};

} // namespace vellix
