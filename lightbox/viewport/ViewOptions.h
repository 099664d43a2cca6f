#pragma once

#include "viewport/DisplayOptions.h"

namespace lightbox {

/// The settings of one viewport. Its panel's menus and `modelEditor` change them.
struct ViewOptions {
    enum class Renderer { Viewport2, Legacy };

    Renderer renderer = Renderer::Viewport2;
    DisplayOptions display;
    /// Shows shapes of plug-ins, including drawings.
    bool pluginShapes = true;
    /// Shows the camera's name at the lower edge.
    bool cameraName = true;
};

} // namespace lightbox
