#pragma once

#include "mel/CommandRegistry.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace lightbox {

class SceneBuilder;

/// Returns the commands of scene files in the form that they take while a file is read: they resolve the
/// file's node names, apply to the builder's current node, and store values even into locked plugs. Lay them
/// over the command registry. The builder has to outlive them.
std::map<std::string, mel::CommandRegistry::Overlay::Function> SceneStatements(SceneBuilder& builder);
std::vector<std::string_view> SceneStatementNames();
/// True for the name of one of these commands. Nothing else that a scene file holds is run.
bool IsSceneStatement(std::string_view name);

} // namespace lightbox
