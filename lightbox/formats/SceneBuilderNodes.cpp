// The part of SceneBuilder that creates nodes and finds them by their names in the file.

#include "formats/AttributeFactory.h"
#include "formats/PreservedContent.h"
#include "formats/SceneBuilder.h"
#include "formats/SceneContent.h"
#include "formats/SceneFiles.h"
#include "formats/UnknownNodes.h"
#include "scene/DagNode.h"
#include "scene/Host.h"
#include "scene/Scene.h"
#include "scene/SceneError.h"

#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace lightbox {
namespace {

std::string LastPart(const std::string& path) {
    const std::size_t bar = path.rfind('|');
    return bar == std::string::npos ? path : path.substr(bar + 1);
}

std::string WithoutRoot(const std::string& name) {
    return !name.empty() && name[0] == ':' ? name.substr(1) : name;
}

bool EndsWithPath(const std::string& fullPath, const std::string& path) {
    if (path.size() > fullPath.size() ||
        fullPath.compare(fullPath.size() - path.size(), path.size(), path) != 0) {
        return false;
    }
    return path[0] == '|'
               ? path.size() == fullPath.size()
               : path.size() == fullPath.size() || fullPath[fullPath.size() - path.size() - 1] == '|';
}

} // namespace

void SceneBuilder::AddLocalName(const std::string& name, const std::string& parentPath,
                                const std::shared_ptr<Node>& node) {
    const std::string path = node->Type().IsDag() ? parentPath + "|" + name : name;
    names_[name].push_back({path, node});
    localPaths_[node.get()] = path;
}

std::vector<std::shared_ptr<Node>> SceneBuilder::FindLocal(const std::string& path) const {
    std::vector<std::shared_ptr<Node>> nodes;
    const auto found = names_.find(LastPart(path));
    if (found != names_.end()) {
        for (const LocalName& local : found->second) {
            if (EndsWithPath(local.path, path)) {
                nodes.push_back(local.node);
            }
        }
    }
    return nodes;
}

std::shared_ptr<Node> SceneBuilder::Find(const std::string& path) const {
    const std::string plain = WithoutRoot(path);
    if (plain.empty()) {
        return nullptr;
    }
    const std::vector<std::shared_ptr<Node>> local = FindLocal(plain);
    if (!local.empty()) {
        return local.size() == 1 ? local.front() : nullptr;
    }
    const Scene& scene = host_.scene();
    if (!source_.nameSpace.empty() && path[0] != ':') {
        // The node of a nested reference has the namespace of the outer one in front.
        const std::size_t nameBegin = plain[0] == '|' ? 1 : 0;
        if (auto node =
                scene.Find(plain.substr(0, nameBegin) + source_.nameSpace + ":" + plain.substr(nameBegin))) {
            return node;
        }
    }
    const std::shared_ptr<Node> node = scene.Find(plain);
    const bool isReachable = node && (source_.mode == Mode::Open || node->isDefault || node->isShared);
    return isReachable ? node : nullptr;
}

bool SceneBuilder::IsForeign(const Node& node) const {
    return source_.mode != Mode::Open && isNew_.count(&node) == 0;
}

void SceneBuilder::SetCurrent(const std::shared_ptr<Node>& node) {
    current_ = node;
    keptAttributes_.clear();
    sliceTypes_.clear();
}

void SceneBuilder::Select(const std::string& path) {
    SetCurrent(Find(path));
    missingDefault_ = path;
}

std::shared_ptr<Node> SceneBuilder::FindShared(const std::string& name, const DagNode* parent) const {
    for (const std::shared_ptr<Node>& node : host_.scene().FindAll(WithoutRoot(name))) {
        const auto* dag = dynamic_cast<const DagNode*>(node.get());
        if ((node->isShared || node->isDefault) && (!parent || (dag && dag->Parent() == parent))) {
            return node;
        }
    }
    return nullptr;
}

std::string SceneBuilder::NameInScene(const std::string& name) const {
    if (!source_.nameSpace.empty()) {
        return source_.nameSpace + ":" + name;
    }
    if (source_.mode != Mode::Import) {
        return name;
    }
    const std::vector<std::shared_ptr<Node>> taken = host_.scene().FindAll(name);
    const bool clashes = std::any_of(taken.begin(), taken.end(), [this](const std::shared_ptr<Node>& node) {
        return isNew_.count(node.get()) == 0;
    });
    if (!clashes) {
        return name;
    }
    const std::string prefix =
        QFileInfo(QString::fromStdString(source_.path)).completeBaseName().toStdString();
    const std::string nameSpace = Scene::NamespaceOf(name);
    return (nameSpace.empty() ? nameSpace : nameSpace + ":") + prefix + "_" + Scene::WithoutNamespace(name);
}

std::shared_ptr<DagNode> SceneBuilder::ParentFor(const std::string& parentPath) {
    if (parentPath.empty()) {
        return nullptr;
    }
    std::shared_ptr<Node> parent = Find(parentPath);
    if (!parent) {
        ReportFault("No object matches name: " + parentPath + "; its children go to the top level.");
        return nullptr;
    }
    if (!parent->Type().IsDag() && parent->Type().IsA("unknown")) {
        parent = ReplaceByTransform(parent);
    }
    auto dag = std::dynamic_pointer_cast<DagNode>(parent);
    if (!dag) {
        ReportFault("'" + parentPath + "' cannot be a parent; its children go to the top level.");
    }
    return dag;
}

void SceneBuilder::SetUuid(Node& node, const std::string& uuid) {
    if (IsForeign(node)) {
        return;
    }
    if (source_.mode == Mode::Import) {
        // Importing a file twice must not give two nodes the same UUID.
        if (uuidsBefore_.empty()) {
            for (const std::shared_ptr<Node>& other : host_.scene().Nodes()) {
                if (isNew_.count(other.get()) == 0) {
                    uuidsBefore_.insert(other->Uuid());
                }
            }
        }
        if (uuidsBefore_.count(uuid) > 0) {
            return;
        }
    }
    node.SetUuid(uuid);
    hasScriptUuid_ = hasScriptUuid_ || &node == sceneScript_.get();
}

std::shared_ptr<const NodeType> SceneBuilder::TypeFor(const std::string& type, bool hasParent) {
    if (!AttributeFactory::IsName(type)) {
        throw SceneError("\"" + type + "\" cannot be a node type.");
    }
    const TypeRegistry& types = host_.scene().types();
    std::shared_ptr<const NodeType> known = types.FindNodeType(type);
    if (known && !known->isAbstract) {
        return known;
    }
    NoteKept("node type " + type,
             "Unrecognized node type '" + type + "'; its nodes are kept and written back.");
    const char* base = hasParent ? "unknownDag" : "unknown";
    std::shared_ptr<const NodeType>& unknown = unknownTypes_[base + ("|" + type)];
    if (!unknown) {
        const std::shared_ptr<const NodeType> baseType = types.FindNodeType(base);
        unknown = std::make_shared<NodeType>(type, baseType, baseType->ApiType());
    }
    return unknown;
}

std::shared_ptr<Node> SceneBuilder::ReplaceByTransform(const std::shared_ptr<Node>& unknown) {
    // The type of an unknown node at the top level is open until its first child shows that it is a
    // transform.
    std::shared_ptr<Node> transform = UnknownNodes(host_).Replace(unknown, "unknownTransform");
    std::replace(newNodes_.begin(), newNodes_.end(), unknown, transform);
    isNew_.insert(transform.get());
    for (LocalName& local : names_[localPaths_[unknown.get()]]) {
        if (local.node == unknown) {
            local.node = transform;
            local.path = "|" + local.path;
            localPaths_[transform.get()] = local.path;
        }
    }
    localPaths_.erase(unknown.get());
    isNew_.erase(unknown.get());
    // Preserved statements may set attributes that every transform has.
    const std::vector<std::string> kept =
        std::exchange(host_.files().preserved().Of(*transform).statements, {});
    SetCurrent(transform);
    for (const std::string& text : kept) {
        RunStatement(text);
    }
    return transform;
}

std::shared_ptr<Node> SceneBuilder::CreateNode(const std::string& type, const std::string& name,
                                               const std::string& parentPath, bool shared) {
    std::shared_ptr<DagNode> parent = ParentFor(parentPath);
    missingDefault_.clear();
    SetCurrent(nullptr);
    const auto known = host_.scene().types().FindNodeType(type);
    if (!parent && known && known->IsShape() && !known->isAbstract) {
        parent = std::static_pointer_cast<DagNode>(CreateNode("transform", "", "", false));
    }
    const std::string localParent = parent ? localPaths_[parent.get()] : std::string();
    if (shared) {
        if (std::shared_ptr<Node> existing = FindShared(name, parent.get())) {
            AddLocalName(name, localParent, existing);
            current_ = existing;
            return existing;
        }
    }
    Scene& scene = host_.scene();
    std::shared_ptr<Node> node = scene.Make(TypeFor(type, parent != nullptr));
    node->isShared = shared;
    node->reference = source_.reference;
    newNodes_.push_back(node);
    isNew_.insert(node.get());
    scene.Attach(node, name.empty() ? name : NameInScene(WithoutRoot(name)), parent.get());
    AddLocalName(name.empty() ? Scene::WithoutNamespace(node->Name()) : WithoutRoot(name), localParent, node);
    if (type == "script" && name == SceneContent::SCENE_SCRIPT) {
        sceneScript_ = node;
    }
    current_ = node;
    return node;
}

} // namespace lightbox
