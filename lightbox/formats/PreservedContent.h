#pragma once

#include "formats/SceneUnits.h"

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace lightbox {

class Node;

/// Holds the content of scene files that has no meaning here: node types, attributes, data types and
/// statements of other programs and of plug-ins that are not loaded. Saving writes it back unchanged.
class PreservedContent {
public:
    /// A value of a plug-in's data type in binary form. Only the plug-in can read it.
    struct BinaryValue {
        std::string path;
        std::string dataType;
        std::string bytes;
    };
    /// The content kept with one node, written inside its block.
    struct NodeContent {
        std::vector<std::string> statements; ///< without indent and semicolon
        std::vector<BinaryValue> values;
        SceneUnits units;      ///< of the numbers in the statements
        std::string lockFlags; ///< of its `lockNode` statement, behind the lock itself: " -lu 1"
    };
    /// A connection with an unknown attribute at one of its ends. It refers to the nodes themselves, so
    /// renamed nodes are written with their new names.
    struct Connection {
        std::weak_ptr<Node> source;
        std::string sourceAttribute;
        std::weak_ptr<Node> destination;
        std::string destinationAttribute;
        std::string flags; ///< further flags of connectAttr, such as " -na"
    };
    /// A plug-in that a file requires.
    struct Requirement {
        std::string plugin;
        std::string statement;
        /// Not the file's first one of the plug-in. The first is written anew when the plug-in is loaded.
        bool isFurther = false;
    };
    /// The settings of a node that is missing, for example a default node that this host lacks: what stands
    /// after "select -ne :name;".
    struct DefaultBlock {
        std::string node;
        NodeContent content;
    };

    NodeContent& Of(const Node& node);
    const NodeContent* Find(const Node& node) const;
    /// Moves the content kept with one node to the node that replaces it.
    void Move(const Node& from, const Node& to);
    DefaultBlock& BlockOf(const std::string& defaultNode);
    void Clear();

    std::vector<std::string> headComments;   ///< lines at the beginning of the file, with their slashes
    std::vector<std::string> headStatements; ///< before `file -r`
    std::vector<Requirement> requirements;
    std::vector<DefaultBlock> defaultBlocks;
    std::vector<Connection> connections;
    std::vector<std::string> statements; ///< at the top level of the file

private:
    std::map<std::uint64_t, NodeContent> nodes_; ///< by the node's serial
};

} // namespace lightbox
