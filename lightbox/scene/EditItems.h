#pragma once

#include "scene/Plug.h"
#include "scene/UndoItem.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace lightbox {

class DagNode;
class Host;

/// The undo items that edits and modifiers consist of. Redo() does the step, also the first time, and throws
/// SceneError when it is refused; Undo() takes it back.
namespace edit {

std::unique_ptr<UndoItem> MakeItem(Host& host, const std::string& name, std::function<void()> redo,
                                   std::function<void()> undo);
/// Puts a new node into the scene. Redo after undo restores it with all its descendants.
std::unique_ptr<UndoItem> AddItem(Host& host, const std::shared_ptr<Node>& node, const std::string& name,
                                  const std::shared_ptr<DagNode>& parent);
std::unique_ptr<UndoItem> DeleteItem(Host& host, const std::vector<std::shared_ptr<Node>>& nodes);
std::unique_ptr<UndoItem> RenameItem(Host& host, const std::shared_ptr<Node>& node, const std::string& name);
std::unique_ptr<UndoItem> MoveItem(Host& host, const std::shared_ptr<DagNode>& node,
                                   const std::shared_ptr<DagNode>& parent, bool keepWorld);
std::unique_ptr<UndoItem> SetItem(Host& host, const Plug& plug, const AttributeValue& value);
/// Connects two plugs, or disconnects them.
std::unique_ptr<UndoItem> ConnectItem(Host& host, const Plug& source, const Plug& destination, bool connect);

/// Throws SceneError with the reason if two plugs cannot be connected.
void CheckConnectable(const Plug& source, const Plug& destination);
/// Throws SceneError with the reason if a node, or one of its descendants, cannot be deleted.
void CheckDeletable(Node& node);
/// Does an item and puts it on the undo queue.
void DoItem(Host& host, std::unique_ptr<UndoItem> item);

} // namespace edit

} // namespace lightbox
