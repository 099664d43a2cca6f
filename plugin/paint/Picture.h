#pragma once

#include "paint/PackedTiles.h"
#include "paint/TileSums.h"

#include <QColor>
#include <QImage>

#include <memory>
#include <vector>

namespace vellix {

/// One picture of a stack. It has one of three forms, or none: a drawing (shared), a canvas that is being
/// painted on, or the merged result of a stack (both borrowed).
struct Picture {
    std::shared_ptr<const PackedTiles> drawing;
    const QImage* canvas = nullptr; ///< a layer image
    const TileCoverage* canvasCoverage = nullptr;
    const TileSums* merged = nullptr;

    int opacity = 255;   ///< 0..255; applies to drawings only
    bool tinted = false; ///< a drawing keeps only its alpha and takes the colour `tint`
    QColor tint;
    qint64 key = 0; ///< equal keys mean equal pixels; 0 for no picture

    /// Returns a new unique key. It is negative, so that it never equals a QImage::cacheKey.
    static qint64 NewKey();

    /// The tiles where the picture has pixels; null if it has no form.
    const TileCoverage* Coverage() const {
        return drawing != nullptr ? &drawing->Coverage() : merged ? &merged->coverage : canvasCoverage;
    }
};

/// Pictures from the bottom to the top.
using PictureStack = std::vector<Picture>;

} // namespace vellix
