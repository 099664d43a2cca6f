#pragma once

namespace lightbox {

/// How a viewport shows the scene: what the menus of its panel and `modelEditor` set.
struct ViewOptions {
    enum class Renderer { Viewport2, Legacy };
    enum class Shading { Wireframe, Smooth };

    Renderer renderer = Renderer::Viewport2;
    Shading shading = Shading::Smooth;
    bool wireframeOnShaded = false;
    bool grid = true;
    bool cameras = true;
    bool locators = true;
    bool meshes = true;
    /// Shapes of plug-ins, drawings included.
    bool pluginShapes = true;
    /// The small axes in the corner.
    bool viewAxis = true;
    /// The camera's name at the lower edge.
    bool cameraName = true;

    bool operator==(const ViewOptions& other) const {
        return renderer == other.renderer && shading == other.shading &&
               wireframeOnShaded == other.wireframeOnShaded && grid == other.grid && cameras == other.cameras &&
               locators == other.locators && meshes == other.meshes && pluginShapes == other.pluginShapes &&
               viewAxis == other.viewAxis && cameraName == other.cameraName;
    }
    bool operator!=(const ViewOptions& other) const { return !(*this == other); }
};

} // namespace lightbox
