#pragma once

#include <maya/MApiNamespace.h>
#include <maya/MSyntax.h>

#include <optional>
#include <string>

namespace lightbox {

/// A command that a plug-in has registered, as its instances know it.
struct PluginCommand {
    std::string name;
    MCreatorFunction creator = nullptr;
    /// Without one doIt() reads the plain argument list.
    std::optional<MSyntax> syntax;
};

/// Adds a plug-in's command to MEL. Each call of it makes an instance and calls its doIt(). When that
/// succeeds and the command is undoable, the instance goes onto the undo queue, which calls its undoIt() and
/// redoIt() and destroys it when it drops. A doIt() that fails is a MEL error: with the text of its status,
/// or, when that is no more than the name of the code, with the error that the command has shown itself.
/// False when the name is taken.
bool RegisterPluginCommand(const PluginCommand& command, const std::string& plugin);

/// True while a plug-in's command runs (its doIt, redoIt or undoIt).
bool IsInPluginCommand();

/// True while the innermost of them is one that undoes itself what it does. Asked while it runs, so the
/// command has to know by then, as one does that looks at its arguments first.
bool IsInUndoablePluginCommand();

} // namespace lightbox
