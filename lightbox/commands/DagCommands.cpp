#include "commands/Registration.h"
#include "commands/SceneArguments.h"
#include "mel/SyntaxBuilder.h"
#include "scene/DagNode.h"
#include "scene/Edit.h"
#include "scene/Host.h"
#include "scene/Scene.h"

#include <algorithm>

namespace lightbox::mel {
namespace {

std::shared_ptr<DagNode> AsDag(const CommandCall& call, const std::shared_ptr<Node>& node) {
    auto dag = std::dynamic_pointer_cast<DagNode>(node);
    if (!dag) {
        call.Fail("The object '" + Scene::ShownName(*node) + "' is not in the DAG.");
    }
    return dag;
}

Value Parent(CommandCall& call) {
    if (call.Has("-addObject")) {
        call.Fail("Instances are not supported.");
    }
    NodeList nodes = ObjectsOrSelection(call);
    std::shared_ptr<DagNode> parent;
    if (!call.Has("-world")) {
        parent = AsDag(call, nodes.back());
        nodes.pop_back();
        if (nodes.empty()) {
            nodes = call.GetHost().scene().selection().Get();
        }
        if (nodes.empty()) {
            call.Fail("There is nothing to put below '" + Scene::ShownName(*parent) + "'.");
        }
    }
    for (const std::shared_ptr<Node>& node : nodes) {
        edit::CheckReparent(call.GetHost().scene(), *AsDag(call, node), parent.get());
    }
    for (const std::shared_ptr<Node>& node : nodes) {
        edit::Reparent(call.GetHost(), *AsDag(call, node), parent.get(), !call.Has("-relative"));
    }
    return ShownNames(nodes);
}

Value Group(CommandCall& call) {
    Host& host = call.GetHost();
    const bool isEmpty = call.Has("-empty");
    const NodeList nodes = isEmpty ? NodeList{} : ObjectsOrSelection(call);
    std::shared_ptr<DagNode> parent;
    if (call.Has("-parent")) {
        parent = DagNodeNamed(call, call.String("-parent"));
    } else if (!nodes.empty() && !call.Has("-world")) {
        // When all nodes have the same parent, the group goes below that parent.
        DagNode* common = AsDag(call, nodes.front())->Parent();
        const bool isCommon = std::all_of(nodes.begin(), nodes.end(), [&](const std::shared_ptr<Node>& node) {
            return AsDag(call, node)->Parent() == common;
        });
        if (isCommon && !common->IsWorld()) {
            parent = std::static_pointer_cast<DagNode>(common->Shared());
        }
    }
    for (const std::shared_ptr<Node>& node : nodes) {
        const std::shared_ptr<DagNode> dag = AsDag(call, node);
        // A shape cannot move to the world, but the group will be its parent, so the check is skipped.
        if (parent || !dag->Type().IsShape()) {
            edit::CheckReparent(host.scene(), *dag, parent.get());
        }
    }
    const std::shared_ptr<Node> group = edit::CreateNode(
        host, "transform", call.StringOr("-name", isEmpty ? "null1" : "group1"), parent.get());
    for (const std::shared_ptr<Node>& node : nodes) {
        edit::Reparent(host, *AsDag(call, node), static_cast<DagNode*>(group.get()));
    }
    edit::Select(host, {group});
    return ShownName(*group);
}

void AddDescendants(const DagNode& node, NodeList& found) {
    for (DagNode* child : node.Children()) {
        AddDescendants(*child, found);
        found.push_back(child->Shared());
    }
}

void AddRelatives(const CommandCall& call, const DagNode& node, NodeList& found) {
    // Without instances a node has only one parent, so both flags mean the same.
    if (call.Has("-parent") || call.Has("-allParents")) {
        if (node.Parent() && !node.Parent()->IsWorld()) {
            found.push_back(node.Parent()->Shared());
        }
    } else if (call.Has("-allDescendents")) {
        AddDescendants(node, found);
    } else {
        for (DagNode* child : node.Children()) {
            if (!call.Has("-shapes") || child->Type().IsShape()) {
                found.push_back(child->Shared());
            }
        }
    }
}

bool IsOfType(const CommandCall& call, const Node& node) {
    const unsigned count = call.UseCount("-type");
    bool matches = count == 0;
    for (unsigned use = 0; use < count; ++use) {
        matches = matches || node.Type().IsA(call.String("-type", 0, use));
    }
    return matches;
}

bool IsIntermediate(const std::shared_ptr<Node>& node) {
    const auto attribute = node->FindAttribute("intermediateObject");
    return attribute && Plug(node, attribute).Number() != 0.0;
}

Value ListRelatives(CommandCall& call) {
    NodeList found;
    for (const std::shared_ptr<Node>& node : ObjectsOrSelection(call)) {
        if (const auto* dag = dynamic_cast<const DagNode*>(node.get())) {
            AddRelatives(call, *dag, found);
        }
    }
    NodeList kept;
    for (const std::shared_ptr<Node>& node : found) {
        const bool isKnown = std::find(kept.begin(), kept.end(), node) != kept.end();
        if (!isKnown && IsOfType(call, *node) && !(call.Has("-noIntermediate") && IsIntermediate(node))) {
            kept.push_back(node);
        }
    }
    if (call.Has("-fullPath") || call.Has("-path")) {
        return ShownNames(kept, call.Has("-fullPath"));
    }
    Value::StringArray names;
    for (const std::shared_ptr<Node>& node : kept) {
        names.push_back(node->Name());
    }
    return names;
}

} // namespace

void RegisterDagCommands(CommandRegistry& registry) {
    AddSceneCommand(registry, "parent",
                    SyntaxBuilder()
                        .Flag("-w", "-world")
                        .Flag("-r", "-relative")
                        .Flag("-a", "-absolute")
                        .Flag("-s", "-shape")
                        .Flag("-add", "-addObject")
                        .Flag("-nc", "-noConnections")
                        .Flag("-nis", "-noInvScale", MSyntax::kString)
                        .Objects(),
                    Parent);
    AddSceneCommand(registry, "group",
                    SyntaxBuilder()
                        .Flag("-n", "-name", MSyntax::kString)
                        .Flag("-p", "-parent", MSyntax::kString)
                        .Flag("-w", "-world")
                        .Flag("-em", "-empty")
                        .Objects(),
                    Group);
    AddSceneCommand(registry, "listRelatives",
                    SyntaxBuilder()
                        .Flag("-p", "-parent")
                        .Flag("-ap", "-allParents")
                        .Flag("-c", "-children")
                        .Flag("-s", "-shapes")
                        .Flag("-ad", "-allDescendents")
                        .Flag("-f", "-fullPath")
                        .Flag("-pa", "-path")
                        .Flag("-ni", "-noIntermediate")
                        .Flag("-typ", "-type", MSyntax::kString)
                        .MultiUse()
                        .Objects(),
                    ListRelatives);
}

} // namespace lightbox::mel
