#pragma once

#include "scene/Plug.h"

#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace lightbox {

/// A connection; values flow from the source to the destination.
struct Connection {
    Plug source;
    Plug destination;
    bool operator==(const Connection& other) const {
        return source == other.source && destination == other.destination;
    }
};

/// The connections of a scene, in the order they were made. A destination has at most one source.
class Connections {
public:
    /// Returns false when the destination has a source already.
    bool Add(const Plug& source, const Plug& destination);
    bool Remove(const Plug& source, const Plug& destination);
    void Clear();
    /// Removes and returns the connections of a node's attribute and of its children.
    std::vector<Connection> CutAttribute(const Node& node, const Attribute& attribute);

    /// Returns a null plug when nothing drives the destination.
    Plug SourceOf(const Plug& destination) const;
    std::vector<Plug> DestinationsOf(const Plug& source) const;
    /// All connections from or to a node, in the order they were made.
    std::vector<Connection> Of(const Node& node) const;
    std::vector<Connection> All() const;
    /// Increases with every change.
    std::uint64_t Revision() const { return revision_; }

private:
    struct Entry {
        Connection connection;
        std::uint64_t order;
    };
    std::map<Plug, Entry> byDestination_;
    std::map<Plug, std::vector<Plug>> bySource_;
    std::uint64_t nextOrder_ = 0;
    std::uint64_t revision_ = 0;
};

} // namespace lightbox
