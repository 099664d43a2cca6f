#pragma once

#include <Imath/ImathBox.h>
#include <Imath/ImathMatrix.h>
#include <vector>

namespace lightbox {

class DagNode;
class Scene;

/// A visible shape. The scene owns the node.
struct VisibleShape {
    enum class State { Plain, Selected, Lead, Template };

    DagNode* shape = nullptr;
    /// The world matrix, for row vectors.
    Imath::M44d world;
    /// Lead: the shape or an ancestor was selected last.
    State state = State::Plain;
    bool IsSelected() const { return state == State::Selected || state == State::Lead; }
};

/// The shapes of a scene that nothing hides (visibility, overrides, level of detail, intermediate objects),
/// in DAG order.
std::vector<VisibleShape> FindVisibleShapes(Scene& scene);

/// The bounding box of a shape's drawing, its mesh or outline, in its own space. Empty when nothing is drawn.
Imath::Box3d BoundsOf(const DagNode& shape);
/// The world bounding box of a node and its descendants.
Imath::Box3d WorldBoundsOf(const DagNode& node);
/// The bounding box of the corners of `box` after `matrix`.
Imath::Box3d Transformed(const Imath::Box3d& box, const Imath::M44d& matrix);

} // namespace lightbox
