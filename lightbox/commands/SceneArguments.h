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

/// Registers a command that edits the scene: when it fails, the edits that it has made are taken back. What a
/// command that is registered without has done stands: those that manage files, plug-ins or the undo queue.
void AddSceneCommand(CommandRegistry& registry, const std::string& name, const MSyntax& syntax,
                     CommandRegistry::Function function);
/// A scene command that reads its arguments itself.
void AddRawSceneCommand(CommandRegistry& registry, const std::string& name,
                        CommandRegistry::Function function);

/// The one node of a name or path. Fails when there is none or more than one.
std::shared_ptr<Node> NodeNamed(const CommandCall& call, const std::string& name);
std::shared_ptr<DagNode> DagNodeNamed(const CommandCall& call, const std::string& name);
/// The nodes of names that may hold wildcards. A name that matches nothing fails.
NodeList NodesNamed(const CommandCall& call, const std::vector<std::string>& names);
/// The call's objects, else the selection. Fails when there is neither.
NodeList ObjectsOrSelection(const CommandCall& call);

/// The plug of "node.attribute", or of ".attribute" of the node that is selected first.
Plug PlugNamed(const CommandCall& call, const std::string& text);
/// The node part of such a text.
std::shared_ptr<Node> NodeOfPlug(const CommandCall& call, const std::string& text);

/// The names of an enum's fields as addAttr takes them: "low:high".
std::string EnumFieldsText(const Attribute& attribute);

/// What commands answer for nodes: names or shortest paths, or whole paths.
std::string ShownName(const Node& node, bool wholePath = false);
Value ShownNames(const NodeList& nodes, bool wholePath = false);

} // namespace lightbox::mel
