#pragma once

#include "scene/Plug.h"
#include "scene/UndoItem.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace lightbox {

class DagNode;
class Scene;
class UndoQueue;

/// The undo items that edits and modifiers consist of. Redo() does the step, also the first time, and throws
/// SceneError when it is refused; Undo() takes it back.
namespace edit {

std::unique_ptr<UndoItem> MakeItem(Scene& scene, const std::string& name, std::function<void()> redo,
                                   std::function<void()> undo);
/// Puts a new node into the scene. Redo after undo restores it with all its descendants.
std::unique_ptr<UndoItem> AddItem(Scene& scene, const std::shared_ptr<Node>& node, const std::string& name,
                                  const std::shared_ptr<DagNode>& parent);
std::unique_ptr<UndoItem> DeleteItem(Scene& scene, const std::vector<std::shared_ptr<Node>>& nodes);
std::unique_ptr<UndoItem> RenameItem(Scene& scene, const std::shared_ptr<Node>& node,
                                     const std::string& name);
std::unique_ptr<UndoItem> MoveItem(Scene& scene, const std::shared_ptr<DagNode>& node,
                                   const std::shared_ptr<DagNode>& parent, bool keepWorld);
std::unique_ptr<UndoItem> SetItem(Scene& scene, const Plug& plug, const AttributeValue& value);
/// Connects two plugs, or disconnects them.
std::unique_ptr<UndoItem> ConnectItem(Scene& scene, const Plug& source, const Plug& destination,
                                      bool connect);

/// Throws SceneError with the reason if two plugs cannot be connected.
void CheckConnectable(const Plug& source, const Plug& destination);
/// Throws SceneError with the reason if a node, or one of its descendants, cannot be deleted.
void CheckDeletable(Node& node);
/// Does an item and puts it on the undo queue.
void DoItem(UndoQueue& undo, std::unique_ptr<UndoItem> item);

} // namespace edit

} // namespace lightbox
