#pragma once

#include "scene/CameraView.h"
#include "scene/VisibleShapes.h"

#include <QRectF>

#include <vector>

namespace lightbox {

class Scene;

/// Finds what lies at a place of a viewport. View pixels, from the bottom left with y upward.
class Picker {
public:
    /// What can be picked, as the viewport shows it.
    struct Filter {
        bool meshes = true;
        bool cameras = true;
        bool locators = true;
        /// Surfaces are seen and hide what is behind them; else only lines are there.
        bool surfaces = true;
        /// The shape of the camera that is looked through, which is not seen itself.
        const DagNode* lookThrough = nullptr;
    };

    Picker(Scene& scene, const CameraView& view, const Filter& filter);

    /// The nearest shape whose surface lies there, or whose lines lie within `tolerance`; null for none.
    DagNode* At(double x, double y, double tolerance) const;
    /// The shapes of which something lies in the rectangle, also those behind others, in the order of the
    /// DAG.
    std::vector<DagNode*> Inside(const QRectF& rectangle) const;

private:
    /// A line in view pixels with the depth of its ends, cut off at the near clipping plane.
    struct Line {
        Imath::V3d start;
        Imath::V3d end;
    };
    /// Calls the function with each line of a shape that lies in front of the eye until it answers true.
    template <class Function>
    bool AnyLine(const VisibleShape& visible, const Function& function) const;
    /// The depth at which the surface of a shape is hit, from 0 to 1; above 1 when it is not.
    double HitSurface(const VisibleShape& visible, double x, double y) const;
    bool Touches(const VisibleShape& visible, const QRectF& rectangle) const;

    CameraView view_;
    Filter filter_;
    std::vector<VisibleShape> shapes_;
};

} // namespace lightbox
