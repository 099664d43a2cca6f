#pragma once

#include "mel/Value.h"

#include <maya/MPxCommand.h>
#include <maya/MSyntax.h>

#include <string>

/// What stands behind one instance of a plug-in's command.
struct MPxCommand::State {
    /// Of the command that it is an instance of; empty while the creator runs.
    std::string name;
    MSyntax syntax;
    bool hasSyntax = false;
    std::string commandString;
};

namespace lightbox {

/// The result of the plug-in's command that runs, or null when none does.
mel::Value* RunningCommandResult();

} // namespace lightbox
