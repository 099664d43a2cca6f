#pragma once

#include <Imath/ImathBox.h>
#include <Imath/ImathMatrix.h>
#include <vector>

namespace lightbox {

class DagNode;
class Scene;

/// A shape that is there to be seen. The scene owns the node.
struct VisibleShape {
    enum class State { Plain, Selected, Lead, Template };

    DagNode* shape = nullptr;
    /// For row vectors.
    Imath::M44d world;
    /// Lead: it, or something above it, was selected last.
    State state = State::Plain;
    bool IsSelected() const { return state == State::Selected || state == State::Lead; }
};

/// The shapes of a scene that nothing hides (visibility, overrides, level of detail, intermediate objects),
/// in the order of the DAG.
std::vector<VisibleShape> FindVisibleShapes(Scene& scene);

/// Around what is drawn of a shape, in its own space: its mesh or its outline. Empty when nothing is.
Imath::Box3d BoundsOf(const DagNode& shape);
/// Around what is drawn of everything below a node (the node included), in the world.
Imath::Box3d WorldBoundsOf(const DagNode& node);
/// A box around the corners of a box that a matrix moved.
Imath::Box3d Transformed(const Imath::Box3d& box, const Imath::M44d& matrix);

} // namespace lightbox
