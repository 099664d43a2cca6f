#pragma once

#include "scene/Node.h"

#include <Imath/ImathForward.h>
#include <string>
#include <vector>

namespace lightbox {

struct Transformation;

/// A node of the DAG. Each node has one parent; the parent of top-level nodes is the world, which has no
/// name.
class DagNode : public Node {
public:
    using Node::Node;

    /// Null for the world and for a node outside a scene.
    DagNode* Parent() const { return parent_; }
    bool IsWorld() const { return Type().ApiType() == MFn::kWorld; }
    const std::vector<DagNode*>& Children() const { return children_; }
    /// Index among the parent's children.
    int IndexInParent() const;
    /// Whether this is `node` or one of its descendants.
    bool IsBelow(const DagNode& node) const;
    std::vector<DagNode*> Shapes() const;

    /// The full DAG path: "|a|b".
    std::string FullPath() const;
    /// The shortest path that no other node matches.
    std::string PartialPath() const;

    /// The node's own transformation; identity for a shape. For row vectors: world = local * parent's world.
    Imath::Matrix44<double> LocalMatrix() const;
    /// The parts of LocalMatrix(). Only for transform nodes.
    Transformation LocalTransformation() const;
    Imath::Matrix44<double> WorldMatrix() const;
    /// Whether this node and all its ancestors are visible.
    bool IsVisible() const;

private:
    friend class Scene;

    DagNode* parent_ = nullptr;
    std::vector<DagNode*> children_;
};

} // namespace lightbox
