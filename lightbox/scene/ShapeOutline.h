#pragma once

#include <Imath/ImathVec.h>
#include <vector>

namespace lightbox {

class DagNode;

/// The lines by which a shape without a surface is drawn and picked, in its own space: two points for each
/// line. Cameras and locators have some; meshes and what plug-ins draw themselves have none.
std::vector<Imath::V3f> ShapeOutline(const DagNode& shape);

} // namespace lightbox
