#pragma once

#include "mel/CommandRegistry.h"
#include "mel/Value.h"

#include <maya/MArgList.h>
#include <maya/MStatus.h>

#include <memory>

namespace lightbox {

class Host;

/// What running a plug-in's command came to.
struct PluginCommandOutcome {
    MStatus status;
    mel::Value result;
};

/// Makes an instance of a plug-in's command and calls its doIt(). When that succeeds and the command is
/// undoable, the instance goes onto the undo queue, which calls its undoIt() and redoIt() and destroys it
/// when it drops. While any of them runs, IsInPluginCommand() is true.
PluginCommandOutcome RunPluginCommand(Host& host,
                                      const std::shared_ptr<const mel::CommandRegistry::Command>& command,
                                      const MArgList& arguments);

/// True while a plug-in's command runs (its doIt, redoIt or undoIt).
bool IsInPluginCommand();

/// True while the innermost of them is one that undoes itself what it does. Asked while it runs, so the
/// command has to know by then, as one does that looks at its arguments first.
bool IsInUndoablePluginCommand();

} // namespace lightbox
