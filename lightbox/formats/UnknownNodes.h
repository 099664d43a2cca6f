#pragma once

#include <memory>
#include <string>

namespace lightbox {

class Host;
class Node;
struct Plugin;

/// Turns a plug-in's nodes and data in the scene into unknown content that keeps everything as text. The
/// plug-in can then be unloaded, and a saved scene still holds its content.
class UnknownNodes {
public:
    explicit UnknownNodes(Host& host)
        : host_(host) {}

    /// Counts the nodes that need the plug-in: those of its types and those with attributes of its data
    /// types.
    int CountUsing(const Plugin& plugin) const;
    /// Converts all content of the plug-in. Cannot be undone; flush the undo queue before.
    void Convert(const Plugin& plugin);
    /// Replaces a node by an unknown node with the same type name and content, and returns the new node.
    /// Settings and connections that the new node cannot hold are preserved. `base` is "unknown",
    /// "unknownDag" or "unknownTransform".
    std::shared_ptr<Node> Replace(const std::shared_ptr<Node>& node, const char* base);

private:
    bool HasTypeOf(const Node& node, const Plugin& plugin) const;
    bool HasDataOf(const Node& node, const Plugin& plugin) const;
    void MoveSettings(const std::shared_ptr<Node>& from, const std::shared_ptr<Node>& to);
    void KeepAttributes(const std::shared_ptr<Node>& node, const Plugin& plugin);
    void KeepRequirement(const Plugin& plugin);

    Host& host_;
};

} // namespace lightbox
