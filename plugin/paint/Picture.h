#pragma once

#include "paint/PackedTiles.h"
#include "paint/TileSums.h"

#include <QColor>
#include <QImage>

#include <memory>
#include <vector>

namespace vellix {

/// One picture of a stack, in one of three forms, or nothing: a drawing (shared), a canvas that is being
/// painted on, or what a stack was merged into (both borrowed).
struct Picture {
    std::shared_ptr<const PackedTiles> drawing;
    const QImage* canvas = nullptr; ///< a layer image
    const TileCoverage* canvasCoverage = nullptr;
    const TileSums* merged = nullptr;

    int opacity = 255;   ///< 0..255, of a drawing
    bool tinted = false; ///< a drawing keeps its coverage only and takes the colour
    QColor tint;
    qint64 key = 0; ///< as long as it stays the same, so do the pixels; 0 for nothing

    /// A key that no other picture has. Such keys lie below 0, where no QImage::cacheKey does.
    static qint64 NewKey();

    /// Where it has pixels; null for nothing.
    const TileCoverage* Coverage() const {
        return drawing != nullptr  ? &drawing->Coverage()
               : merged != nullptr ? &merged->coverage
                                   : canvasCoverage;
    }
};

/// Pictures from the bottom to the top.
using PictureStack = std::vector<Picture>;

} // namespace vellix
