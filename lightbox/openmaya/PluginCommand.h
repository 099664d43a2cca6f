#pragma once

#include <maya/MApiNamespace.h>
#include <maya/MSyntax.h>

#include <optional>
#include <string>

namespace lightbox {

/// A command registered by a plug-in, shared with its instances.
struct PluginCommand {
    std::string name;
    MCreatorFunction creator = nullptr;
    /// Without a syntax, doIt() gets the plain argument list.
    std::optional<MSyntax> syntax;
};

/// Adds a plug-in's command to MEL. Each call makes an instance and runs its doIt(). If that succeeds and the
/// command is undoable, the instance goes onto the undo queue, which calls its undoIt() and redoIt() and
/// destroys it when it drops off. A failing doIt() is a MEL error, with the text of its status, or with the
/// command's own error message if the status has only its code. Returns false when the name is taken.
bool RegisterPluginCommand(const PluginCommand& command, const std::string& plugin);

/// Whether a plug-in's command runs (its doIt, redoIt or undoIt).
bool IsInPluginCommand();

/// Whether the innermost running command undoes its own work. Calls isUndoable() during the run, so the
/// command must know the answer by then, for instance from its arguments.
bool IsInUndoablePluginCommand();

} // namespace lightbox
