#include "formats/SceneContent.h"

#include "formats/PlugSettingCollector.h"
#include "formats/ReferencePath.h"
#include "formats/SceneFiles.h"
#include "scene/DagNode.h"
#include "scene/DataType.h"
#include "scene/DataValue.h"
#include "scene/Host.h"
#include "scene/PluginLoader.h"
#include "scene/Scene.h"
#include "scene/TimeUnits.h"
#include "scene/Timeline.h"
#include "text/NumberText.h"

#include <algorithm>
#include <set>

namespace lightbox {
namespace {

bool IsWritten(const Node& node) {
    return !node.doNotWrite && node.reference.empty() && !(node.UserNode() && node.UserNode()->doNotWrite());
}

void AddUnique(std::vector<std::string>& list, const std::string& text) {
    if (!text.empty() && std::find(list.begin(), list.end(), text) == list.end()) {
        list.push_back(text);
    }
}

/// Adds the names of the plug-in data types of the attributes and their children.
void AddDataTypes(const std::vector<std::shared_ptr<Attribute>>& attributes, std::set<std::string>& names) {
    for (const auto& attribute : attributes) {
        if (attribute->Kind() == AttributeKind::PluginData) {
            names.insert(attribute->dataTypeName);
        }
        AddDataTypes(attribute->Children(), names);
    }
}

/// Adds the history, keys and materials of the nodes, none of which are in the DAG. Leaves out other members
/// of the materials.
void AddNetwork(const Scene& scene, std::set<const Node*>& wanted) {
    std::vector<const Node*> waiting(wanted.begin(), wanted.end());
    while (!waiting.empty()) {
        const Node& node = *waiting.back();
        waiting.pop_back();
        for (const Connection& connection : scene.connections().Of(node)) {
            const Node& source = *connection.source.node;
            const Node& destination = *connection.destination.node;
            const bool isSource = &destination == &node;
            const Node& other = isSource ? source : destination;
            const bool belongs = !other.Type().IsDag() && (isSource || other.Type().IsA("shadingEngine"));
            if (belongs && wanted.insert(&other).second) {
                waiting.push_back(&other);
            }
        }
    }
}

} // namespace

std::pair<Plug, std::string> SceneContent::Target(const Connection& connection) {
    const Plug& to = connection.destination;
    const bool isNext = to.element >= 0 && !to.attribute->indexMatters && to.attribute->multi;
    return isNext ? std::make_pair(Plug(to.node, to.attribute), std::string(" -na"))
                  : std::make_pair(to, std::string());
}

void SceneContent::NameReferencesFrom(const std::string& folder) {
    for (FileReference& reference : references) {
        const std::string& given = reference.givenPath;
        if (!given.empty() && ReferencePath::Resolve(given, folder) == reference.path) {
            reference.path = given;
        }
    }
}

SceneContent SceneContent::Whole(Host& host) {
    SceneContent content;
    for (const FileReference& reference : host.files().references().All()) {
        if (reference.parent.empty()) {
            content.references.push_back(reference);
        }
    }
    for (DagNode* node : Scene::Subtree(host.scene().world())) {
        if (!node->IsWorld() && IsWritten(*node)) {
            content.nodes.push_back(node->Shared());
        }
    }
    for (const std::shared_ptr<Node>& node : host.scene().Nodes()) {
        if (!node->Type().IsDag() && IsWritten(*node)) {
            (node->isDefault ? content.defaults : content.nodes).push_back(node);
        }
    }
    content.edits = host.files().references().Edits();
    for (ReferenceEdit& edit : content.edits) {
        for (PlugSetting& setting : edit.settings) {
            host.files().units().ToFile(edit.node, setting);
        }
    }
    content.broken = host.files().references().BrokenConnections();
    content.CollectConnections(host.scene(), host.files().references());
    content.CollectRequirements(host.scene(), host.plugins());
    return content;
}

SceneContent SceneContent::Part(Host& host, const std::vector<std::shared_ptr<Node>>& nodes) {
    std::set<const Node*> wanted;
    for (const std::shared_ptr<Node>& node : nodes) {
        wanted.insert(node.get());
        auto* dag = dynamic_cast<DagNode*>(node.get());
        if (!dag) {
            continue;
        }
        for (DagNode* below : Scene::Subtree(*dag)) {
            wanted.insert(below);
        }
        for (DagNode* above = dag->Parent(); above && !above->IsWorld(); above = above->Parent()) {
            wanted.insert(above);
        }
    }
    AddNetwork(host.scene(), wanted);
    SceneContent whole = Whole(host);
    SceneContent content;
    content.isWhole = false;
    content.defaults = std::move(whole.defaults);
    std::copy_if(whole.nodes.begin(), whole.nodes.end(), std::back_inserter(content.nodes),
                 [&](const auto& node) { return wanted.count(node.get()) > 0; });
    content.CollectConnections(host.scene(), host.files().references());
    content.CollectRequirements(host.scene(), host.plugins());
    return content;
}

void SceneContent::CollectConnections(const Scene& scene, const ReferenceList& references) {
    std::set<const Node*> ends;
    for (const auto* list : {&nodes, &defaults}) {
        for (const std::shared_ptr<Node>& node : *list) {
            ends.insert(node.get());
        }
    }
    const auto isEnd = [&](const Plug& plug) {
        return ends.count(plug.node.get()) > 0 || (isWhole && !plug.node->reference.empty());
    };
    for (const Connection& connection : scene.connections().All()) {
        const bool isBetweenDefaults =
            connection.source.node->isDefault && connection.destination.node->isDefault;
        if (isEnd(connection.source) && isEnd(connection.destination) && !isBetweenDefaults &&
            !references.IsFromFile(connection)) {
            connections.push_back(connection);
        }
    }
}

void SceneContent::Require(const PluginLoader& plugins, const std::string& plugin,
                           const std::string& nodeType, const std::string& dataType) {
    const Plugin* loaded = plugins.Find(plugin);
    if (!loaded) {
        return;
    }
    auto found = std::find_if(requirements.begin(), requirements.end(),
                              [&](const Requirement& other) { return other.plugin == loaded->name; });
    if (found == requirements.end()) {
        requirements.push_back({loaded->name, loaded->version, {}, {}});
        found = requirements.end() - 1;
    }
    AddUnique(found->nodeTypes, nodeType);
    AddUnique(found->dataTypes, dataType);
}

void SceneContent::CollectRequirements(const Scene& scene, const PluginLoader& plugins) {
    std::set<const NodeType*> types;
    std::set<std::string> dataTypes;
    for (const std::shared_ptr<Node>& node : nodes) {
        if (types.insert(&node->Type()).second) {
            Require(plugins, node->Type().plugin, node->Type().Name(), "");
            AddDataTypes(node->Type().Attributes(), dataTypes);
        }
        AddDataTypes(node->DynamicAttributes(), dataTypes);
    }
    for (const std::string& name : dataTypes) {
        if (const auto type = scene.types().FindDataType(name)) {
            Require(plugins, type->plugin, "", name);
        }
    }
}

std::vector<PlugSetting> SceneContent::Settings(const std::shared_ptr<Node>& node, const SceneUnits& units) {
    std::vector<PlugSetting> settings = PlugSettingCollector::Collect(node);
    for (PlugSetting& setting : settings) {
        units.ToFile(node, setting);
    }
    return settings;
}

bool SceneContent::IsSceneScript(const Node& node) {
    constexpr int sceneConfiguration = 6;
    return node.Name() == SCENE_SCRIPT && node.Type().Name() == "script" && node.reference.empty() &&
           static_cast<int>(Plug::Of(node, "scriptType").Number()) == sceneConfiguration;
}

std::string SceneContent::ConfigurationScript(const Timeline& time) {
    return "playbackOptions -min " + DecimalText(time.MinTime()) + " -max " + DecimalText(time.MaxTime()) +
           " -ast " + DecimalText(time.AnimationStart()) + " -aet " + DecimalText(time.AnimationEnd()) + " ";
}

std::vector<std::pair<std::string, std::string>> SceneContent::FileInfo(const SceneFiles& files) {
    std::vector<std::pair<std::string, std::string>> info{
        {"application", "lightbox"}, {"product", "Lightbox"}, {"version", "2018"}};
    static const std::set<std::string> writerKeys{"application", "product", "version", "cutIdentifier",
                                                  "osv"};
    for (const auto& pair : files.fileInfo()) {
        if (writerKeys.count(pair.first) == 0) {
            info.push_back(pair);
        }
    }
    return info;
}

} // namespace lightbox
