#include "mel/SceneArguments.h"
#include "mel/SceneCommands.h"
#include "mel/SyntaxBuilder.h"
#include "scene/DagNode.h"
#include "scene/Host.h"
#include "scene/Scene.h"

#include <algorithm>
#include <functional>

namespace lightbox::mel {
namespace {

/// What a flag of `ls` lists.
struct Filter {
    const char* shortName;
    const char* longName;
    bool (*accepts)(const Node& node);
};

bool IsSet(const Node& node, const char* attribute) {
    const auto found = node.FindAttribute(attribute);
    return found && Plug(const_cast<Node&>(node).Shared(), found).Number() != 0.0;
}

bool IsVisible(const Node& node) {
    const auto* dag = dynamic_cast<const DagNode*>(&node);
    return dag && dag->IsVisible();
}

const Filter FILTERS[] = {
    {"-ca", "-cameras", [](const Node& node) { return node.Type().IsA("camera"); }},
    {"-s", "-shapes", [](const Node& node) { return node.Type().IsShape(); }},
    {"-tr", "-transforms", [](const Node& node) { return node.Type().IsTransform(); }},
    {"-g", "-geometry",
     [](const Node& node) { return node.Type().IsA("geometryShape") || node.Type().IsA("unknownDag"); }},
    {"-lt", "-lights", [](const Node& node) { return node.Type().IsA("light"); }},
    {"-mat", "-materials", [](const Node& node) { return node.Type().IsA("lambert"); }},
    {"-set", "-sets", [](const Node& node) { return node.Type().IsA("objectSet"); }},
    {"-as", "-assemblies",
     [](const Node& node) {
         const auto* dag = dynamic_cast<const DagNode*>(&node);
         return dag && dag->Parent() && dag->Parent()->IsWorld();
     }},
    {"-v", "-visible", IsVisible},
    {"-iv", "-invisible", [](const Node& node) { return node.Type().IsDag() && !IsVisible(node); }},
    {"-io", "-intermediateObjects", [](const Node& node) { return IsSet(node, "intermediateObject"); }},
    {"-tm", "-templated", [](const Node& node) { return IsSet(node, "template"); }},
    {"-ln", "-lockedNodes", [](const Node& node) { return node.locked; }},
    {"-rn", "-referencedNodes", [](const Node& node) { return !node.reference.empty(); }},
    {"-ro", "-readOnly", [](const Node& node) { return node.isDefault || !node.reference.empty(); }},
    {"-dn", "-defaultNodes", [](const Node& node) { return node.isDefault; }},
    {"-ud", "-undeletable", [](const Node& node) { return node.isDefault || node.isShared; }},
};

bool MatchesAnyType(const CommandCall& call, const Node& node, const char* flag, bool isExact) {
    for (unsigned use = 0; use < call.UseCount(flag); ++use) {
        const std::string& type = call.String(flag, 0, use);
        if (isExact ? node.Type().Name() == type : node.Type().IsA(type)) {
            return true;
        }
    }
    return false;
}

/// Whether the node passes what was asked for. Several kinds add up, exclusions take away.
bool Passes(const CommandCall& call, const Node& node) {
    bool isAnythingAsked = call.Has("-type") || call.Has("-exactType");
    bool passes =
        MatchesAnyType(call, node, "-type", false) || MatchesAnyType(call, node, "-exactType", true);
    for (const Filter& filter : FILTERS) {
        if (call.Has(filter.longName)) {
            isAnythingAsked = true;
            passes = passes || filter.accepts(node);
        }
    }
    if (isAnythingAsked && !passes) {
        return false;
    }
    if (call.Has("-noIntermediate") && IsSet(node, "intermediateObject")) {
        return false;
    }
    return !MatchesAnyType(call, node, "-excludeType", true);
}

NodeList SortedByName(NodeList nodes) {
    std::stable_sort(nodes.begin(), nodes.end(),
                     [](const auto& left, const auto& right) { return left->Name() < right->Name(); });
    return nodes;
}

void AddUnique(NodeList& list, const std::shared_ptr<Node>& node) {
    if (std::find(list.begin(), list.end(), node) == list.end()) {
        list.push_back(node);
    }
}

/// The nodes below the given ones, depth first, or the whole DAG.
NodeList DagOf(Scene& scene, const NodeList& roots, bool isWhole) {
    NodeList nodes;
    if (isWhole) {
        for (DagNode* node : Scene::Subtree(scene.world())) {
            if (!node->IsWorld()) {
                nodes.push_back(node->Shared());
            }
        }
        return nodes;
    }
    for (const std::shared_ptr<Node>& root : roots) {
        if (auto* dag = dynamic_cast<DagNode*>(root.get())) {
            for (DagNode* node : Scene::Subtree(*dag)) {
                AddUnique(nodes, node->Shared());
            }
        }
    }
    return nodes;
}

/// What a pattern stands for; with -recursive also in every namespace.
NodeList MatchingAsAsked(const CommandCall& call, const std::string& pattern) {
    const Scene& scene = call.GetHost().scene();
    NodeList nodes = SortedByName(scene.Matching(pattern));
    if (call.Has("-recursive") && call.Bool("-recursive") &&
        pattern.find_first_of(":|") == std::string::npos) {
        for (const std::string& nameSpace : scene.Namespaces()) {
            for (const std::shared_ptr<Node>& node :
                 SortedByName(scene.Matching(nameSpace + ":" + pattern))) {
                AddUnique(nodes, node);
            }
        }
    }
    return nodes;
}

NodeList Candidates(const CommandCall& call) {
    Scene& scene = call.GetHost().scene();
    NodeList nodes;
    const std::vector<std::string> patterns = call.ObjectNames();
    const bool isSelection = call.Has("-selection") || call.Has("-orderedSelection");
    if (!patterns.empty()) {
        for (const std::string& pattern : patterns) {
            for (const std::shared_ptr<Node>& node : MatchingAsAsked(call, pattern)) {
                if (!isSelection || scene.selection().Contains(*node)) {
                    AddUnique(nodes, node);
                }
            }
        }
    } else {
        nodes = isSelection ? scene.selection().Get() : SortedByName(scene.Nodes());
    }
    const bool isWhole = patterns.empty() && !isSelection;
    if (call.Has("-dagObjects")) {
        nodes = DagOf(scene, nodes, isWhole);
    }
    if (call.Has("-leaf")) {
        nodes.erase(std::remove_if(nodes.begin(), nodes.end(),
                                   [](const auto& node) {
                                       const auto* dag = dynamic_cast<const DagNode*>(node.get());
                                       return !dag || !dag->Children().empty();
                                   }),
                    nodes.end());
    }
    return nodes;
}

Value List(CommandCall& call) {
    if (call.Has("-nodeTypes")) {
        return call.GetHost().scene().types().NodeTypeNames();
    }
    NodeList nodes;
    for (const std::shared_ptr<Node>& node : Candidates(call)) {
        if (Passes(call, *node)) {
            nodes.push_back(node);
        }
    }
    if (call.Has("-head")) {
        nodes.resize(
            std::min<std::size_t>(nodes.size(), static_cast<std::size_t>(std::max(0, call.Int("-head")))));
    } else if (call.Has("-tail")) {
        const auto count =
            std::min<std::size_t>(nodes.size(), static_cast<std::size_t>(std::max(0, call.Int("-tail"))));
        nodes.erase(nodes.begin(), nodes.end() - static_cast<std::ptrdiff_t>(count));
    }
    Value::StringArray names;
    for (const std::shared_ptr<Node>& node : nodes) {
        names.push_back(call.Has("-uuid") ? node->Uuid() : ShownName(*node, call.Has("-long")));
        if (call.Has("-showType")) {
            names.push_back(node->Type().Name());
        }
    }
    return names;
}

} // namespace

void RegisterListCommand(CommandRegistry& registry) {
    SyntaxBuilder syntax;
    for (const Filter& filter : FILTERS) {
        syntax.Flag(filter.shortName, filter.longName);
    }
    AddSceneCommand(registry, "ls",
                    syntax.Flag("-typ", "-type", MSyntax::kString)
                        .MultiUse()
                        .Flag("-et", "-exactType", MSyntax::kString)
                        .MultiUse()
                        .Flag("-ext", "-excludeType", MSyntax::kString)
                        .MultiUse()
                        .Flag("-l", "-long")
                        .Flag("-sn", "-shortNames")
                        .Flag("-sl", "-selection")
                        .Flag("-os", "-orderedSelection")
                        .Flag("-dag", "-dagObjects")
                        .Flag("-dep", "-dependencyNodes")
                        .Flag("-lf", "-leaf")
                        .Flag("-ni", "-noIntermediate")
                        .Flag("-o", "-objectsOnly")
                        .Flag("-fl", "-flatten")
                        .Flag("-r", "-recursive", MSyntax::kBoolean)
                        .Flag("-st", "-showType")
                        .Flag("-nt", "-nodeTypes")
                        .Flag("-uid", "-uuid")
                        .Flag("-hd", "-head", MSyntax::kLong)
                        .Flag("-tl", "-tail", MSyntax::kLong)
                        .Objects(),
                    List);
}

} // namespace lightbox::mel
