#pragma once

#include "exchange/ZipWriter.h"

#include <QImage>
#include <QString>

namespace vellix {

struct LayeredDrawing;

/// OpenRaster 0.0.5 (freedesktop.org): one picture with its layers.
struct OpenRasterWriter {
    /// Why there can be no archive of these layers, as a sentence without its full stop; empty if there can.
    static QString Refusal(const LayeredDrawing& drawing);
    /// The archive of the layers' first pictures, whose bytes go in unchanged. A layer without a picture has
    /// an empty one. `merged` is what the visible layers look like together. Throws std::bad_alloc when
    /// memory is short.
    static ZipWriter Archive(const LayeredDrawing& drawing, const QImage& merged);
};

} // namespace vellix
