#pragma once

#include "mel/Value.h"
#include "openmaya/PluginCommand.h"

#include <maya/MPxCommand.h>

#include <memory>
#include <string>

/// What stands behind one instance of a plug-in's command.
struct MPxCommand::State {
    /// The command that it is an instance of; null while the creator runs.
    std::shared_ptr<const lightbox::PluginCommand> command;
    std::string commandString;
};

namespace lightbox {

/// The result of the plug-in's command that runs, or null when none does.
mel::Value* RunningCommandResult();

} // namespace lightbox
