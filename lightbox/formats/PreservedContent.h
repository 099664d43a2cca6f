#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace lightbox {

class Node;

/// What was read from scene files but means nothing here: node types, attributes, data types and statements
/// of other programs and of plug-ins that are not loaded. It is kept as it was and written back.
class PreservedContent {
public:
    /// A value of a plug-in's data type in the binary form, which only the plug-in can turn into anything
    /// else.
    struct BinaryValue {
        std::string path;
        std::string dataType;
        std::string bytes;
    };
    /// What is kept with one node, written inside its block.
    struct NodeContent {
        std::vector<std::string> statements; ///< whole statements without their indent and semicolon
        std::vector<BinaryValue> values;
    };
    /// A connection with an end that is an unknown attribute. The nodes are known, so that it follows their
    /// names.
    struct Connection {
        std::weak_ptr<Node> source;
        std::string sourceAttribute;
        std::weak_ptr<Node> destination;
        std::string destinationAttribute;
        std::string flags; ///< " -na" and the like
    };
    /// A plug-in that a file requires.
    struct Requirement {
        std::string plugin;
        std::string statement;
    };
    /// Settings of a default node that this host does not have: "select -ne :name;" and what follows it.
    struct DefaultBlock {
        std::string node;
        std::vector<std::string> statements;
    };

    NodeContent& Of(const Node& node);
    const NodeContent* Find(const Node& node) const;
    /// Hands what is kept with one node to the node that takes its place.
    void Move(const Node& from, const Node& to);
    DefaultBlock& BlockOf(const std::string& defaultNode);
    void Clear();

    std::vector<Requirement> requirements;
    std::vector<DefaultBlock> defaultBlocks;
    std::vector<Connection> connections;
    std::vector<std::string> statements; ///< at the top level of the file

private:
    std::map<std::uint64_t, NodeContent> nodes_; ///< by the node's serial
};

} // namespace lightbox
