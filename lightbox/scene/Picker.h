#pragma once

#include "scene/CameraView.h"
#include "scene/VisibleShapes.h"

#include <QRectF>

#include <vector>

namespace lightbox {

class Scene;

/// Finds the shapes at a position or in a rectangle of a viewport. View pixels from the bottom left, y
/// upward.
class Picker {
public:
    /// Which shapes can be picked; matches what the viewport shows.
    struct Filter {
        bool meshes = true;
        bool cameras = true;
        bool locators = true;
        /// Surfaces are drawn and hide what is behind them. Otherwise only lines can be hit.
        bool surfaces = true;
        /// The shape of the view's own camera, which is not drawn.
        const DagNode* lookThrough = nullptr;
    };

    Picker(Scene& scene, const CameraView& view, const Filter& filter);

    /// The nearest shape whose surface lies at the position, or a line of it within `tolerance` pixels; null
    /// for none.
    DagNode* At(double x, double y, double tolerance) const;
    /// The shapes that the rectangle touches, hidden ones included, in DAG order.
    std::vector<DagNode*> Inside(const QRectF& rectangle) const;

private:
    /// A line in view pixels with the depth of its ends, clipped at the near clipping plane.
    struct Line {
        Imath::V3d start;
        Imath::V3d end;
    };
    /// Calls the function with each line of a shape in front of the eye until the function returns true.
    template <class Function>
    bool AnyLine(const VisibleShape& visible, const Function& function) const;
    /// The depth where the surface of a shape is hit, from 0 to 1; above 1 for a miss.
    double HitSurface(const VisibleShape& visible, double x, double y) const;
    bool Touches(const VisibleShape& visible, const QRectF& rectangle) const;

    CameraView view_;
    Filter filter_;
    std::vector<VisibleShape> shapes_;
};

} // namespace lightbox
