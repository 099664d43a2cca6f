#pragma once

#include "mel/CommandRegistry.h"
#include "scene/Plug.h"

#include <maya/MSyntax.h>

#include <memory>
#include <string>
#include <vector>

namespace lightbox {
class DagNode;
} // namespace lightbox

namespace lightbox::mel {

using NodeList = std::vector<std::shared_ptr<Node>>;

/// Registers a command that edits the scene. When the command fails, its edits are undone. Commands that
/// manage files, plug-ins or the undo queue are registered without this; their changes stay after a failure.
void AddSceneCommand(CommandRegistry& registry, const std::string& name, const MSyntax& syntax,
                     CommandRegistry::Function function);
/// Registers a scene command that parses its arguments itself.
void AddRawSceneCommand(CommandRegistry& registry, const std::string& name,
                        CommandRegistry::Function function);

/// Returns the one node with the name or path. Fails when there is none or more than one.
std::shared_ptr<Node> NodeNamed(const CommandCall& call, const std::string& name);
/// The same for a node that must be in the DAG.
std::shared_ptr<DagNode> DagNodeNamed(const CommandCall& call, const std::string& name);
/// Returns the nodes that match the names, which may contain wildcards. Fails for a name without a match.
NodeList NodesNamed(const CommandCall& call, const std::vector<std::string>& names);
/// Returns the call's objects, else the selection. Fails when both are empty.
NodeList ObjectsOrSelection(const CommandCall& call);

/// Returns the plug of "node.attribute". ".attribute" stands for the first selected node.
Plug PlugNamed(const CommandCall& call, const std::string& text);
/// Returns the node of such a text.
std::shared_ptr<Node> NodeOfPlug(const CommandCall& call, const std::string& text);

/// Returns the names of an enum's fields in the form of addAttr: "low:high".
std::string EnumFieldsText(const Attribute& attribute);

/// Return the names of nodes for a command's result: the shortest unique names, or the full DAG paths.
std::string ShownName(const Node& node, bool wholePath = false);
Value ShownNames(const NodeList& nodes, bool wholePath = false);

} // namespace lightbox::mel
