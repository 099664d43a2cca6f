#include "commands/Registration.h"
#include "commands/SceneArguments.h"
#include "mel/SyntaxBuilder.h"
#include "scene/DagNode.h"
#include "scene/Edit.h"
#include "scene/Host.h"
#include "scene/Scene.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace lightbox::mel {
namespace {

bool Holds(const NodeList& nodes, const std::shared_ptr<Node>& node) {
    return std::find(nodes.begin(), nodes.end(), node) != nodes.end();
}

void Remove(NodeList& nodes, const std::shared_ptr<Node>& node) {
    nodes.erase(std::remove(nodes.begin(), nodes.end(), node), nodes.end());
}

/// Returns the nodes of `-all`: the top level of the DAG without the start-up cameras.
NodeList TopLevel(Scene& scene) {
    NodeList nodes;
    for (DagNode* node : scene.world().Children()) {
        if (!node->isShared) {
            nodes.push_back(node->Shared());
        }
    }
    return nodes;
}

void AddHierarchy(NodeList& nodes) {
    NodeList all;
    for (const std::shared_ptr<Node>& node : nodes) {
        if (auto* dag = dynamic_cast<DagNode*>(node.get())) {
            for (DagNode* below : Scene::Subtree(*dag)) {
                all.push_back(below->Shared());
            }
        } else {
            all.push_back(node);
        }
    }
    nodes = std::move(all);
}

NodeList Targets(const CommandCall& call) {
    Scene& scene = call.GetHost().scene();
    NodeList nodes;
    if (call.Has("-all") || call.Has("-allDagObjects")) {
        nodes = TopLevel(scene);
    } else if (call.Has("-allDependencyNodes")) {
        nodes = scene.Nodes();
    } else {
        nodes = ObjectsOrSelection(call);
    }
    if (call.Has("-hierarchy")) {
        AddHierarchy(nodes);
    }
    return nodes;
}

Value Select(CommandCall& call) {
    Host& host = call.GetHost();
    if (call.Has("-clear")) {
        edit::Select(host, {});
        return {};
    }
    const NodeList targets = Targets(call);
    NodeList selected = host.scene().selection().Get();
    if (call.Has("-deselect")) {
        for (const std::shared_ptr<Node>& node : targets) {
            Remove(selected, node);
        }
    } else if (call.Has("-toggle")) {
        for (const std::shared_ptr<Node>& node : targets) {
            if (Holds(selected, node)) {
                Remove(selected, node);
            } else {
                selected.push_back(node);
            }
        }
    } else if (call.Has("-addFirst")) {
        selected.insert(selected.begin(), targets.begin(), targets.end());
    } else if (call.Has("-add")) {
        selected.insert(selected.end(), targets.begin(), targets.end());
    } else {
        selected = targets;
    }
    NodeList once;
    for (const std::shared_ptr<Node>& node : selected) {
        if (!Holds(once, node)) {
            once.push_back(node);
        }
    }
    edit::Select(host, once);
    return {};
}

/// Returns the node to the left (-1) or to the right (1) among the children of its parent that are, like
/// itself, shapes or no shapes; past the last comes the first.
DagNode* Sibling(const DagNode& node, int step) {
    std::vector<DagNode*> siblings;
    for (DagNode* child : node.Parent()->Children()) {
        if (child->Type().IsShape() == node.Type().IsShape()) {
            siblings.push_back(child);
        }
    }
    const auto place = std::find(siblings.begin(), siblings.end(), &node) - siblings.begin();
    const auto count = static_cast<std::ptrdiff_t>(siblings.size());
    return siblings[static_cast<std::size_t>((place + step + count) % count)];
}

/// Returns the first child that is no shape, else the first shape; null for a node without children.
DagNode* FirstBelow(const DagNode& node) {
    const std::vector<DagNode*>& children = node.Children();
    const auto found = std::find_if(children.begin(), children.end(),
                                    [](const DagNode* child) { return !child->Type().IsShape(); });
    return found != children.end() ? *found : children.empty() ? nullptr : children.front();
}

/// Returns where the walk leads from a node. At the end of the hierarchy, and outside the DAG, it stays.
std::shared_ptr<Node> WalkedFrom(const std::shared_ptr<Node>& node, const std::string& direction) {
    const auto* dag = dynamic_cast<const DagNode*>(node.get());
    if (!dag || !dag->Parent()) {
        return node;
    }
    DagNode* to = nullptr;
    if (direction == "up") {
        to = dag->Parent()->IsWorld() ? nullptr : dag->Parent();
    } else if (direction == "down") {
        to = FirstBelow(*dag);
    } else {
        to = Sibling(*dag, direction == "left" ? -1 : 1);
    }
    return to ? to->Shared() : node;
}

Value PickWalk(CommandCall& call) {
    const std::string direction = call.StringOr("-direction", "right");
    const auto directions = {"up", "down", "left", "right"};
    if (std::find(directions.begin(), directions.end(), direction) == directions.end()) {
        call.Fail("-direction takes \"up\", \"down\", \"left\" or \"right\", not \"" + direction + "\".");
    }
    const std::string type = call.StringOr("-type", "nodes");
    if (type != "nodes" && type != "instances") {
        call.Fail("pickWalk walks from node to node; the type \"" + type + "\" is not supported.");
    }
    Host& host = call.GetHost();
    const NodeList from =
        call.Objects().empty() ? host.scene().selection().Get() : NodesNamed(call, call.ObjectNames());
    NodeList walked;
    for (const std::shared_ptr<Node>& node : from) {
        // A node has one instance.
        const std::shared_ptr<Node> to = type == "instances" ? node : WalkedFrom(node, direction);
        if (!Holds(walked, to)) {
            walked.push_back(to);
        }
    }
    edit::Select(host, walked);
    return ShownNames(walked);
}

} // namespace

void RegisterSelectionCommands(CommandRegistry& registry) {
    AddSceneCommand(registry, "select",
                    SyntaxBuilder()
                        .Flag("-r", "-replace")
                        .Flag("-add", "-add")
                        .Flag("-af", "-addFirst")
                        .Flag("-d", "-deselect")
                        .Flag("-tgl", "-toggle")
                        .Flag("-cl", "-clear")
                        .Flag("-all", "-all")
                        .Flag("-ado", "-allDagObjects")
                        .Flag("-adn", "-allDependencyNodes")
                        .Flag("-hi", "-hierarchy")
                        .Flag("-ne", "-noExpand")
                        .Objects(),
                    Select);
    AddSceneCommand(registry, "pickWalk",
                    SyntaxBuilder()
                        .Flag("-d", "-direction", MSyntax::kString)
                        .Flag("-typ", "-type", MSyntax::kString)
                        .Objects(),
                    PickWalk);
}

} // namespace lightbox::mel
