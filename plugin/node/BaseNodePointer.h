#pragma once

#include <maya/MObjectHandle.h>

namespace vellix {

class BaseNode;

/// A pointer to a drawing node that may outlive the node. It is null once the node has left the scene, be it
/// by deletion, undo or a new scene.
class BaseNodePointer {
public:
    BaseNodePointer() = default;
    BaseNodePointer(BaseNode* node);

    /// Borrowed; null if the node is not in the scene.
    BaseNode* Get() const;
    /// Also returns a node that has left the scene, as long as undo can bring it back.
    BaseNode* GetAlive() const;
    BaseNode* operator->() const { return Get(); }
    explicit operator bool() const { return Get() != nullptr; }

private:
    BaseNode* node_ = nullptr;
    MObjectHandle object_;
};

} // namespace vellix
