#pragma once

#include "scene/NonCopyable.h"

namespace lightbox {

class NodeType;

/// Names the node type whose initialize function runs, for MPxNode::addAttribute(). One at a time.
class NodeTypeSetup : NonCopyable {
public:
    explicit NodeTypeSetup(NodeType& type);
    ~NodeTypeSetup();

    /// Null when none is being registered.
    static NodeType* Current();

private:
    NodeType* before_;
};

} // namespace lightbox
