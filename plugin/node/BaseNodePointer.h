#pragma once

#include <maya/MObjectHandle.h>

namespace vellix {

class BaseNode;

/// Points at a drawing node for longer than a call, and is null once the node has left the scene: it may be
/// deleted, undone or gone with its scene at any time.
class BaseNodePointer {
public:
    BaseNodePointer() = default;
    BaseNodePointer(BaseNode* node);

    BaseNode* Get() const;
    /// Also a node that has left the scene, as long as an undo can bring it back.
    BaseNode* GetAlive() const;
    BaseNode* operator->() const { return Get(); }
    explicit operator bool() const { return Get() != nullptr; }

private:
    BaseNode* node_ = nullptr;
    MObjectHandle object_;
};

} // namespace vellix
