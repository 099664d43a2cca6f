// shadingNode and sets, limited to making and assigning materials.

#include "commands/Registration.h"
#include "commands/SceneArguments.h"
#include "mel/SyntaxBuilder.h"
#include "scene/DagNode.h"
#include "scene/Edit.h"
#include "scene/Host.h"
#include "scene/Material.h"
#include "scene/Scene.h"

#include <algorithm>

namespace lightbox::mel {
namespace {

Value ShadingNode(CommandCall& call) {
    Host& host = call.GetHost();
    std::shared_ptr<DagNode> parent;
    if (call.Has("-parent")) {
        parent = DagNodeNamed(call, call.String("-parent"));
    }
    const std::shared_ptr<Node> node =
        edit::CreateNode(host, call.Object(0).AsString(), call.StringOr("-name", ""), parent.get());
    if (!call.Has("-skipSelect")) {
        edit::Select(host, {node});
    }
    return ShownName(*node);
}

/// Returns the shapes that stand for an object in a shading group.
NodeList ShapesOf(const std::shared_ptr<Node>& node) {
    auto* dag = dynamic_cast<DagNode*>(node.get());
    NodeList shapes;
    if (dag && dag->Type().IsShape()) {
        shapes.push_back(node);
    } else if (dag) {
        for (DagNode* shape : dag->Shapes()) {
            shapes.push_back(shape->Shared());
        }
    }
    return shapes;
}

/// Returns the connection that makes a node a member of a set. Its destination is the whole array.
Connection NewMembership(const std::shared_ptr<Node>& node, const std::shared_ptr<Node>& set) {
    if (node->Type().IsDag()) {
        return {Plug::Of(*node, "instObjGroups").Element(0), Plug::Of(*set, "dagSetMembers")};
    }
    return {Plug::Of(*node, "message"), Plug::Of(*set, "dnSetMembers")};
}

std::vector<Connection> Memberships(const Scene& scene, const std::shared_ptr<Node>& set) {
    std::vector<Connection> memberships;
    for (const Connection& connection : scene.connections().Of(*set)) {
        const std::string& array = connection.destination.attribute->LongName();
        if (connection.destination.node == set && (array == "dagSetMembers" || array == "dnSetMembers")) {
            memberships.push_back(connection);
        }
    }
    return memberships;
}

void Add(Host& host, const std::shared_ptr<Node>& set, const NodeList& nodes) {
    for (const std::shared_ptr<Node>& node : nodes) {
        if (set->Type().IsA("shadingEngine")) {
            for (const std::shared_ptr<Node>& shape : ShapesOf(node)) {
                Material::Assign(host, shape, set);
            }
            continue;
        }
        bool isMember = false;
        for (const Connection& membership : Memberships(host.scene(), set)) {
            isMember = isMember || membership.source.node == node;
        }
        if (!isMember) {
            const Connection made = NewMembership(node, set);
            edit::Connect(host, made.source, made.destination.NextElement());
        }
    }
}

void Remove(Host& host, const std::shared_ptr<Node>& set, const NodeList& nodes) {
    NodeList gone = nodes;
    for (const std::shared_ptr<Node>& node : nodes) {
        const NodeList shapes = set->Type().IsA("shadingEngine") ? ShapesOf(node) : NodeList{};
        gone.insert(gone.end(), shapes.begin(), shapes.end());
    }
    for (const Connection& membership : Memberships(host.scene(), set)) {
        if (std::find(gone.begin(), gone.end(), membership.source.node) != gone.end()) {
            edit::Disconnect(host, membership.source, membership.destination);
        }
    }
}

std::shared_ptr<Node> SetNamed(const CommandCall& call, const std::string& name) {
    std::shared_ptr<Node> set = NodeNamed(call, name);
    if (!set->Type().IsA("objectSet")) {
        call.Fail("The object '" + name + "' is not a set.");
    }
    return set;
}

Value Members(const CommandCall& call, const std::shared_ptr<Node>& set) {
    NodeList members;
    for (const Connection& membership : Memberships(call.GetHost().scene(), set)) {
        members.push_back(membership.source.node);
    }
    return ShownNames(members);
}

Value Sets(CommandCall& call) {
    Host& host = call.GetHost();
    if (call.IsQuery()) {
        return Members(call, SetNamed(call, call.Object(0).AsString()));
    }
    for (const char* flag : {"-forceElement", "-addElement", "-remove"}) {
        if (call.Has(flag)) {
            const std::shared_ptr<Node> set = SetNamed(call, call.String(flag));
            const NodeList nodes = ObjectsOrSelection(call);
            std::string(flag) == "-remove" ? Remove(host, set, nodes) : Add(host, set, nodes);
            return ShownName(*set);
        }
    }
    if (call.IsEdit()) {
        call.Fail("One of -fe, -add and -rm has to be given.");
    }
    const NodeList nodes = call.Has("-empty") ? NodeList{} : ObjectsOrSelection(call);
    const bool isRenderable = call.Has("-renderable") && call.Bool("-renderable");
    const std::shared_ptr<Node> set =
        edit::CreateNode(host, isRenderable ? "shadingEngine" : "objectSet", call.StringOr("-name", ""));
    if (isRenderable) {
        if (const std::shared_ptr<Node> partition = host.scene().Find("renderPartition")) {
            edit::Connect(host, Plug::Of(*set, "partition"), Plug::Of(*partition, "sets").NextElement());
        }
    }
    Add(host, set, nodes);
    return ShownName(*set);
}

} // namespace

void RegisterMaterialCommands(CommandRegistry& registry) {
    AddSceneCommand(registry, "shadingNode",
                    SyntaxBuilder()
                        .Flag("-as", "-asShader")
                        .Flag("-au", "-asUtility")
                        .Flag("-at", "-asTexture")
                        .Flag("-al", "-asLight")
                        .Flag("-n", "-name", MSyntax::kString)
                        .Flag("-p", "-parent", MSyntax::kString)
                        .Flag("-ss", "-skipSelect")
                        .Objects(1, 1),
                    ShadingNode);
    AddSceneCommand(registry, "sets",
                    SyntaxBuilder()
                        .Flag("-fe", "-forceElement", MSyntax::kString)
                        .Flag("-add", "-addElement", MSyntax::kString)
                        .Flag("-rm", "-remove", MSyntax::kString)
                        .Flag("-em", "-empty")
                        .Flag("-r", "-renderable", MSyntax::kBoolean)
                        .Flag("-nss", "-noSurfaceShader", MSyntax::kBoolean)
                        .Flag("-n", "-name", MSyntax::kString)
                        .Query()
                        .Edit()
                        .Objects(),
                    Sets);
}

} // namespace lightbox::mel
