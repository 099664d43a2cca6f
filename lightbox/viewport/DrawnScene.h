#pragma once

#include "scene/CameraView.h"
#include "scene/Material.h"
#include "viewport/DisplayOptions.h"

#include <Imath/ImathMatrix.h>
#include <Imath/ImathVec.h>
#include <memory>
#include <vector>

namespace lightbox {

class DagNode;
class MeshData;
class Scene;

/// A snapshot of everything that a viewport draws of a scene, sorted for drawing and independent of OpenGL.
/// Equal snapshots give the same picture.
struct DrawnScene {
    struct Surface {
        Imath::M44d world;
        std::shared_ptr<const MeshData> mesh;
        Material material;
        /// Whether its edges are drawn, too.
        bool hasLines;
        bool IsTransparent() const { return material.opacity < 0.999f; }
        bool operator==(const Surface& other) const;
    };
    /// The edges of a mesh.
    struct Wires {
        Imath::M44d world;
        std::shared_ptr<const MeshData> mesh;
        Imath::V4f color;
        bool operator==(const Wires& other) const;
    };
    /// The lines of a camera or a locator, two points per line, in object space.
    struct Outline {
        Imath::M44d world;
        std::vector<Imath::V3f> points;
        Imath::V4f color;
        bool operator==(const Outline& other) const;
    };

    /// `lookThrough` is the shape of the view's own camera, which is not drawn.
    DrawnScene(Scene& scene, const CameraView& cameraView, const DagNode& lookThrough,
               const DisplayOptions& displayOptions);
    bool operator==(const DrawnScene& other) const;

    CameraView view;
    DisplayOptions options;
    std::vector<Surface> surfaces;
    /// In drawing order: later ones lie over earlier ones.
    std::vector<Wires> wires;
    std::vector<Outline> outlines;
};

} // namespace lightbox
