#pragma once

#include "viewport/DisplayOptions.h"

namespace lightbox {

/// What the menus of a viewport's panel set, and `modelEditor`.
struct ViewOptions {
    enum class Renderer { Viewport2, Legacy };

    Renderer renderer = Renderer::Viewport2;
    DisplayOptions display;
    /// Shapes of plug-ins, drawings included.
    bool pluginShapes = true;
    /// The camera's name at the lower edge.
    bool cameraName = true;
};

} // namespace lightbox
