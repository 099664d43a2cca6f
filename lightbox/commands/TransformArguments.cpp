#include "commands/TransformArguments.h"

#include "commands/SceneArguments.h"
#include "scene/DagNode.h"
#include "scene/Edit.h"
#include "scene/Host.h"
#include "scene/Scene.h"
#include "scene/Transformation.h"
#include "text/NumberText.h"

namespace lightbox::mel {

using Imath::M44d;
using Imath::V3d;

namespace {

/// Returns the rotation matrix of angles in degrees.
M44d RotationMatrix(const V3d& angles, int order) {
    Transformation turn;
    turn.rotate = angles;
    turn.rotateOrder = order;
    return turn.Matrix();
}

/// Returns the node's rotation in its parent's space, including its rotate axis.
M44d LocalRotation(DagNode& node) {
    return RotationMatrix(GetTriple(node, "rotateAxis"), 0) *
           RotationMatrix(GetTriple(node, "rotate"), RotateOrder(node));
}

/// Returns the product of the rotations of a node and all its ancestors. It leaves out the skew from their
/// scales, so that a query returns the angles that were set.
M44d WorldRotation(DagNode* node) {
    M44d rotation;
    for (; node && node->Type().IsTransform(); node = node->Parent()) {
        rotation *= LocalRotation(*node);
    }
    return rotation;
}

/// Returns the value of `rotate` that gives this local rotation, after the node's rotate axis.
V3d AnglesFor(DagNode& node, const M44d& localRotation, int order) {
    Transformation parts;
    parts.rotateAxis = GetTriple(node, "rotateAxis");
    parts.rotateOrder = order;
    parts.SetMatrix(localRotation);
    return parts.rotate;
}

} // namespace

std::vector<DagNode*> Transforms(const CommandCall& call, const std::vector<std::string>& names) {
    const NodeList nodes = names.empty() ? call.GetHost().scene().selection().Get() : NodesNamed(call, names);
    std::vector<DagNode*> transforms;
    for (const std::shared_ptr<Node>& node : nodes) {
        auto* dag = dynamic_cast<DagNode*>(node.get());
        if (dag && dag->Type().IsShape()) {
            dag = dag->Parent();
        }
        if (!dag || !dag->Type().IsTransform()) {
            call.Fail("The object '" + Scene::ShownName(*node) + "' cannot be moved.");
        }
        transforms.push_back(dag);
    }
    if (transforms.empty()) {
        call.Fail("No object was specified.");
    }
    return transforms;
}

bool IsNumeric(const Value& value) {
    double number = 0.0;
    return value.IsNumber() || (value.IsString() && IsNumber(value.Text(), number));
}

V3d GetTriple(DagNode& node, const char* attribute) {
    const AttributeValue value = Plug::Of(node, attribute).Get();
    const auto& numbers = std::get<std::vector<double>>(value);
    return V3d(numbers[0], numbers[1], numbers[2]);
}

void SetTriple(Host& host, DagNode& node, const char* attribute, const V3d& value) {
    const V3d before = GetTriple(node, attribute);
    const Plug plug = Plug::Of(node, attribute);
    for (unsigned i = 0; i < 3; ++i) {
        if (before[i] != value[i]) {
            edit::SetPlug(host, plug.Child(i), value[i]);
        }
    }
}

int RotateOrder(DagNode& node) {
    return static_cast<int>(Plug::Of(node, "rotateOrder").Number());
}

M44d ParentMatrix(DagNode& node) {
    return node.Parent() ? node.Parent()->WorldMatrix() : M44d();
}

V3d WorldPosition(DagNode& node) {
    return node.WorldMatrix().translation();
}

V3d OffsetInParent(DagNode& node, const V3d& offset) {
    V3d moved;
    ParentMatrix(node).inverse().multDirMatrix(offset, moved);
    return moved;
}

V3d OffsetBeforeRotation(DagNode& node, const V3d& offset) {
    V3d turned;
    LocalRotation(node).inverse().multDirMatrix(offset, turned);
    return turned;
}

V3d WorldAngles(DagNode& node) {
    Transformation world;
    world.rotateOrder = RotateOrder(node);
    world.SetMatrix(WorldRotation(&node));
    return world.rotate;
}

V3d AnglesForWorld(DagNode& node, const V3d& angles) {
    const int order = RotateOrder(node);
    return AnglesFor(node, RotationMatrix(angles, order) * WorldRotation(node.Parent()).inverse(), order);
}

V3d TurnedAngles(DagNode& node, const V3d& turn, int order, bool aboutWorld) {
    const V3d before = GetTriple(node, "rotate");
    const bool isOneAxis = (before == V3d(before.x, 0, 0) && turn == V3d(turn.x, 0, 0)) ||
                           (before == V3d(0, before.y, 0) && turn == V3d(0, turn.y, 0)) ||
                           (before == V3d(0, 0, before.z) && turn == V3d(0, 0, turn.z));
    const M44d parent = aboutWorld ? WorldRotation(node.Parent()) : M44d();
    if (isOneAxis && parent == M44d() && GetTriple(node, "rotateAxis") == V3d(0.0)) {
        // Turns about one axis add up, even beyond a full turn. A matrix would lose the full turns.
        return before + turn;
    }
    const M44d rotation = RotationMatrix(turn, order);
    const M44d local = LocalRotation(node);
    return AnglesFor(node, aboutWorld ? local * parent * rotation * parent.inverse() : rotation * local,
                     RotateOrder(node));
}

V3d AnglesForOrder(DagNode& node, int order) {
    return AnglesFor(node, LocalRotation(node), order);
}

} // namespace lightbox::mel
