#include "mel/Error.h"
#include "mel/SceneArguments.h"
#include "mel/SceneCommands.h"
#include "mel/SyntaxBuilder.h"
#include "scene/DagNode.h"
#include "scene/Edit.h"
#include "scene/Host.h"
#include "scene/Scene.h"
#include "scene/Transformation.h"

#include <Imath/ImathVec.h>
#include <algorithm>
#include <array>
#include <optional>

namespace lightbox::mel {
namespace {

using Imath::M44d;
using Imath::V3d;

Plug PlugOf(DagNode& node, const char* attribute) {
    return Plug(node.Shared(), node.FindAttribute(attribute));
}

V3d Get(DagNode& node, const char* attribute) {
    const AttributeValue value = PlugOf(node, attribute).Get();
    const auto& numbers = std::get<std::vector<double>>(value);
    return V3d(numbers[0], numbers[1], numbers[2]);
}

/// Sets what differs, child by child, so that a locked or driven child that keeps its value is in nobody's
/// way.
void Set(Host& host, DagNode& node, const char* attribute, const V3d& value) {
    const V3d before = Get(node, attribute);
    const Plug plug = PlugOf(node, attribute);
    for (unsigned i = 0; i < 3; ++i) {
        if (before[i] != value[i]) {
            edit::SetPlug(host, plug.Child(i), value[i]);
        }
    }
}

M44d ParentMatrix(DagNode& node) {
    return node.Parent() ? node.Parent()->WorldMatrix() : M44d();
}

V3d Position(DagNode& node) {
    return node.WorldMatrix().translation();
}

/// The transforms that a call works on: its objects, else the selection; a shape stands for its transform.
std::vector<DagNode*> Transforms(const CommandCall& call, const std::vector<std::string>& names) {
    NodeList nodes = names.empty() ? call.GetHost().scene().selection().Get() : NodesNamed(call, names);
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

/// The numbers and objects of move, rotate and scale: three numbers, or as many as axes are named, then
/// objects.
struct AxisCall {
    std::array<std::optional<double>, 3> values;
    std::vector<DagNode*> nodes;

    V3d Over(const V3d& otherwise) const {
        return V3d(values[0].value_or(otherwise.x), values[1].value_or(otherwise.y),
                   values[2].value_or(otherwise.z));
    }
};

AxisCall ParseAxes(const CommandCall& call) {
    const std::vector<Value>& objects = call.Objects();
    const bool named[] = {call.Has("-x") || call.Has("-xy") || call.Has("-xz"),
                          call.Has("-y") || call.Has("-xy") || call.Has("-yz"),
                          call.Has("-z") || call.Has("-xz") || call.Has("-yz")};
    const bool isAnyNamed = named[0] || named[1] || named[2];
    AxisCall parsed;
    std::size_t position = 0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        if (isAnyNamed && !named[axis]) {
            continue;
        }
        double number = 0.0;
        const bool isNumber = position < objects.size() && (objects[position].IsNumber() ||
                                                            IsNumber(objects[position].AsString(), number));
        if (!isNumber) {
            call.Fail("A number is missing.");
        }
        parsed.values[axis] = objects[position++].AsFloat();
    }
    std::vector<std::string> names;
    for (; position < objects.size(); ++position) {
        names.push_back(objects[position].AsString());
    }
    parsed.nodes = Transforms(call, names);
    return parsed;
}

Value Move(CommandCall& call) {
    const AxisCall axes = ParseAxes(call);
    const bool isLocal = call.Has("-localSpace") || call.Has("-objectSpace");
    for (DagNode* node : axes.nodes) {
        const V3d translate = Get(*node, "translate");
        V3d target;
        if (call.Has("-relative")) {
            const V3d delta = axes.Over(V3d(0.0));
            V3d moved;
            if (call.Has("-objectSpace")) {
                node->LocalMatrix().multDirMatrix(delta, moved);
            } else if (isLocal) {
                moved = delta;
            } else {
                ParentMatrix(*node).inverse().multDirMatrix(delta, moved);
            }
            target = translate + moved;
        } else if (isLocal) {
            target = axes.Over(translate);
        } else {
            V3d inParent;
            const V3d wanted = axes.Over(Position(*node));
            ParentMatrix(*node).inverse().multVecMatrix(wanted - Position(*node), inParent);
            V3d origin;
            ParentMatrix(*node).inverse().multVecMatrix(V3d(0.0), origin);
            target = translate + inParent - origin;
        }
        Set(call.GetHost(), *node, "translate", target);
    }
    return {};
}

/// The transformation of a node as its attributes say.
Transformation Parts(DagNode& node) {
    Transformation parts;
    parts.translate = Get(node, "translate");
    parts.rotate = Get(node, "rotate");
    parts.scale = Get(node, "scale");
    parts.shear = Get(node, "shear");
    parts.rotatePivot = Get(node, "rotatePivot");
    parts.rotatePivotTranslate = Get(node, "rotatePivotTranslate");
    parts.scalePivot = Get(node, "scalePivot");
    parts.scalePivotTranslate = Get(node, "scalePivotTranslate");
    parts.rotateAxis = Get(node, "rotateAxis");
    parts.rotateOrder = static_cast<int>(PlugOf(node, "rotateOrder").Number());
    return parts;
}

/// The rotation that comes from turning by one and then, about the node's own axes, by another.
V3d Composed(const V3d& first, const V3d& own, int order) {
    Transformation before;
    before.rotate = first;
    before.rotateOrder = order;
    Transformation turn;
    turn.rotate = own;
    turn.rotateOrder = order;
    Transformation both;
    both.rotateOrder = order;
    both.SetMatrix(turn.Matrix() * before.Matrix());
    return both.rotate;
}

Value Rotate(CommandCall& call) {
    const AxisCall axes = ParseAxes(call);
    for (DagNode* node : axes.nodes) {
        const V3d before = Get(*node, "rotate");
        V3d target = axes.Over(before);
        if (!call.Has("-absolute")) {
            const V3d turn = axes.Over(V3d(0.0));
            const bool isOneAxis = (before == V3d(before.x, 0, 0) && turn == V3d(turn.x, 0, 0)) ||
                                   (before == V3d(0, before.y, 0) && turn == V3d(0, turn.y, 0)) ||
                                   (before == V3d(0, 0, before.z) && turn == V3d(0, 0, turn.z));
            // Turns about one axis add up, also beyond a full one.
            target = isOneAxis
                         ? before + turn
                         : Composed(before, turn, static_cast<int>(PlugOf(*node, "rotateOrder").Number()));
        }
        Set(call.GetHost(), *node, "rotate", target);
    }
    return {};
}

Value Scale(CommandCall& call) {
    const AxisCall axes = ParseAxes(call);
    for (DagNode* node : axes.nodes) {
        const V3d before = Get(*node, "scale");
        const V3d target = call.Has("-absolute") ? axes.Over(before) : before * axes.Over(V3d(1.0));
        Set(call.GetHost(), *node, "scale", target);
    }
    return {};
}

Value::FloatArray Numbers(const V3d& vector) {
    return {vector.x, vector.y, vector.z};
}

V3d Triple(const CommandCall& call, const char* flag) {
    return V3d(call.Float(flag, 0), call.Float(flag, 1), call.Float(flag, 2));
}

constexpr std::size_t MATRIX_CELLS = 16;

/// The matrix that was given; a flag has at most six arguments, so its cells stand before the objects.
M44d MatrixOf(const CommandCall& call) {
    M44d matrix;
    for (std::size_t i = 0; i < MATRIX_CELLS; ++i) {
        matrix[static_cast<int>(i / 4)][i % 4] = call.Object(i).AsFloat();
    }
    return matrix;
}

Value QueryXform(const CommandCall& call, DagNode& node) {
    const bool isWorld = call.Has("-worldSpace");
    const M44d matrix = isWorld ? node.WorldMatrix() : node.LocalMatrix();
    if (call.Has("-matrix")) {
        return Value::FloatArray(&matrix[0][0], &matrix[0][0] + 16);
    }
    if (call.Has("-translation")) {
        return Numbers(isWorld ? Position(node) : Get(node, "translate"));
    }
    Transformation world;
    world.rotateOrder = static_cast<int>(PlugOf(node, "rotateOrder").Number());
    world.SetMatrix(node.WorldMatrix());
    if (call.Has("-rotation")) {
        return Numbers(isWorld ? world.rotate : Get(node, "rotate"));
    }
    if (call.Has("-scale")) {
        return Numbers(call.Has("-relative") || !isWorld ? Get(node, "scale") : world.scale);
    }
    const char* pivot = call.Has("-rotatePivot")  ? "rotatePivot"
                        : call.Has("-scalePivot") ? "scalePivot"
                                                  : nullptr;
    if (!pivot) {
        call.Fail("Nothing was asked for.");
    }
    V3d point = Get(node, pivot);
    if (isWorld) {
        node.WorldMatrix().multVecMatrix(V3d(point), point);
    }
    return Numbers(point);
}

void SetMatrix(Host& host, DagNode& node, const M44d& matrix, bool isWorld) {
    Transformation parts = Parts(node);
    if (!parts.SetMatrix(isWorld ? matrix * ParentMatrix(node).inverse() : matrix)) {
        throw Error("The matrix flattens space and cannot be taken apart.");
    }
    Set(host, node, "translate", parts.translate);
    Set(host, node, "rotate", parts.rotate);
    Set(host, node, "scale", parts.scale);
    Set(host, node, "shear", parts.shear);
}

void EditXform(const CommandCall& call, DagNode& node) {
    Host& host = call.GetHost();
    const bool isRelative = call.Has("-relative");
    const bool isWorld = call.Has("-worldSpace");
    if (call.Has("-matrix")) {
        SetMatrix(host, node, MatrixOf(call), isWorld);
    }
    if (call.Has("-translation")) {
        const V3d given = Triple(call, "-translation");
        const V3d before = Get(node, "translate");
        V3d moved = isRelative ? given : given - (isWorld ? Position(node) : before);
        if (isWorld) {
            ParentMatrix(node).inverse().multDirMatrix(V3d(moved), moved);
        }
        Set(host, node, "translate", before + moved);
    }
    if (call.Has("-rotation")) {
        const V3d given = Triple(call, "-rotation");
        Set(host, node, "rotate", isRelative ? Get(node, "rotate") + given : given);
    }
    if (call.Has("-scale")) {
        const V3d given = Triple(call, "-scale");
        Set(host, node, "scale", isRelative ? Get(node, "scale") * given : given);
    }
    for (const char* pivot : {"-rotatePivot", "-scalePivot"}) {
        if (call.Has(pivot)) {
            V3d given = Triple(call, pivot);
            if (isWorld) {
                node.WorldMatrix().inverse().multVecMatrix(V3d(given), given);
            }
            Set(host, node, pivot + 1, given);
        }
    }
}

Value Xform(CommandCall& call) {
    std::vector<std::string> names = call.ObjectNames();
    if (call.Has("-matrix") && !call.IsQuery()) {
        names.erase(names.begin(),
                    names.begin() + static_cast<std::ptrdiff_t>(std::min(names.size(), MATRIX_CELLS)));
    }
    const std::vector<DagNode*> nodes = Transforms(call, names);
    if (call.IsQuery()) {
        return QueryXform(call, *nodes.front());
    }
    for (DagNode* node : nodes) {
        EditXform(call, *node);
    }
    return {};
}

SyntaxBuilder AxisSyntax() {
    SyntaxBuilder syntax;
    for (const auto& [shortName, longName] :
         std::initializer_list<std::pair<const char*, const char*>>{{"-a", "-absolute"},
                                                                    {"-r", "-relative"},
                                                                    {"-ws", "-worldSpace"},
                                                                    {"-ls", "-localSpace"},
                                                                    {"-os", "-objectSpace"},
                                                                    {"-x", "-moveX"},
                                                                    {"-y", "-moveY"},
                                                                    {"-z", "-moveZ"},
                                                                    {"-xy", "-moveXY"},
                                                                    {"-xz", "-moveXZ"},
                                                                    {"-yz", "-moveYZ"}}) {
        syntax.Flag(shortName, longName);
    }
    return syntax.Objects(1);
}

} // namespace

void RegisterTransformCommands(CommandRegistry& registry) {
    AddSceneCommand(registry, "move", AxisSyntax(), Move);
    AddSceneCommand(registry, "rotate", AxisSyntax(), Rotate);
    AddSceneCommand(registry, "scale", AxisSyntax(), Scale);
    constexpr auto NUMBER = MSyntax::kDouble;
    MSyntax xform = SyntaxBuilder()
                        .Flag("-a", "-absolute")
                        .Flag("-r", "-relative")
                        .Flag("-ws", "-worldSpace")
                        .Flag("-os", "-objectSpace")
                        .Flag("-t", "-translation", NUMBER, NUMBER, NUMBER)
                        .Flag("-ro", "-rotation", NUMBER, NUMBER, NUMBER)
                        .Flag("-s", "-scale", NUMBER, NUMBER, NUMBER)
                        .Flag("-rp", "-rotatePivot", NUMBER, NUMBER, NUMBER)
                        .Flag("-sp", "-scalePivot", NUMBER, NUMBER, NUMBER)
                        .Flag("-m", "-matrix")
                        .Query()
                        .Objects();
    AddSceneCommand(registry, "xform", xform, Xform);
}

} // namespace lightbox::mel
