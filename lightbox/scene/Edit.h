#pragma once

#include "scene/Plug.h"
#include "scene/Selection.h"

#include <maya/MTime.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lightbox {

class DagNode;
class Host;
class Scene;

/// The undoable edits of a scene. Each does its work and records it on the undo queue. An edit that is
/// refused throws SceneError and changes nothing.
namespace edit {

/// Does an edit given as two functions; the first call of `redo` is the edit itself.
void Do(Host& host, const std::string& name, std::function<void()> redo, std::function<void()> undo);
/// Does an edit that `set`s a value in place of another.
template <class Value, class Set>
void Replace(Host& host, const std::string& name, const Value& before, const Value& after, const Set& set) {
    Do(
        host, name, [set, after] { set(after); }, [set, before] { set(before); });
}

/// Creates a node. For a shape without a parent, creates a transform too and returns the transform. An empty
/// name stands for the type's default name. Throws for an unknown type.
std::shared_ptr<Node> CreateNode(Host& host, const std::string& type, const std::string& name = std::string(),
                                 DagNode* parent = nullptr);
/// Deletes nodes and their descendants. Refuses default, locked and referenced nodes.
void DeleteNodes(Host& host, const std::vector<std::shared_ptr<Node>>& nodes);
/// Renames a node and returns its new name. With `shapes`, shapes named after their transform are renamed
/// too.
std::string Rename(Host& host, Node& node, const std::string& name, bool shapes = true);
/// Throws if Reparent() would refuse. For commands that move either all of several nodes or none.
void CheckReparent(Scene& scene, const DagNode& node, const DagNode* parent);
/// Moves a node below another parent; null stands for the world. With `keepWorld` the node keeps its world
/// matrix. A name that is taken below the new parent gets a number.
void Reparent(Host& host, DagNode& node, DagNode* parent, bool keepWorld = true);
void Reorder(Host& host, DagNode& node, int index);
void SetNodeLocked(Host& host, Node& node, bool locked);

/// What to do with a number outside the attribute's range.
enum class OutOfRange { Refuse, Clamp };
void SetPlug(Host& host, const Plug& plug, const AttributeValue& value,
             OutOfRange outOfRange = OutOfRange::Refuse);
enum class PlugFlag { Locked, Keyable, ChannelBox };
/// Sets a flag of a plug. Refuses to lock or unlock the plugs of a locked node.
void SetPlugFlag(Host& host, const Plug& plug, PlugFlag flag, bool state);
/// Sets a flag while a file is read: not recorded for undo, and not refused by a lock.
void StorePlugFlag(const Plug& plug, PlugFlag flag, bool state);
void AddAttribute(Host& host, Node& node, const std::shared_ptr<Attribute>& attribute);
/// Deletes a dynamic attribute and its connections.
void DeleteAttribute(Host& host, Node& node, const Attribute& attribute);

/// Connects two plugs. With `force`, breaks an existing connection of the destination first.
void Connect(Host& host, const Plug& source, const Plug& destination, bool force = false);
void Disconnect(Host& host, const Plug& source, const Plug& destination);

void Select(Host& host, const Selection::List& nodes);
void SetCurrentTime(Host& host, double frame);
/// Moves the time slider without evaluating the scene at the new time.
void MoveTimeWithoutScene(Host& host, double frame);
void SetPlaybackRange(Host& host, double min, double max);
void SetAnimationRange(Host& host, double start, double end);
/// 1 is real time, 0 plays every frame; refuses less than 0.
void SetPlaybackSpeed(Host& host, double speed);
/// Step between played frames, in frames; must be above 0.
void SetPlaybackBy(Host& host, double by);
void SetTimeUnit(Host& host, MTime::Unit unit);
void AddNamespace(Host& host, const std::string& name);
void RemoveNamespace(Host& host, const std::string& name);

} // namespace edit

} // namespace lightbox
