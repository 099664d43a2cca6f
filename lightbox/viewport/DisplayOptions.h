#pragma once

#include <QColor>

#include <tuple>

namespace lightbox {

/// The settings for how a viewport draws the scene.
struct DisplayOptions {
    enum class Shading { Wireframe, Smooth };

    Shading shading = Shading::Smooth;
    bool wireframeOnShaded = false;
    /// Draws every surface in the grey of the default material.
    bool defaultMaterial = false;
    bool grid = true;
    bool axisIcon = true;
    bool meshes = true;
    bool cameras = true;
    bool locators = true;
    bool selectionHighlighting = true;
    /// The background is a gradient from the first colour at the top to the second at the bottom.
    QColor backgroundTop{0x6e, 0x79, 0x86};
    QColor backgroundBottom{0x20, 0x22, 0x25};

    bool operator==(const DisplayOptions& other) const {
        const auto all = [](const DisplayOptions& o) {
            return std::tie(o.shading, o.wireframeOnShaded, o.defaultMaterial, o.grid, o.axisIcon, o.meshes,
                            o.cameras, o.locators, o.selectionHighlighting, o.backgroundTop,
                            o.backgroundBottom);
        };
        return all(*this) == all(other);
    }
};

} // namespace lightbox
