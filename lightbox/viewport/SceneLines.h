#pragma once

#include <Imath/ImathVec.h>
#include <vector>

namespace lightbox {

/// A vertex of a line, as the line program takes it.
struct LineVertex {
    Imath::V3f position;
    Imath::V4f color;
};

/// The ground grid in the plane across an axis (0 x, 1 y, 2 z), 24 units wide, with its two axes.
std::vector<LineVertex> GridLines(int axis);

/// Three axes of length 1 from the origin with their letters, turned as the view sees the world: `right`,
/// `up` and `back` are the camera's axes in the world. x and y on the screen, z towards the eye.
std::vector<LineVertex> AxisIconLines(const Imath::V3f& right, const Imath::V3f& up, const Imath::V3f& back);

} // namespace lightbox
