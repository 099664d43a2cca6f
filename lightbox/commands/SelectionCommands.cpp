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

bool Holds(const NodeList& nodes, const std::shared_ptr<Node>& node) {
    return std::find(nodes.begin(), nodes.end(), node) != nodes.end();
}

void Remove(NodeList& nodes, const std::shared_ptr<Node>& node) {
    nodes.erase(std::remove(nodes.begin(), nodes.end(), node), nodes.end());
}

/// What `-all` stands for: everything at the top level of the DAG but the scene's own cameras.
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
}

} // namespace lightbox::mel
