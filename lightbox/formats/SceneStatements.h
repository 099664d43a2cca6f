#pragma once

#include "mel/CommandRegistry.h"

#include <map>
#include <string>

namespace lightbox {

class SceneBuilder;

/// What the commands that a scene file is made of mean while it is read: they go by the names of the file,
/// speak of the node that the file is at, and store what stands there whatever is locked. To be laid over the
/// command registry. The builder has to outlive them.
std::map<std::string, mel::CommandRegistry::Overlay::Function> SceneStatements(SceneBuilder& builder);

} // namespace lightbox
