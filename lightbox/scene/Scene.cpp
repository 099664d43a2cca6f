#include "scene/Scene.h"

#include "scene/AnimCurveNode.h"
#include "scene/EventBus.h"
#include "scene/SceneError.h"
#include "scene/ScopeExit.h"

#include <algorithm>
#include <functional>
#include <iostream>
#include <new>
#include <set>

namespace lightbox {

Scene::Scene(EventBus& events, const Timeline& timeline)
    : events_(events)
    , timeline_(timeline)
    , selection_(events) {
    world_ = std::make_shared<DagNode>(types_.FindNodeType("world"));
    world_->scene_ = this;
    world_->name_ = "world";
}

Scene::~Scene() {
    for (const auto& entry : nodes_) {
        entry.second->scene_ = nullptr;
        if (auto* dag = dynamic_cast<DagNode*>(entry.second.get())) {
            dag->parent_ = nullptr;
            dag->children_.clear();
        }
    }
    world_->scene_ = nullptr;
    world_->children_.clear();
}

void Scene::New() {
    Selection::Hold hold(selection_);
    for (const std::shared_ptr<Node>& node : Nodes()) {
        events_.FireNode(EventBus::NodeEvent::Removed, *node);
    }
    Touch();
    selection_.Clear();
    connections_.Clear();
    byName_.clear();
    lowestFree_.clear();
    // Destroy the nodes only when the scene is consistent: their plug-in objects may use it.
    const std::map<std::uint64_t, std::shared_ptr<Node>> gone = std::move(nodes_);
    nodes_.clear();
    world_->children_.clear();
    for (const auto& entry : gone) {
        entry.second->scene_ = nullptr;
        if (auto* dag = dynamic_cast<DagNode*>(entry.second.get())) {
            dag->parent_ = nullptr;
            dag->children_.clear();
        }
    }
    namespaces_.clear();
    currentNamespace.clear();
    MakeDefaultNodes();
}

void Scene::MakeDefaultNodes() {
    const std::pair<const char*, const char*> defaults[] = {{"time", "time1"},
                                                            {"resolution", "defaultResolution"},
                                                            {"renderGlobals", "defaultRenderGlobals"},
                                                            {"partition", "renderPartition"},
                                                            {"shadingEngine", "initialShadingGroup"},
                                                            {"lambert", "lambert1"}};
    for (const auto& entry : defaults) {
        const std::shared_ptr<Node> node = Make(types_.FindNodeType(entry.first));
        node->isDefault = true;
        Attach(node, entry.second);
    }
    const Plug resolution = FindPlug("defaultRenderGlobals.resolution");
    connections_.Add(FindPlug("defaultResolution.message"), resolution);
    connections_.Add(FindPlug("lambert1.outColor"), FindPlug("initialShadingGroup.surfaceShader"));
    connections_.Add(FindPlug("initialShadingGroup.partition"), FindPlug("renderPartition.sets[0]"));

    MakeCamera("persp", {28, 21, 28}, {-27.938352729602379, 44.999999999999972, -5.1726811013541830e-14},
               false);
    MakeCamera("top", {0, 1000.1, 0}, {-90, 0, 0}, true);
    MakeCamera("front", {0, 0, 1000.1}, {0, 0, 0}, true);
    MakeCamera("side", {1000.1, 0, 0}, {0, 90, 0}, true);
}

void Scene::MakeCamera(const std::string& name, const std::vector<double>& translate,
                       const std::vector<double>& rotate, bool orthographic) {
    const auto transform = std::static_pointer_cast<DagNode>(Make(types_.FindNodeType("transform")));
    const std::shared_ptr<Node> shape = Make(types_.FindNodeType("camera"));
    transform->isShared = true;
    shape->isShared = true;
    Attach(transform, name);
    Attach(shape, name + "Shape", transform.get());
    const auto store = [](const std::shared_ptr<Node>& node, const char* attribute,
                          const AttributeValue& value) { Plug::Of(*node, attribute).Store(value); };
    store(transform, "visibility", 0.0);
    store(transform, "translate", translate);
    store(transform, "rotate", rotate);
    store(shape, "imageName", name);
    store(shape, "depthName", name + "_depth");
    store(shape, "maskName", name + "_mask");
    store(shape, "visibility", 0.0);
    if (orthographic) {
        store(shape, "renderable", 0.0);
        store(shape, "centerOfInterest", 1000.1);
        store(shape, "orthographic", 1.0);
        store(shape, "orthographicWidth", 30.0);
    } else {
        store(shape, "centerOfInterest", 44.82186966202994);
    }
    store(shape, "homeCommand",
          orthographic ? "viewSet -" + name.substr(0, 1) + " %camera" : "viewSet -p %camera");
}

std::shared_ptr<Node> Scene::Make(const std::shared_ptr<const NodeType>& type) {
    if (!type || type->isAbstract) {
        throw SceneError("Cannot create a node of type '" + (type ? type->Name() : std::string()) + "'.");
    }
    std::shared_ptr<Node> node = type->IsDag()                  ? std::make_shared<DagNode>(type)
                                 : type->HasFn(MFn::kAnimCurve) ? std::make_shared<AnimCurveNode>(type)
                                                                : std::make_shared<Node>(type);
    node->serial_ = nextSerial_++;
    if (type->creator) {
        node->userNode_ = type->creator(*node);
        if (!node->userNode_) {
            throw SceneError("The plug-in could not create a node of type '" + type->Name() + "'.");
        }
        node->userNode_->postConstructor();
    }
    return node;
}

void Scene::Insert(const std::shared_ptr<Node>& node, const std::string& name, DagNode* parent, int index) {
    Touch();
    node->name_ = name;
    node->scene_ = this;
    nodes_[node->serial_] = node;
    byName_[name].push_back(node.get());
    const std::string nameSpace = NamespaceOf(name);
    if (!nameSpace.empty()) {
        AddNamespace(nameSpace);
    }
    if (auto* dag = dynamic_cast<DagNode*>(node.get())) {
        DagNode& above = parent ? *parent : *world_;
        const int count = static_cast<int>(above.children_.size());
        above.children_.insert(above.children_.begin() + (index < 0 || index > count ? count : index), dag);
        dag->parent_ = &above;
    }
    events_.FireNode(EventBus::NodeEvent::Added, *node);
}

std::string Scene::Attach(const std::shared_ptr<Node>& node, const std::string& wantedName, DagNode* parent) {
    DagNode* above = node->Type().IsDag() && !parent ? world_.get() : parent;
    std::string name =
        wantedName.empty() ? FreeDefaultName(node->Type()) : FreeName(wantedName, *node, above);
    Insert(node, name, above, -1);
    return name;
}

NodePlace Scene::Detach(Node& node) {
    events_.FireNode(EventBus::NodeEvent::Removed, node);
    Touch();
    NodePlace place;
    place.node = node.Shared();
    place.name = node.name_;
    place.connections = connections_.Of(node);
    for (const Connection& connection : place.connections) {
        connections_.Remove(connection.source, connection.destination);
    }
    Selection::List selected = selection_.Get();
    const auto inSelection = std::find(selected.begin(), selected.end(), place.node);
    if (inSelection != selected.end()) {
        place.selectionIndex = static_cast<int>(inSelection - selected.begin());
        selected.erase(inSelection);
    }
    if (auto* dag = dynamic_cast<DagNode*>(&node)) {
        place.parent = std::static_pointer_cast<DagNode>(dag->parent_->Shared());
        place.index = dag->IndexInParent();
        dag->parent_->children_.erase(dag->parent_->children_.begin() + place.index);
        dag->parent_ = nullptr;
    }
    Unname(node);
    nodes_.erase(node.serial_);
    node.scene_ = nullptr;
    selection_.Set(selected);
    return place;
}

void Scene::Restore(const NodePlace& place) {
    // An unrecorded edit may have deleted the parent.
    DagNode* parent = place.parent && place.parent->InScene() ? place.parent.get() : nullptr;
    Insert(place.node, FreeName(place.name, *place.node, parent), parent, place.index);
    for (const Connection& connection : place.connections) {
        // An unrecorded edit may have deleted the other end or given it another source.
        if (connection.source.node->InScene() && connection.destination.node->InScene()) {
            connections_.Add(connection.source, connection.destination);
        }
    }
    if (place.selectionIndex >= 0) {
        Selection::List selected = selection_.Get();
        const auto position = std::min(static_cast<std::size_t>(place.selectionIndex), selected.size());
        selected.insert(selected.begin() + static_cast<std::ptrdiff_t>(position), place.node);
        selection_.Set(selected);
    }
}

std::vector<std::shared_ptr<Node>> Scene::Nodes() const {
    std::vector<std::shared_ptr<Node>> nodes;
    nodes.reserve(nodes_.size());
    for (const auto& entry : nodes_) {
        nodes.push_back(entry.second);
    }
    return nodes;
}

std::vector<DagNode*> Scene::Subtree(DagNode& root) {
    std::vector<DagNode*> nodes;
    std::vector<DagNode*> waiting{&root};
    while (!waiting.empty()) {
        DagNode* node = waiting.back();
        waiting.pop_back();
        nodes.push_back(node);
        waiting.insert(waiting.end(), node->Children().rbegin(), node->Children().rend());
    }
    return nodes;
}

void Scene::Rename(Node& node, const std::string& freeName) {
    std::string name = freeName;
    const bool isOther = name != node.name_;
    if (isOther) {
        SwapName(node, name);
    }
    Touch();
    // The name stands, and whoever can be told hears of it.
    const auto tell = [](const auto& event) {
        try {
            event();
        } catch (const std::bad_alloc&) {
            std::cerr << "Out of memory: not everything follows the new name of a node.\n";
        }
    };
    if (isOther) {
        tell([&] { events_.FireRename(node, name); });
    }
    tell([&] { events_.Fire("NameChanged"); });
}

/// Gives the node a free name, and takes its old one. Changes nothing when memory is short.
void Scene::SwapName(Node& node, std::string& name) {
    std::set<std::string> namespaces = namespaces_;
    const auto named = byName_.try_emplace(name).first;
    bool isDone = false;
    const ScopeExit takeBack([&] {
        if (!isDone) {
            namespaces_.swap(namespaces);
        }
        if (named->second.empty()) {
            byName_.erase(named);
        }
    });
    named->second.reserve(named->second.size() + 1);
    const std::string nameSpace = NamespaceOf(name);
    if (!nameSpace.empty()) {
        AddNamespace(nameSpace);
    }
    Unname(node);
    node.name_.swap(name); // from here on nothing needs memory
    named->second.push_back(&node);
    isDone = true;
}

void Scene::Move(DagNode& node, DagNode& parent, int index) {
    Touch();
    node.parent_->children_.erase(node.parent_->children_.begin() + node.IndexInParent());
    const int count = static_cast<int>(parent.children_.size());
    parent.children_.insert(parent.children_.begin() + (index < 0 || index > count ? count : index), &node);
    node.parent_ = &parent;
}

void Scene::Reorder(DagNode& node, int index) {
    Move(node, *node.parent_, index);
}

} // namespace lightbox
