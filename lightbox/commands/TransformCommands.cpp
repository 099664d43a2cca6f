#include "commands/Registration.h"
#include "commands/SceneArguments.h"
#include "commands/TransformArguments.h"
#include "mel/SyntaxBuilder.h"
#include "scene/DagNode.h"
#include "scene/Host.h"

#include <Imath/ImathMatrix.h>
#include <Imath/ImathVec.h>
#include <array>
#include <optional>
#include <string>

namespace lightbox::mel {
namespace {

using Imath::V3d;
using namespace std::string_literals;

/// The arguments of move, rotate and scale: three numbers, or one for each axis given as a flag, then the
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
    const bool isEach = call.Has("-xyz");
    const bool named[] = {isEach || call.Has("-x") || call.Has("-xy") || call.Has("-xz"),
                          isEach || call.Has("-y") || call.Has("-xy") || call.Has("-yz"),
                          isEach || call.Has("-z") || call.Has("-xz") || call.Has("-yz")};
    const bool isAnyNamed = named[0] || named[1] || named[2];
    AxisCall parsed;
    std::size_t position = 0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        if (isAnyNamed && !named[axis]) {
            continue;
        }
        if (position >= objects.size() || !IsNumeric(objects[position])) {
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

/// Returns the point of the node, in world space, that an absolute move places.
V3d Anchor(const CommandCall& call, DagNode& node) {
    const char* pivot = call.Has("-rotatePivotRelative")  ? "rotatePivot"
                        : call.Has("-scalePivotRelative") ? "scalePivot"
                                                          : nullptr;
    if (!pivot) {
        return WorldPosition(node);
    }
    V3d anchor;
    node.WorldMatrix().multVecMatrix(GetTriple(node, pivot), anchor);
    return anchor;
}

/// Returns an offset along the node's own axes, with distances of the world, in its parent's space.
V3d OffsetOfWorldDistance(DagNode& node, const V3d& offset) {
    V3d inWorld(0.0);
    for (int axis = 0; axis < 3; ++axis) {
        V3d own(0.0);
        own[axis] = 1.0;
        V3d direction;
        node.WorldMatrix().multDirMatrix(own, direction);
        inWorld += direction.normalized() * offset[axis];
    }
    return OffsetInParent(node, inWorld);
}

Value Move(CommandCall& call) {
    const AxisCall axes = ParseAxes(call);
    const bool isLocal = call.Has("-localSpace") || call.Has("-objectSpace");
    for (DagNode* node : axes.nodes) {
        const V3d translate = GetTriple(*node, "translate");
        V3d target;
        if (call.Has("-relative")) {
            const V3d delta = axes.Over(V3d(0.0));
            V3d moved = delta;
            if (call.Has("-objectSpace") && call.Has("-worldSpaceDistance")) {
                moved = OffsetOfWorldDistance(*node, delta);
            } else if (call.Has("-objectSpace")) {
                node->LocalMatrix().multDirMatrix(delta, moved);
            } else if (!isLocal) {
                moved = OffsetInParent(*node, delta);
            }
            target = translate + moved;
        } else if (isLocal) {
            target = axes.Over(translate);
        } else {
            const V3d anchor = Anchor(call, *node);
            target = translate + OffsetInParent(*node, axes.Over(anchor) - anchor);
        }
        SetTriple(call.GetHost(), *node, "translate", target);
    }
    return {};
}

Value Rotate(CommandCall& call) {
    const AxisCall axes = ParseAxes(call);
    const bool isWorld = call.Has("-worldSpace");
    for (DagNode* node : axes.nodes) {
        V3d target;
        if (!call.Has("-relative")) {
            target = isWorld ? AnglesForWorld(*node, axes.Over(WorldAngles(*node)))
                             : axes.Over(GetTriple(*node, "rotate"));
        } else if (call.Has("-euler")) {
            target = GetTriple(*node, "rotate") + axes.Over(V3d(0.0));
        } else {
            target = TurnedAngles(*node, axes.Over(V3d(0.0)),
                                  call.Has("-forceOrderXYZ") ? 0 : RotateOrder(*node), isWorld);
        }
        SetTriple(call.GetHost(), *node, "rotate", target);
    }
    return {};
}

Value Scale(CommandCall& call) {
    const AxisCall axes = ParseAxes(call);
    for (DagNode* node : axes.nodes) {
        const V3d before = GetTriple(*node, "scale");
        const V3d target = call.Has("-absolute") ? axes.Over(before) : before * axes.Over(V3d(1.0));
        SetTriple(call.GetHost(), *node, "scale", target);
    }
    return {};
}

/// Builds the flags of a command whose axis flags contain its name: "-moveX", "-moveXY" and so on.
class AxisSyntax {
public:
    explicit AxisSyntax(const std::string& verb) {
        builder_.Flag("-a", "-absolute").Flag("-r", "-relative");
        for (const std::string& axes : {"X"s, "Y"s, "Z"s, "XY"s, "XZ"s, "YZ"s, "XYZ"s}) {
            std::string shortName = "-";
            std::string longName = "-";
            longName.append(verb).append(axes);
            for (const char axis : axes) {
                shortName += static_cast<char>(axis - 'X' + 'x');
            }
            builder_.Flag(shortName.c_str(), longName.c_str());
        }
        builder_.Objects(1);
    }
    SyntaxBuilder& Builder() { return builder_; }

private:
    SyntaxBuilder builder_;
};

} // namespace

void RegisterTransformCommands(CommandRegistry& registry) {
    AddSceneCommand(registry, "move",
                    AxisSyntax("move")
                        .Builder()
                        .Flag("-ws", "-worldSpace")
                        .Flag("-ls", "-localSpace")
                        .Flag("-os", "-objectSpace")
                        .Flag("-wd", "-worldSpaceDistance")
                        .Flag("-rpr", "-rotatePivotRelative")
                        .Flag("-spr", "-scalePivotRelative"),
                    Move);
    AddSceneCommand(registry, "rotate",
                    AxisSyntax("rotate")
                        .Builder()
                        .Flag("-ws", "-worldSpace")
                        .Flag("-os", "-objectSpace")
                        .Flag("-eu", "-euler")
                        .Flag("-fo", "-forceOrderXYZ"),
                    Rotate);
    // Scaling always happens in the object's own space.
    AddSceneCommand(registry, "scale",
                    AxisSyntax("scale").Builder().Flag("-ls", "-localSpace").Flag("-os", "-objectSpace"),
                    Scale);
}

} // namespace lightbox::mel
