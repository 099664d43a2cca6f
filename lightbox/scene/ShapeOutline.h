#pragma once

#include <Imath/ImathVec.h>
#include <vector>

namespace lightbox {

class DagNode;

/// The lines that draw a shape without a surface, for drawing and picking: two points for each line, in the
/// shape's space. Cameras and locators have lines; meshes and shapes that plug-ins draw have none.
std::vector<Imath::V3f> ShapeOutline(const DagNode& shape);

} // namespace lightbox
