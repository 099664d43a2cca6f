#pragma once

#include "exchange/ZipWriter.h"

namespace vellix {

struct LayeredDrawing;

/// The archive of the animation program Pencil2D: a main.xml that names cameras, layers and keys, and their
/// pictures in the folder data. A picture is held until the next key of its layer.
struct PclxWriter {
    /// The first frame that a key can have.
    static constexpr int FIRST_FRAME = 1;

    /// The whole number of frames per second that the program knows.
    static int RateOf(const LayeredDrawing& drawing);

    /// The archive of the animation until `lastFrame`. No picture may be keyed before FIRST_FRAME. The bytes
    /// of the pictures go in unchanged.
    static ZipWriter Archive(const LayeredDrawing& drawing, int lastFrame);
};

} // namespace vellix
