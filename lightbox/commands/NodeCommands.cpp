#include "commands/Registration.h"
#include "commands/SceneArguments.h"
#include "formats/AttributeFactory.h"
#include "formats/PlugSettingApplier.h"
#include "formats/PlugSettingCollector.h"
#include "mel/SyntaxBuilder.h"
#include "scene/DagNode.h"
#include "scene/DataValue.h"
#include "scene/Edit.h"
#include "scene/Host.h"
#include "scene/Material.h"
#include "scene/MeshNode.h"
#include "scene/Scene.h"
#include "scene/SceneError.h"

#include <maya/MPxNode.h>

#include <algorithm>

namespace lightbox::mel {
namespace {

Value CreateNode(CommandCall& call) {
    const std::string type = call.Object(0).AsString();
    const std::string name = call.StringOr("-name", "");
    const std::string parentName = call.StringOr("-parent", "");
    Host& host = call.GetHost();
    if (call.Has("-shared")) {
        const NodeList existing = host.scene().FindAll(name);
        if (!existing.empty() && existing.front()->Type().Name() == type) {
            return ShownName(*existing.front());
        }
    }
    const std::shared_ptr<DagNode> parent = parentName.empty() ? nullptr : DagNodeNamed(call, parentName);
    const std::shared_ptr<Node> node = edit::CreateNode(host, type, name, parent.get());
    if (!call.Has("-skipSelect")) {
        edit::Select(host, {node});
    }
    return ShownName(*node);
}

/// True when neither the node nor a node below it is default, shared, locked or referenced.
bool IsDeletable(Node& node) {
    const auto isFree = [](const Node& one) {
        return !one.isDefault && !one.isShared && !one.locked && one.reference.empty();
    };
    auto* dag = dynamic_cast<DagNode*>(&node);
    if (!dag) {
        return isFree(node);
    }
    const std::vector<DagNode*> subtree = Scene::Subtree(*dag);
    return std::all_of(subtree.begin(), subtree.end(), [&](const DagNode* below) { return isFree(*below); });
}

Value Delete(CommandCall& call) {
    NodeList nodes;
    if (call.Has("-all")) {
        for (const std::shared_ptr<Node>& node : call.GetHost().scene().Nodes()) {
            if (IsDeletable(*node)) {
                nodes.push_back(node);
            }
        }
    } else {
        nodes = ObjectsOrSelection(call);
    }
    if (!nodes.empty()) {
        edit::DeleteNodes(call.GetHost(), nodes);
    }
    return {};
}

Value Rename(CommandCall& call) {
    const std::vector<std::string> names = call.ObjectNames();
    if (call.Has("-uuid")) {
        const std::shared_ptr<Node> node =
            names.size() > 1 ? NodeNamed(call, names.front()) : ObjectsOrSelection(call).front();
        edit::Replace(call.GetHost(), "rename", node->Uuid(), names.back(),
                      [node](const std::string& uuid) { node->SetUuid(uuid); });
        return names.back();
    }
    const NodeList& selected = call.GetHost().scene().selection().Get();
    if (names.size() == 1 && selected.empty()) {
        call.Fail("No object was specified.");
    }
    const std::shared_ptr<Node> node = names.size() == 1 ? selected.front() : NodeNamed(call, names.front());
    edit::Rename(call.GetHost(), *node, names.back(), !call.Has("-ignoreShape"));
    return ShownName(*node);
}

Value ObjExists(CommandCall& call) {
    const std::string name = call.Object(0).AsString();
    const Scene& scene = call.GetHost().scene();
    if (name.find('.') != std::string::npos) {
        return scene.HasPlug(name);
    }
    return !scene.Matching(name).empty();
}

Value TypeOfNode(CommandCall& call) {
    const std::shared_ptr<Node> node = NodeNamed(call, call.Object(0).AsString());
    if (!call.Has("-inherited")) {
        return node->Type().Name();
    }
    Value::StringArray types;
    for (const lightbox::NodeType* type = &node->Type(); type; type = type->Base().get()) {
        types.insert(types.begin(), type->Name());
    }
    return types;
}

Value ObjectType(CommandCall& call) {
    const std::shared_ptr<Node> node = NodeNamed(call, call.Object(0).AsString());
    if (call.Has("-isType")) {
        return node->Type().Name() == call.String("-isType");
    }
    if (call.Has("-isAType")) {
        return node->Type().IsA(call.String("-isAType"));
    }
    return node->Type().Name();
}

Value LockNode(CommandCall& call) {
    const NodeList nodes = ObjectsOrSelection(call);
    if (call.IsQuery()) {
        Value::IntArray states;
        for (const std::shared_ptr<Node>& node : nodes) {
            states.push_back(node->locked);
        }
        return states;
    }
    const bool locked = !call.Has("-lock") || call.Bool("-lock");
    for (const std::shared_ptr<Node>& node : nodes) {
        edit::SetNodeLocked(call.GetHost(), *node, locked);
    }
    return {};
}

/// Copies a mesh's evaluated geometry and its material, but not its history.
void CopyMesh(Host& host, const Node& original, const std::shared_ptr<Node>& copy) {
    if (const std::shared_ptr<const MeshData> mesh = MeshNode::Evaluate(original)) {
        edit::SetPlug(host, MeshNode::OwnPlug(copy), mesh);
    }
    if (const std::shared_ptr<Node> group = Material::ShadingGroupOf(original)) {
        Material::Assign(host, copy, group);
    }
}

/// Copies a node and everything below it. The copy goes below `parent`, or the world when that is null.
std::shared_ptr<Node> Duplicate(Host& host, const std::shared_ptr<Node>& original, const std::string& name,
                                DagNode* parent) {
    std::shared_ptr<Node> copy = edit::CreateNode(host, original->Type().Name(), name, parent);
    for (const auto& attribute : original->DynamicAttributes()) {
        copy->AddDynamicAttribute(AttributeFactory::Clone(*attribute));
    }
    for (PlugSetting& setting : PlugSettingCollector::Collect(original)) {
        if (setting.data) {
            setting.data = setting.data->Copy();
        }
        PlugSettingApplier(host, PlugSettingApplier::ApplyMode::Read).Apply(copy, setting);
    }
    if (copy->UserNode() && original->UserNode()) {
        copy->UserNode()->copyInternalData(original->UserNode());
    }
    if (MeshNode::Is(*original)) {
        CopyMesh(host, *original, copy);
    }
    if (const auto* dag = dynamic_cast<const DagNode*>(original.get())) {
        const std::vector<DagNode*> children = dag->Children();
        for (DagNode* child : children) {
            Duplicate(host, child->Shared(), child->Name(), static_cast<DagNode*>(copy.get()));
        }
    }
    return copy;
}

Value DuplicateNodes(CommandCall& call) {
    Host& host = call.GetHost();
    NodeList copies;
    for (const std::shared_ptr<Node>& node : ObjectsOrSelection(call)) {
        auto* dag = dynamic_cast<DagNode*>(node.get());
        if (!host.scene().types().FindNodeType(node->Type().Name())) {
            call.Fail("A node of the unknown type '" + node->Type().Name() + "' cannot be duplicated.");
        }
        if (dag && dag->Type().IsShape()) {
            dag = dag->Parent();
        }
        const std::shared_ptr<Node> original = dag ? dag->Shared() : node;
        copies.push_back(Duplicate(host, original, call.StringOr("-name", original->Name()),
                                   dag ? dag->Parent() : nullptr));
    }
    edit::Select(host, copies);
    return ShownNames(copies);
}

} // namespace

void RegisterNodeCommands(CommandRegistry& registry) {
    AddSceneCommand(registry, "createNode",
                    SyntaxBuilder()
                        .Flag("-n", "-name", MSyntax::kString)
                        .Flag("-p", "-parent", MSyntax::kString)
                        .Flag("-s", "-shared")
                        .Flag("-ss", "-skipSelect")
                        .Objects(1, 1),
                    CreateNode);
    AddSceneCommand(registry, "delete", SyntaxBuilder().Flag("-all", "-all").Objects(), Delete);
    AddSceneCommand(registry, "rename",
                    SyntaxBuilder().Flag("-uid", "-uuid").Flag("-is", "-ignoreShape").Objects(1, 2), Rename);
    AddSceneCommand(registry, "objExists", SyntaxBuilder().Objects(1, 1), ObjExists);
    AddSceneCommand(registry, "nodeType", SyntaxBuilder().Flag("-i", "-inherited").Objects(1, 1), TypeOfNode);
    AddSceneCommand(registry, "objectType",
                    SyntaxBuilder()
                        .Flag("-i", "-isType", MSyntax::kString)
                        .Flag("-isa", "-isAType", MSyntax::kString)
                        .Objects(1, 1),
                    ObjectType);
    AddSceneCommand(registry, "lockNode",
                    SyntaxBuilder()
                        .Flag("-l", "-lock", MSyntax::kBoolean)
                        .Flag("-ln", "-lockName", MSyntax::kBoolean)
                        .Flag("-lu", "-lockUnpublished", MSyntax::kBoolean)
                        .Flag("-ic", "-ignoreComponents")
                        .Query()
                        .Objects(),
                    LockNode);
    // -returnRootsOnly changes nothing: the result is always the roots.
    AddSceneCommand(
        registry, "duplicate",
        SyntaxBuilder().Flag("-n", "-name", MSyntax::kString).Flag("-rr", "-returnRootsOnly").Objects(),
        DuplicateNodes);
}

} // namespace lightbox::mel
