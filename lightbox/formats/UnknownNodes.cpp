#include "formats/UnknownNodes.h"

#include "formats/AsciiStatements.h"
#include "formats/PlugSettingApplier.h"
#include "formats/PlugSettingCollector.h"
#include "formats/PreservedContent.h"
#include "formats/SceneContent.h"
#include "formats/SceneFiles.h"
#include "mel/Interpreter.h"
#include "scene/DagNode.h"
#include "scene/Host.h"
#include "scene/Plugin.h"
#include "scene/Scene.h"

#include <algorithm>

namespace lightbox {
namespace {

bool Holds(const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

/// Whether the attribute or one below it has a data type of the plug-in.
bool HasDataType(const Attribute& attribute, const Plugin& plugin) {
    return (attribute.Kind() == AttributeKind::PluginData &&
            Holds(plugin.dataTypes, attribute.dataTypeName)) ||
           std::any_of(attribute.Children().begin(), attribute.Children().end(),
                       [&](const auto& child) { return HasDataType(*child, plugin); });
}

/// Whether a setting's path begins with the attribute or one below it.
bool IsBelow(const std::string& path, const Attribute& attribute) {
    return path.substr(0, path.find_first_of("[.")) == attribute.ShortName() ||
           std::any_of(attribute.Children().begin(), attribute.Children().end(),
                       [&](const auto& child) { return IsBelow(path, *child); });
}

} // namespace

bool UnknownNodes::HasTypeOf(const Node& node, const Plugin& plugin) const {
    return Holds(plugin.nodeTypes, node.Type().Name()) && node.UserNode();
}

bool UnknownNodes::HasDataOf(const Node& node, const Plugin& plugin) const {
    const auto& attributes = node.DynamicAttributes();
    return std::any_of(attributes.begin(), attributes.end(),
                       [&](const auto& attribute) { return HasDataType(*attribute, plugin); });
}

int UnknownNodes::CountUsing(const Plugin& plugin) const {
    const auto nodes = host_.scene().Nodes();
    return static_cast<int>(std::count_if(nodes.begin(), nodes.end(), [&](const auto& node) {
        return HasTypeOf(*node, plugin) || HasDataOf(*node, plugin);
    }));
}

void UnknownNodes::Convert(const Plugin& plugin) {
    KeepRequirement(plugin);
    for (const std::shared_ptr<Node>& node : host_.scene().Nodes()) {
        KeepAttributes(node, plugin);
        if (HasTypeOf(*node, plugin)) {
            const NodeType& type = node->Type();
            Replace(node, type.IsTransform() ? "unknownTransform" : type.IsDag() ? "unknownDag" : "unknown");
        }
    }
}

void UnknownNodes::KeepRequirement(const Plugin& plugin) {
    auto& requirements = host_.files().preserved().requirements;
    requirements.erase(
        std::remove_if(requirements.begin(), requirements.end(),
                       [&](const auto& other) { return other.plugin == plugin.name && !other.isFurther; }),
        requirements.end());
    const std::string text =
        ascii::RequiresText(plugin.name, plugin.version, plugin.nodeTypes, plugin.dataTypes);
    requirements.push_back({plugin.name, text, false});
}

void UnknownNodes::KeepAttributes(const std::shared_ptr<Node>& node, const Plugin& plugin) {
    if (!HasDataOf(*node, plugin)) {
        return;
    }
    const std::vector<PlugSetting> settings = SceneContent::Settings(node, host_.files().units());
    const std::vector<std::shared_ptr<Attribute>> attributes = node->DynamicAttributes();
    PreservedContent& preserved = host_.files().preserved();
    auto& kept = preserved.Of(*node).statements;
    preserved.Of(*node).units = host_.files().units();
    for (const auto& attribute : attributes) {
        if (!HasDataType(*attribute, plugin)) {
            continue;
        }
        for (const std::string& text : ascii::AddAttrTexts(*attribute)) {
            kept.push_back(text);
        }
        for (const PlugSetting& setting : settings) {
            if (IsBelow(setting.path, *attribute)) {
                kept.push_back(ascii::SettingText(setting));
            }
        }
        for (const Connection& cut : host_.scene().connections().CutAttribute(*node, *attribute)) {
            preserved.connections.push_back({cut.source.node, cut.source.AttributeName(false),
                                             cut.destination.node, cut.destination.AttributeName(false), ""});
        }
        node->TakeStates(*attribute);
        node->RemoveDynamicAttribute(*attribute);
    }
}

void UnknownNodes::MoveSettings(const std::shared_ptr<Node>& from, const std::shared_ptr<Node>& to) {
    const std::vector<PlugSetting> settings = PlugSettingCollector::Collect(from);
    for (const auto& attribute : from->DynamicAttributes()) {
        to->AddDynamicAttribute(attribute);
    }
    PlugSettingApplier applier(host_, PlugSettingApplier::ApplyMode::Read);
    for (const PlugSetting& setting : settings) {
        try {
            applier.Apply(to, setting);
        } catch (const SceneError&) {
            PlugSetting inFile = setting;
            host_.files().units().ToFile(from, inFile);
            PreservedContent::NodeContent& kept = host_.files().preserved().Of(*to);
            kept.units = host_.files().units();
            kept.statements.push_back(ascii::SettingText(inFile));
        }
    }
}

std::shared_ptr<Node> UnknownNodes::Replace(const std::shared_ptr<Node>& node, const char* base) {
    Scene& scene = host_.scene();
    const auto baseType = scene.types().FindNodeType(base);
    std::shared_ptr<Node> unknown =
        scene.Make(std::make_shared<NodeType>(node->Type().Name(), baseType, baseType->ApiType()));
    unknown->SetUuid(node->Uuid());
    unknown->reference = node->reference;
    unknown->locked = node->locked;
    unknown->isShared = node->isShared;
    host_.files().preserved().Move(*node, *unknown);
    MoveSettings(node, unknown);

    auto* dag = dynamic_cast<DagNode*>(node.get());
    DagNode* parent = dag ? dag->Parent() : nullptr;
    const int index = dag ? dag->IndexInParent() : -1;
    scene.Attach(unknown, ":" + node->Name(), parent);
    if (dag) {
        const std::vector<DagNode*> children = dag->Children();
        for (DagNode* child : children) {
            scene.Move(*child, static_cast<DagNode&>(*unknown));
        }
    }
    const NodePlace place = scene.Detach(*node);
    scene.Rename(*unknown, place.name);
    if (dag) {
        scene.Reorder(static_cast<DagNode&>(*unknown), index);
    }
    for (const Connection& connection : place.connections) {
        const auto moved = [&](const Plug& plug) {
            return plug.node == node
                       ? Plug(unknown, unknown->FindAttribute(plug.attribute->LongName()), plug.element)
                       : plug;
        };
        const Plug source = moved(connection.source);
        const Plug destination = moved(connection.destination);
        if (source && destination) {
            scene.connections().Add(source, destination);
        } else {
            host_.files().preserved().connections.push_back(
                {source.node, connection.source.AttributeName(false), destination.node,
                 connection.destination.AttributeName(false), ""});
        }
    }
    return unknown;
}

} // namespace lightbox
