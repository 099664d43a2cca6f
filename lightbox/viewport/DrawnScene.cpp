#include "viewport/DrawnScene.h"

#include "scene/DagNode.h"
#include "scene/MeshNode.h"
#include "scene/ShapeOutline.h"
#include "scene/VisibleShapes.h"

#include <algorithm>
#include <tuple>

namespace lightbox {

namespace {

using Imath::V4f;

const V4f LEAD_COLOR(0.26f, 1.0f, 0.64f, 1.0f);
const V4f SELECTED_COLOR(1.0f, 1.0f, 1.0f, 1.0f);
const V4f TEMPLATE_COLOR(0.48f, 0.48f, 0.50f, 1.0f);
const V4f WIRE_COLOR(0.05f, 0.09f, 0.30f, 1.0f);
const V4f OUTLINE_COLOR(0.08f, 0.14f, 0.42f, 1.0f);

V4f LineColor(VisibleShape::State state, bool highlights, const V4f& plain) {
    if (state == VisibleShape::State::Template) {
        return TEMPLATE_COLOR;
    }
    if (!highlights) {
        return plain;
    }
    return state == VisibleShape::State::Lead       ? LEAD_COLOR
           : state == VisibleShape::State::Selected ? SELECTED_COLOR
                                                    : plain;
}

/// The drawing order: a higher layer is drawn over a lower one.
int LayerOf(VisibleShape::State state) {
    return state == VisibleShape::State::Lead ? 2 : state == VisibleShape::State::Selected ? 1 : 0;
}

bool ShowsLines(const VisibleShape& visible, const DisplayOptions& options) {
    return options.shading == DisplayOptions::Shading::Wireframe || options.wireframeOnShaded ||
           visible.state == VisibleShape::State::Template ||
           (visible.IsSelected() && options.selectionHighlighting);
}

} // namespace

bool DrawnScene::Surface::operator==(const Surface& other) const {
    return std::tie(world, mesh, material, hasLines) ==
           std::tie(other.world, other.mesh, other.material, other.hasLines);
}

bool DrawnScene::Wires::operator==(const Wires& other) const {
    return std::tie(world, mesh, color) == std::tie(other.world, other.mesh, other.color);
}

bool DrawnScene::Outline::operator==(const Outline& other) const {
    return std::tie(world, points, color) == std::tie(other.world, other.points, other.color);
}

bool DrawnScene::operator==(const DrawnScene& other) const {
    return std::tie(view, options, surfaces, wires, outlines) ==
           std::tie(other.view, other.options, other.surfaces, other.wires, other.outlines);
}

DrawnScene::DrawnScene(Scene& scene, const CameraView& cameraView, const DagNode& lookThrough,
                       const DisplayOptions& displayOptions)
    : view(cameraView)
    , options(displayOptions) {
    std::vector<VisibleShape> shapes = FindVisibleShapes(scene);
    if (options.meshes && options.shading == DisplayOptions::Shading::Smooth) {
        for (const VisibleShape& visible : shapes) {
            if (!MeshNode::Is(*visible.shape) || visible.state == VisibleShape::State::Template) {
                continue;
            }
            if (const std::shared_ptr<const MeshData> mesh = MeshNode::Evaluate(*visible.shape)) {
                const Material material = options.defaultMaterial ? Material() : Material::Of(*visible.shape);
                surfaces.push_back({visible.world, mesh, material, ShowsLines(visible, options)});
            }
        }
    }
    // Draw selected shapes last, over the others.
    std::stable_sort(shapes.begin(), shapes.end(), [](const VisibleShape& a, const VisibleShape& b) {
        return LayerOf(a.state) < LayerOf(b.state);
    });
    for (const VisibleShape& visible : shapes) {
        const auto color = [&](const V4f& plain) {
            return LineColor(visible.state, options.selectionHighlighting, plain);
        };
        if (MeshNode::Is(*visible.shape)) {
            const bool isDrawn = options.meshes && ShowsLines(visible, options);
            if (const auto mesh = isDrawn ? MeshNode::Evaluate(*visible.shape) : nullptr) {
                wires.push_back({visible.world, mesh, color(WIRE_COLOR)});
            }
        } else if (visible.shape != &lookThrough &&
                   (visible.shape->Type().IsA("camera") ? options.cameras : options.locators)) {
            outlines.push_back({visible.world, ShapeOutline(*visible.shape), color(OUTLINE_COLOR)});
        }
    }
}

} // namespace lightbox
