#pragma once

#include "scene/Scene.h"
#include "scene/UndoQueue.h"

#include <maya/MTime.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lightbox {

class Host;

/// The edits of a scene that can be undone: each does its work and records it on the undo queue. What cannot
/// be done throws SceneError and changes nothing.
namespace edit {

/// An edit done by two functions. The first call of `redo` is the edit itself.
void Do(Host& host, const std::string& name, std::function<void()> redo, std::function<void()> undo);

/// A shape without a parent gets a transform, which is then the node answered. An empty name stands for the
/// type's default name. Throws for an unknown type.
std::shared_ptr<Node> CreateNode(Host& host, const std::string& type, const std::string& name = std::string(),
                                 DagNode* parent = nullptr);
/// With everything below them. Default, locked and referenced nodes are refused.
void DeleteNodes(Host& host, const std::vector<std::shared_ptr<Node>>& nodes);
/// Answers the name the node got. With `shapes`, shapes named after their transform follow it.
std::string Rename(Host& host, Node& node, const std::string& name, bool shapes = true);
/// Throws what Reparent() would refuse; for commands that move several nodes or none.
void CheckReparent(Host& host, const DagNode& node, const DagNode* parent);
/// Null parent: the world. With `keepWorld` the node stays where it is in space. A name that is taken below
/// the new parent gets a number.
void Reparent(Host& host, DagNode& node, DagNode* parent, bool keepWorld = true);
void Reorder(Host& host, DagNode& node, int index);
void SetNodeLocked(Host& host, Node& node, bool locked);

/// What happens to a number beyond the attribute's range.
enum class OutOfRange { Refuse, Clamp };
void SetPlug(Host& host, const Plug& plug, const AttributeValue& value,
             OutOfRange outOfRange = OutOfRange::Refuse);
enum class PlugFlag { Locked, Keyable, ChannelBox };
/// The plugs of a locked node can be neither locked nor unlocked.
void SetPlugFlag(Host& host, const Plug& plug, PlugFlag flag, bool state);
/// The same as part of reading a file: not recorded, and whatever is locked.
void StorePlugFlag(const Plug& plug, PlugFlag flag, bool state);
void AddAttribute(Host& host, Node& node, const std::shared_ptr<Attribute>& attribute);
/// With its connections.
void DeleteAttribute(Host& host, Node& node, const Attribute& attribute);

/// With `force` a connection that the destination has is broken first.
void Connect(Host& host, const Plug& source, const Plug& destination, bool force = false);
void Disconnect(Host& host, const Plug& source, const Plug& destination);

void Select(Host& host, const Selection::List& nodes);
void SetCurrentTime(Host& host, double frame);
/// The time slider moves, and the scene stays as it is evaluated.
void MoveTimeWithoutScene(Host& host, double frame);
void SetPlaybackRange(Host& host, double min, double max);
void SetAnimationRange(Host& host, double start, double end);
/// 1 is real time, 0 plays every frame; less is refused.
void SetPlaybackSpeed(Host& host, double speed);
/// From one frame played to the next; more than 0.
void SetPlaybackBy(Host& host, double by);
void SetTimeUnit(Host& host, MTime::Unit unit);
void AddNamespace(Host& host, const std::string& name);
void RemoveNamespace(Host& host, const std::string& name);

} // namespace edit

} // namespace lightbox
