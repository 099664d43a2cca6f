#pragma once

#include <Imath/ImathVec.h>
#include <vector>

namespace lightbox {

/// A vertex in the format of the line shader.
struct LineVertex {
    Imath::V3f position;
    Imath::V4f color;
};

/// The grid in the plane perpendicular to an axis (0 x, 1 y, 2 z), 24 units wide, with the plane's two axes.
std::vector<LineVertex> GridLines(int axis);

/// Three axes of length 1 from the origin with their letters, in view space: x and y on the screen, z towards
/// the eye. `right`, `up` and `back` are the camera's axes in world space.
std::vector<LineVertex> AxisIconLines(const Imath::V3f& right, const Imath::V3f& up, const Imath::V3f& back);

} // namespace lightbox
