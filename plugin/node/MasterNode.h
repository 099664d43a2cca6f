#pragma once

#include <QList>

namespace vellix {

class BaseNode;

/// Sees to it that exactly one drawing node of the scene is the master, however nodes come and go. A node of
/// a referenced file is never the master.
class MasterNode {
public:
    /// Call before a drawing node leaves the scene. If it is the master, the next drawing node takes over,
    /// with a message.
    static void OnRemoved(const BaseNode& node);
    /// Call after a drawing node entered the scene. A master that undo brings back takes over again.
    static void OnAdded(const BaseNode& node);
    /// Call after a file was read. `added` are the nodes that an import added: the scene's own master stays.
    static void OnSceneRead(const QList<BaseNode*>& added);
};

} // namespace vellix
