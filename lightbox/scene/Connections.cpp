#include "scene/Connections.h"

#include <algorithm>

namespace lightbox {

namespace {

bool IsOf(const Plug& plug, const Node& node, const Attribute& attribute) {
    for (const Attribute* part = plug.node.get() == &node ? plug.attribute.get() : nullptr; part;
         part = part->Parent()) {
        if (part == &attribute) {
            return true;
        }
    }
    return false;
}

} // namespace

bool Connections::Add(const Plug& source, const Plug& destination) {
    if (!byDestination_.try_emplace(destination, Entry{{source, destination}, nextOrder_}).second) {
        return false;
    }
    ++nextOrder_;
    ++revision_;
    bySource_[source].push_back(destination);
    return true;
}

bool Connections::Remove(const Plug& source, const Plug& destination) {
    const auto found = byDestination_.find(destination);
    if (found == byDestination_.end() || found->second.connection.source != source) {
        return false;
    }
    byDestination_.erase(found);
    ++revision_;
    const auto list = bySource_.find(source);
    list->second.erase(std::find(list->second.begin(), list->second.end(), destination));
    if (list->second.empty()) {
        bySource_.erase(list);
    }
    return true;
}

void Connections::Clear() {
    byDestination_.clear();
    bySource_.clear();
    ++revision_;
}

std::vector<Connection> Connections::CutAttribute(const Node& node, const Attribute& attribute) {
    std::vector<Connection> cut;
    for (const Connection& connection : Of(node)) {
        if (IsOf(connection.source, node, attribute) || IsOf(connection.destination, node, attribute)) {
            Remove(connection.source, connection.destination);
            cut.push_back(connection);
        }
    }
    return cut;
}

Plug Connections::SourceOf(const Plug& destination) const {
    const auto found = byDestination_.find(destination);
    return found == byDestination_.end() ? Plug() : found->second.connection.source;
}

std::vector<Plug> Connections::DestinationsOf(const Plug& source) const {
    const auto found = bySource_.find(source);
    return found == bySource_.end() ? std::vector<Plug>() : found->second;
}

namespace {

template <typename Entries>
std::vector<Connection> InOrder(Entries& entries) {
    std::sort(entries.begin(), entries.end(),
              [](const auto* a, const auto* b) { return a->order < b->order; });
    entries.erase(std::unique(entries.begin(), entries.end()), entries.end());
    std::vector<Connection> connections;
    connections.reserve(entries.size());
    for (const auto* entry : entries) {
        connections.push_back(entry->connection);
    }
    return connections;
}

/// The lower bound of a node's plugs in a container ordered by plug.
Plug FirstPlugOf(const Node& node) {
    Plug plug;
    plug.node = std::const_pointer_cast<Node>(node.Shared());
    plug.element = -2;
    return plug;
}

} // namespace

std::vector<Connection> Connections::Of(const Node& node) const {
    std::vector<const Entry*> entries;
    const Plug first = FirstPlugOf(node);
    for (auto entry = byDestination_.lower_bound(first);
         entry != byDestination_.end() && entry->first.node.get() == &node; ++entry) {
        entries.push_back(&entry->second);
    }
    for (auto list = bySource_.lower_bound(first); list != bySource_.end() && list->first.node.get() == &node;
         ++list) {
        for (const Plug& destination : list->second) {
            entries.push_back(&byDestination_.at(destination));
        }
    }
    return InOrder(entries);
}

std::vector<Connection> Connections::All() const {
    std::vector<const Entry*> entries;
    for (const auto& entry : byDestination_) {
        entries.push_back(&entry.second);
    }
    return InOrder(entries);
}

} // namespace lightbox
