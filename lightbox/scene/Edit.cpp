#include "scene/Edit.h"

#include "scene/DagNode.h"
#include "scene/EditItems.h"
#include "scene/Host.h"
#include "scene/MeshNode.h"
#include "scene/Scene.h"
#include "scene/SceneError.h"
#include "scene/TimeUnits.h"
#include "scene/Timeline.h"
#include "text/NumberText.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

namespace lightbox::edit {

namespace {

/// The name of the transform of a new shape: "camera" for "cameraShape", else the default name.
std::string TransformNameFor(const Scene& scene, const NodeType& shape) {
    const std::string suffix = "Shape";
    const std::string& name = shape.defaultName;
    if (name.size() <= suffix.size() ||
        name.compare(name.size() - suffix.size(), suffix.size(), suffix) != 0) {
        return {};
    }
    return scene.FreeNumberedName(name.substr(0, name.size() - suffix.size()));
}

void CheckParent(const NodeType& type, const DagNode* parent) {
    if (!parent) {
        return;
    }
    if (!type.IsDag()) {
        throw SceneError("A node of type '" + type.Name() + "' cannot have a parent.");
    }
    if (!parent->IsWorld() && !parent->Type().IsTransform()) {
        throw SceneError("Cannot parent a node below the shape '" + Scene::ShownName(*parent) + "'.");
    }
}

std::pair<std::string, std::string> BaseAndNumber(const std::string& name) {
    const std::size_t last = name.find_last_not_of("0123456789");
    const std::size_t end = last == std::string::npos ? 0 : last + 1;
    return {name.substr(0, end), name.substr(end)};
}

/// The new name of a shape whose transform is renamed; empty if the shape keeps its name.
std::string FollowingName(const std::string& shape, const std::string& before, const std::string& after) {
    const auto [oldBase, oldNumber] = BaseAndNumber(before);
    const auto [newBase, newNumber] = BaseAndNumber(after);
    if (shape == oldBase + "Shape" + oldNumber || shape == before + "Shape") {
        return newBase + "Shape" + newNumber;
    }
    return {};
}

void CheckRange(const Plug& plug, double number) {
    const Attribute& attribute = *plug.attribute;
    if (attribute.maximum && number > *attribute.maximum) {
        throw SceneError("Cannot set the attribute '" + plug.Name() + "' past its maximum value of " +
                         DecimalText(*attribute.maximum) + ".");
    }
    if (attribute.minimum && number < *attribute.minimum) {
        throw SceneError("Cannot set the attribute '" + plug.Name() + "' below its minimum value of " +
                         DecimalText(*attribute.minimum) + ".");
    }
}

/// Keeps a mesh as it is when the connection that drives it goes.
void KeepMesh(Host& host, const Plug& destination) {
    if (MeshNode::Is(*destination.node) && destination.attribute->LongName() == "inMesh" &&
        destination.node->reference.empty()) {
        MeshNode::KeepHistory(host, destination.node);
    }
}

void AddWithChildren(std::set<const Node*>& nodes, const Node& node) {
    nodes.insert(&node);
    if (const auto* dag = dynamic_cast<const DagNode*>(&node)) {
        for (const DagNode* child : dag->Children()) {
            AddWithChildren(nodes, *child);
        }
    }
}

PlugState StateOf(const Plug& plug) {
    const PlugState* held = plug.node->FindState(*plug.attribute, plug.element);
    return held ? *held : PlugState();
}

/// Sets one flag of the plug as in another state.
void TakeFlag(const Plug& plug, PlugFlag flag, const PlugState& from) {
    PlugState changed = StateOf(plug);
    switch (flag) {
    case PlugFlag::Locked:
        changed.locked = from.locked;
        break;
    case PlugFlag::Keyable:
        changed.keyable = from.keyable;
        break;
    case PlugFlag::ChannelBox:
        changed.channelBox = from.channelBox;
        break;
    }
    plug.node->SetState(*plug.attribute, plug.element, changed);
}

void CheckRanges(const Plug& plug, const AttributeValue& value) {
    if (const double* number = std::get_if<double>(&value)) {
        CheckRange(plug, *number);
    } else if (const auto* numbers = std::get_if<std::vector<double>>(&value)) {
        for (std::size_t i = 0; i < std::min(numbers->size(), plug.attribute->Children().size()); ++i) {
            CheckRange(plug.Child(i), (*numbers)[i]);
        }
    }
}

} // namespace

void Do(Host& host, const std::string& name, std::function<void()> redo, std::function<void()> undo) {
    DoItem(host.undo(), MakeItem(host.scene(), name, std::move(redo), std::move(undo)));
}

std::shared_ptr<Node> CreateNode(Host& host, const std::string& type, const std::string& name,
                                 DagNode* parent) {
    Scene& scene = host.scene();
    const std::shared_ptr<const NodeType> nodeType = scene.types().FindNodeType(type);
    if (!nodeType) {
        throw SceneError("Unknown object type: " + type);
    }
    CheckParent(*nodeType, parent);
    std::shared_ptr<Node> node = scene.Make(nodeType);
    std::shared_ptr<DagNode> above;
    if (parent && !parent->IsWorld()) {
        above = std::static_pointer_cast<DagNode>(parent->Shared());
    } else if (nodeType->IsShape()) {
        above = std::static_pointer_cast<DagNode>(scene.Make(scene.types().FindNodeType("transform")));
        DoItem(host.undo(), AddItem(host.scene(), above, TransformNameFor(scene, *nodeType), nullptr));
    }
    DoItem(host.undo(), AddItem(host.scene(), node, name, above));
    return node;
}

void DeleteNodes(Host& host, const std::vector<std::shared_ptr<Node>>& nodes) {
    for (const std::shared_ptr<Node>& node : nodes) {
        CheckDeletable(*node);
    }
    std::set<const Node*> gone;
    for (const std::shared_ptr<Node>& node : nodes) {
        AddWithChildren(gone, *node);
    }
    for (const Node* node : gone) {
        for (const Connection& connection : host.scene().connections().Of(*node)) {
            if (connection.source.node.get() == node && gone.count(connection.destination.node.get()) == 0) {
                KeepMesh(host, connection.destination);
            }
        }
    }
    DoItem(host.undo(), DeleteItem(host.scene(), nodes));
}

std::string Rename(Host& host, Node& node, const std::string& name, bool shapes) {
    if (name.empty()) {
        throw SceneError("Cannot rename a node to an empty name.");
    }
    if (node.isDefault || node.locked || !node.reference.empty()) {
        throw SceneError("Cannot rename a read only node.");
    }
    const std::string before = node.Name();
    DoItem(host.undo(), RenameItem(host.scene(), node.Shared(), name));
    const auto* dag = dynamic_cast<const DagNode*>(&node);
    if (shapes && dag && dag->Type().IsTransform()) {
        for (DagNode* shape : dag->Shapes()) {
            const std::string following = FollowingName(shape->Name(), before, node.Name());
            if (!following.empty() && !shape->locked && shape->reference.empty()) {
                DoItem(host.undo(), RenameItem(host.scene(), shape->Shared(), following));
            }
        }
    }
    return node.Name();
}

void CheckReparent(Scene& scene, const DagNode& node, const DagNode* parent) {
    const DagNode& above = parent ? *parent : scene.world();
    if (node.locked) {
        throw SceneError("Cannot parent the locked node '" + Scene::ShownName(node) + "'.");
    }
    CheckParent(node.Type(), &above);
    if (above.IsBelow(node)) {
        throw SceneError("Cannot parent an object to itself or to one of its children.");
    }
    if (above.IsWorld() && node.Type().IsShape()) {
        throw SceneError("A shape cannot be without a transform.");
    }
}

void Reparent(Host& host, DagNode& node, DagNode* parent, bool keepWorld) {
    CheckReparent(host.scene(), node, parent);
    DagNode& above = parent ? *parent : host.scene().world();
    if (node.Parent() != &above) {
        DoItem(host.undo(), MoveItem(host.scene(), std::static_pointer_cast<DagNode>(node.Shared()),
                                     std::static_pointer_cast<DagNode>(above.Shared()), keepWorld));
    }
}

void Reorder(Host& host, DagNode& node, int index) {
    Scene& scene = host.scene();
    const auto shared = std::static_pointer_cast<DagNode>(node.Shared());
    Replace(host, "reorder", node.IndexInParent(), index,
            [&scene, shared](int place) { scene.Reorder(*shared, place); });
}

void SetNodeLocked(Host& host, Node& node, bool locked) {
    Replace(host, "lockNode", node.locked, locked,
            [shared = node.Shared()](bool on) { shared->locked = on; });
}

void SetPlug(Host& host, const Plug& plug, const AttributeValue& value, OutOfRange outOfRange) {
    if (outOfRange == OutOfRange::Refuse) {
        CheckRanges(plug, value);
    }
    DoItem(host.undo(), SetItem(host.scene(), plug, value));
}

void StorePlugFlag(const Plug& plug, PlugFlag flag, bool state) {
    PlugState wanted;
    wanted.locked = state;
    wanted.keyable = state;
    wanted.channelBox = state;
    TakeFlag(plug, flag, wanted);
}

void SetPlugFlag(Host& host, const Plug& plug, PlugFlag flag, bool state) {
    if (flag == PlugFlag::Locked && plug.node->locked) {
        throw SceneError("Cannot lock or unlock attributes of the locked node '" +
                         Scene::ShownName(*plug.node) + "'.");
    }
    const PlugState before = StateOf(plug);
    Do(
        host, "setAttr", [plug, flag, state] { StorePlugFlag(plug, flag, state); },
        [plug, flag, before] { TakeFlag(plug, flag, before); });
}

void AddAttribute(Host& host, Node& node, const std::shared_ptr<Attribute>& attribute) {
    if (node.locked) {
        throw SceneError("Cannot add attributes to the locked node '" + Scene::ShownName(node) + "'.");
    }
    const std::shared_ptr<Node> shared = node.Shared();
    const auto held = std::make_shared<Node::PlugStates>();
    Do(
        host, "addAttr",
        [shared, attribute, held] {
            if (!shared->AddDynamicAttribute(attribute)) {
                throw SceneError("Found an attribute of the name '" + attribute->LongName() + "' already.");
            }
            shared->PutStates(std::move(*held));
        },
        [shared, attribute, held] {
            shared->RemoveDynamicAttribute(*attribute);
            *held = shared->TakeStates(*attribute);
        });
}

void DeleteAttribute(Host& host, Node& node, const Attribute& attribute) {
    const auto& dynamic = node.DynamicAttributes();
    const auto found =
        std::find_if(dynamic.begin(), dynamic.end(), [&](const std::shared_ptr<Attribute>& candidate) {
            return candidate.get() == &attribute;
        });
    if (found == dynamic.end() || node.locked) {
        throw SceneError("Cannot delete the attribute '" + attribute.LongName() + "' from '" +
                         Scene::ShownName(node) + "'.");
    }
    Scene& scene = host.scene();
    const std::shared_ptr<Node> shared = node.Shared();
    const std::shared_ptr<Attribute>& removed = *found;
    const auto position = static_cast<std::size_t>(found - dynamic.begin());
    auto cut = std::make_shared<std::vector<Connection>>();
    auto held = std::make_shared<Node::PlugStates>();
    const auto redo = [&scene, shared, removed, cut, held] {
        *cut = scene.connections().CutAttribute(*shared, *removed);
        shared->RemoveDynamicAttribute(*removed);
        *held = shared->TakeStates(*removed);
    };
    const auto undo = [&scene, shared, removed, position, cut, held] {
        shared->AddDynamicAttribute(removed, position);
        shared->PutStates(std::move(*held));
        for (const Connection& connection : *cut) {
            scene.connections().Add(connection.source, connection.destination);
        }
    };
    Do(host, "deleteAttr", redo, undo);
}

void Connect(Host& host, const Plug& source, const Plug& destination, bool force) {
    CheckConnectable(source, destination);
    const Plug driver = host.scene().connections().SourceOf(destination);
    if (force && driver && driver != source) {
        DoItem(host.undo(), ConnectItem(host.scene(), driver, destination, false));
    }
    DoItem(host.undo(), ConnectItem(host.scene(), source, destination, true));
}

void Disconnect(Host& host, const Plug& source, const Plug& destination) {
    KeepMesh(host, destination);
    DoItem(host.undo(), ConnectItem(host.scene(), source, destination, false));
}

void Select(Host& host, const Selection::List& nodes) {
    Selection& selection = host.scene().selection();
    if (nodes != selection.Get()) {
        Replace(host, "select", selection.Get(), nodes,
                [&selection](const Selection::List& each) { selection.Set(each); });
    }
}

void SetCurrentTime(Host& host, double frame) {
    Timeline& time = host.time();
    Replace(host, "currentTime", time.CurrentTime(), frame,
            [&time](double each) { time.SetCurrentTime(each); });
}

void MoveTimeWithoutScene(Host& host, double frame) {
    Timeline& time = host.time();
    Replace(host, "currentTime", time.CurrentTime(), frame,
            [&time](double each) { time.MoveWithoutScene(each); });
}

namespace {

/// Edits both ranges together, since setting one may change the other.
void EditRanges(Host& host, const std::function<bool(Timeline&)>& change) {
    Timeline& time = host.time();
    const double min = time.MinTime();
    const double max = time.MaxTime();
    const double start = time.AnimationStart();
    const double end = time.AnimationEnd();
    const auto redo = [&time, change] {
        if (!change(time)) {
            throw SceneError("The end of a time range must not lie before its start.");
        }
    };
    const auto undo = [&time, min, max, start, end] {
        time.SetAnimationRange(start, end);
        time.SetPlaybackRange(min, max);
    };
    Do(host, "playbackOptions", redo, undo);
}

} // namespace

void SetPlaybackRange(Host& host, double min, double max) {
    EditRanges(host, [min, max](Timeline& time) { return time.SetPlaybackRange(min, max); });
}

void SetAnimationRange(Host& host, double start, double end) {
    EditRanges(host, [start, end](Timeline& time) { return time.SetAnimationRange(start, end); });
}

void SetPlaybackSpeed(Host& host, double speed) {
    if (!std::isfinite(speed) || speed < 0.0) {
        throw SceneError("The playback speed must not be less than 0.");
    }
    Timeline& time = host.time();
    Replace(host, "playbackOptions", time.PlaybackSpeed(), speed,
            [&time](double each) { time.SetPlaybackSpeed(each); });
}

void SetPlaybackBy(Host& host, double by) {
    if (!std::isfinite(by) || by <= 0.0) {
        throw SceneError("Playback must go by more than 0 frames.");
    }
    Timeline& time = host.time();
    Replace(host, "playbackOptions", time.PlaybackBy(), by,
            [&time](double each) { time.SetPlaybackBy(each); });
}

void SetTimeUnit(Host& host, MTime::Unit unit) {
    Timeline& time = host.time();
    const MTime::Unit before = time.Unit();
    const auto redo = [&time, unit] {
        if (!time.SetUnit(unit)) {
            throw SceneError("Unknown time unit.");
        }
    };
    Do(host, "currentUnit", redo, [&time, before] { time.SetUnit(before); });
}

void AddNamespace(Host& host, const std::string& name) {
    Scene& scene = host.scene();
    if (name.empty() || scene.Namespaces().count(name) != 0) {
        throw SceneError("The namespace '" + name + "' exists already.");
    }
    const std::set<std::string> before = scene.Namespaces();
    Do(
        host, "namespace", [&scene, name] { scene.AddNamespace(name); },
        [&scene, before] { scene.SetNamespaces(before); });
}

void RemoveNamespace(Host& host, const std::string& name) {
    Scene& scene = host.scene();
    const auto redo = [&scene, name] {
        if (!scene.RemoveNamespace(name)) {
            throw SceneError("The namespace '" + name + "' does not exist or is not empty.");
        }
    };
    Do(host, "namespace", redo, [&scene, name] { scene.AddNamespace(name); });
}

} // namespace lightbox::edit
