#pragma once

#include "mel/Value.h"
#include "openmaya/PluginCommand.h"

#include <maya/MPxCommand.h>

#include <memory>
#include <string>

/// The state of an instance of a plug-in's command.
struct MPxCommand::State {
    /// The registered command; null while the creator runs.
    std::shared_ptr<const lightbox::PluginCommand> command;
    std::string commandString;
};

namespace lightbox {

/// The result of the running plug-in command; null when none runs.
mel::Value* RunningCommandResult();

} // namespace lightbox
