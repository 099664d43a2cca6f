#pragma once

namespace lightbox {

class NodeType;

/// Names the node type whose initialize function runs, for MPxNode::addAttribute(). One at a time.
class NodeTypeSetup {
public:
    explicit NodeTypeSetup(NodeType& type);
    ~NodeTypeSetup();
    NodeTypeSetup(const NodeTypeSetup&) = delete;
    NodeTypeSetup& operator=(const NodeTypeSetup&) = delete;

    /// Null when none is being registered.
    static NodeType* Current();

private:
    NodeType* before_;
};

} // namespace lightbox
