#pragma once

#include "scene/Node.h"
#include "scene/Transformation.h"

#include <Imath/ImathMatrix.h>
#include <string>
#include <vector>

namespace lightbox {

/// A node of the DAG. Each has one parent; the world is the parent of the top level and has no name.
class DagNode : public Node {
public:
    using Node::Node;

    /// Null for the world, and while the node is not in a scene.
    DagNode* Parent() const { return parent_; }
    bool IsWorld() const { return Type().ApiType() == MFn::kWorld; }
    const std::vector<DagNode*>& Children() const { return children_; }
    /// Position among the parent's children.
    int IndexInParent() const;
    /// Whether it is that node or lies below it.
    bool IsBelow(const DagNode& node) const;
    std::vector<DagNode*> Shapes() const;

    /// "|a|b".
    std::string FullPath() const;
    /// The shortest path that no other node answers to.
    std::string PartialPath() const;

    /// The node's own transformation; identity for a shape. For row vectors: world = local * parent's world.
    Imath::M44d LocalMatrix() const;
    /// Its parts; only for transforms.
    Transformation LocalTransformation() const;
    Imath::M44d WorldMatrix() const;
    /// Whether it and all above it are visible.
    bool IsVisible() const;

private:
    friend class Scene;

    DagNode* parent_ = nullptr;
    std::vector<DagNode*> children_;
};

} // namespace lightbox
