#pragma once

#include "scene/NonCopyable.h"

namespace lightbox {

class NodeType;

/// Sets, during its lifetime, the node type whose initialize function runs, for MPxNode::addAttribute(). One
/// at a time.
class NodeTypeSetup : NonCopyable {
public:
    explicit NodeTypeSetup(NodeType& type);
    ~NodeTypeSetup();

    /// The type being registered; null when there is none.
    static NodeType* Current();

private:
    NodeType* before_;
};

} // namespace lightbox
