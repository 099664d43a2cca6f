#include "commands/Registration.h"
#include "commands/SceneArguments.h"
#include "formats/PlugSettingApplier.h"
#include "mel/SyntaxBuilder.h"
#include "scene/DagNode.h"
#include "scene/Host.h"
#include "scene/Scene.h"

#include <algorithm>
#include <functional>

namespace lightbox::mel {
namespace {

/// A flag of `ls` and the nodes that it lists.
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

/// True when the node passes the call's filters. It has to match one of the type filters, if there are any,
/// and no exclusion.
bool Passes(const CommandCall& call, const Node& node) {
    bool hasTypeFilter = call.Has("-type") || call.Has("-exactType");
    bool passes =
        MatchesAnyType(call, node, "-type", false) || MatchesAnyType(call, node, "-exactType", true);
    for (const Filter& filter : FILTERS) {
        if (call.Has(filter.longName)) {
            hasTypeFilter = true;
            passes = passes || filter.accepts(node);
        }
    }
    if (hasTypeFilter && !passes) {
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

/// Returns the given nodes and all nodes below them, depth first, or the whole DAG.
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

/// Returns the nodes that match a pattern. With -recursive it also searches every namespace.
NodeList MatchingNodes(const CommandCall& call, const std::string& pattern) {
    const Scene& scene = call.GetHost().scene();
    NodeList nodes = SortedByName(scene.Matching(pattern));
    if (call.Has("-recursive") && call.Bool("-recursive") &&
        pattern.find_first_of(":|") == std::string::npos) {
        for (const std::string& nameSpace : scene.Namespaces()) {
            std::string inside = nameSpace;
            inside.append(":").append(pattern);
            for (const std::shared_ptr<Node>& node : SortedByName(scene.Matching(inside))) {
                AddUnique(nodes, node);
            }
        }
    }
    return nodes;
}

/// One entry of the result: a node, or one of its attributes.
struct Item {
    std::shared_ptr<Node> node;
    Plug plug;
    bool operator==(const Item& other) const { return node == other.node && plug == other.plug; }
};

using ItemList = std::vector<Item>;

void AddUnique(ItemList& items, const Item& item) {
    if (std::find(items.begin(), items.end(), item) == items.end()) {
        items.push_back(item);
    }
}

void AddMatchingPlugs(const Plug& plug, const std::string& pattern, ItemList& items) {
    if (Scene::MatchesName(pattern, plug.attribute->LongName()) ||
        Scene::MatchesName(pattern, plug.attribute->ShortName())) {
        AddUnique(items, {plug.node, plug});
    }
    for (std::size_t i = 0; i < plug.attribute->Children().size(); ++i) {
        AddMatchingPlugs(plug.Child(i), pattern, items);
    }
}

/// Adds the plugs of a node that match an attribute pattern, with or without wildcards.
void AddPlugs(const std::shared_ptr<Node>& node, const std::string& pattern, ItemList& items) {
    if (pattern.find_first_of("*?") == std::string::npos) {
        try {
            AddUnique(items, {node, PlugSettingApplier::Resolve(node, pattern, 1).front()});
        } catch (const SceneError&) {
            // A missing attribute is not an error: it is not listed.
        }
        return;
    }
    for (const auto& attribute : node->Attributes()) {
        AddMatchingPlugs(Plug(node, attribute), pattern, items);
    }
}

/// Returns the nodes of a pattern, or the plugs of a "node.attribute" pattern.
ItemList ItemsMatching(const CommandCall& call, const std::string& pattern) {
    const std::size_t dot = pattern.find('.');
    ItemList items;
    for (const std::shared_ptr<Node>& node : MatchingNodes(call, pattern.substr(0, dot))) {
        if (dot == std::string::npos || call.Has("-objectsOnly")) {
            ItemList plugs;
            if (dot != std::string::npos) {
                AddPlugs(node, pattern.substr(dot + 1), plugs);
            }
            if (dot == std::string::npos || !plugs.empty()) {
                items.push_back({node, {}});
            }
        } else {
            AddPlugs(node, pattern.substr(dot + 1), items);
        }
    }
    return items;
}

ItemList AsItems(const NodeList& nodes) {
    ItemList items;
    for (const std::shared_ptr<Node>& node : nodes) {
        items.push_back({node, {}});
    }
    return items;
}

ItemList Candidates(const CommandCall& call) {
    Scene& scene = call.GetHost().scene();
    ItemList items;
    const std::vector<std::string> patterns = call.ObjectNames();
    const bool isSelection = call.Has("-selection") || call.Has("-orderedSelection");
    if (!patterns.empty()) {
        for (const std::string& pattern : patterns) {
            for (const Item& item : ItemsMatching(call, pattern)) {
                if (!isSelection || scene.selection().Contains(*item.node)) {
                    AddUnique(items, item);
                }
            }
        }
    } else {
        items = AsItems(isSelection ? scene.selection().Get() : SortedByName(scene.Nodes()));
    }
    if (call.Has("-dagObjects")) {
        NodeList roots;
        for (const Item& item : items) {
            roots.push_back(item.node);
        }
        items = AsItems(DagOf(scene, roots, patterns.empty() && !isSelection));
    }
    if (call.Has("-leaf")) {
        items.erase(std::remove_if(items.begin(), items.end(),
                                   [](const Item& item) {
                                       const auto* dag = dynamic_cast<const DagNode*>(item.node.get());
                                       return !dag || !dag->Children().empty();
                                   }),
                    items.end());
    }
    return items;
}

/// Keeps only the first or last items when -head or -tail is given.
void KeepHeadOrTail(const CommandCall& call, ItemList& items) {
    const auto count = [&](const char* flag) {
        return std::min<std::size_t>(items.size(), static_cast<std::size_t>(std::max(0, call.Int(flag))));
    };
    if (call.Has("-head")) {
        items.resize(count("-head"));
    } else if (call.Has("-tail")) {
        items.erase(items.begin(), items.end() - static_cast<std::ptrdiff_t>(count("-tail")));
    }
}

std::string Shown(const CommandCall& call, const Item& item) {
    if (call.Has("-uuid")) {
        return item.node->Uuid();
    }
    const std::string name = ShownName(*item.node, call.Has("-long"));
    return item.plug ? name + "." + item.plug.AttributeName(!call.Has("-shortNames")) : name;
}

Value List(CommandCall& call) {
    if (call.Has("-nodeTypes")) {
        return call.GetHost().scene().types().NodeTypeNames();
    }
    ItemList items;
    for (const Item& item : Candidates(call)) {
        if (Passes(call, *item.node)) {
            items.push_back(item);
        }
    }
    KeepHeadOrTail(call, items);
    Value::StringArray names;
    for (const Item& item : items) {
        names.push_back(Shown(call, item));
        if (call.Has("-showType")) {
            names.push_back(item.plug ? item.plug.attribute->TypeName() : item.node->Type().Name());
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
