#pragma once

#include <memory>
#include <string>

namespace lightbox {

class Host;
class Node;
struct Plugin;

/// Turns what a plug-in brought into the scene into unknown content that keeps everything as text, so that
/// the plug-in can go and a saved scene still holds it.
class UnknownNodes {
public:
    explicit UnknownNodes(Host& host)
        : host_(host) {}

    /// How many nodes of the scene need the plug-in: those of its types, and those with attributes of its
    /// data types.
    int CountUsing(const Plugin& plugin) const;
    /// Not on the undo queue; the queue has to be flushed before.
    void Convert(const Plugin& plugin);
    /// Puts an unknown node of the same type's name in a node's place, with everything that it holds; what
    /// the new node does not know is kept. `base` is "unknown", "unknownDag" or "unknownTransform".
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
