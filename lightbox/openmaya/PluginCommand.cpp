#include "openmaya/PluginCommand.h"

#include "formats/SceneFiles.h"
#include "mel/ArgumentTokens.h"
#include "mel/CommandRegistry.h"
#include "mel/Error.h"
#include "mel/Interpreter.h"
#include "openmaya/ApiBridge.h"
#include "openmaya/CommandState.h"
#include "scene/Host.h"
#include "scene/Output.h"
#include "scene/Scene.h"
#include "scene/Selection.h"
#include "scene/UndoQueue.h"

#include <maya/MPxCommand.h>

#include <vector>

namespace lightbox {

namespace {

struct Running {
    const MPxCommand* command;
    mel::Value* result;
};

/// The running commands, the innermost last.
std::vector<Running> g_running;

class RunScope : NonCopyable {
public:
    RunScope(const MPxCommand& command, mel::Value& result) { g_running.push_back({&command, &result}); }
    ~RunScope() { g_running.pop_back(); }
};

/// A plug-in's command on the undo queue.
class PluginCommandItem : public UndoItem {
public:
    PluginCommandItem(Output& output, SceneFiles& files, std::unique_ptr<MPxCommand> command)
        : output_(output)
        , files_(files)
        , command_(std::move(command)) {}

    void Undo() override { Run(&MPxCommand::undoIt, "undone"); }
    void Redo() override { Run(&MPxCommand::redoIt, "redone"); }
    std::string Name() const override { return ApiBridge::StateOf(*command_).command->name; }

private:
    void Run(MStatus (MPxCommand::*operation)(), const char* what) {
        mel::Value result;
        RunScope scope(*command_, result);
        if (((*command_).*operation)().error()) {
            output_.Warning(Name() + " could not be " + what + ".");
            // The queue goes on to its next state, which then is not the one that was saved.
            files_.SetModified(true);
        }
    }

    Output& output_;
    SceneFiles& files_;
    std::unique_ptr<MPxCommand> command_;
};

/// The error of a doIt() that failed. A message that the command has shown says more than the code of its
/// status, and is not said again.
mel::Error ErrorOf(const std::string& command, const MStatus& status, const Output& output,
                   int errorsBefore) {
    const std::string reason = ApiBridge::Text(status.errorString());
    const bool isBare = reason == ApiBridge::Text(MStatus(status.statusCode()).errorString());
    const bool wasShown = output.ErrorCount() > errorsBefore;
    const bool isSilent = isBare && !wasShown && status.statusCode() == MS::kFailure;
    mel::Error error(command + ": " +
                     (isSilent             ? "The command was refused."
                      : isBare && wasShown ? output.LastError()
                                           : reason));
    if (wasShown && (isBare || reason == output.LastError())) {
        error.SetShown();
    }
    if (isSilent) {
        error.SetSilent();
    }
    return error;
}

mel::Value Run(Host& host, const std::shared_ptr<const PluginCommand>& command, mel::ArgumentTokens tokens) {
    std::unique_ptr<MPxCommand> created(static_cast<MPxCommand*>(command->creator()));
    if (!created) {
        throw mel::Error(command->name + ": The plug-in could not create the command " + command->name);
    }
    MPxCommand& instance = *created;
    ApiBridge::StateOf(instance).command = command;
    // Made first: what is done then has its undo step, however short memory is.
    auto item = std::make_unique<PluginCommandItem>(host.output(), host.files(), std::move(created));
    const int errorsBefore = host.output().ErrorCount();
    mel::Value result;
    MStatus status;
    {
        RunScope scope(instance, result);
        status = instance.doIt(mel::ArgumentTokens::Wrap(std::move(tokens)));
    }
    if (status.error()) {
        throw ErrorOf(command->name, status, host.output(), errorsBefore);
    }
    if (instance.isUndoable()) {
        host.undo().Push(std::move(item));
    }
    return result;
}

} // namespace

mel::Value* RunningCommandResult() {
    return g_running.empty() ? nullptr : g_running.back().result;
}

bool IsInPluginCommand() {
    return !g_running.empty();
}

bool IsInUndoablePluginCommand() {
    return IsInPluginCommand() && g_running.back().command->isUndoable();
}

bool RegisterPluginCommand(const PluginCommand& command, const std::string& plugin) {
    Host& host = Host::Get();
    const auto shared = std::make_shared<const PluginCommand>(command);
    return host.interpreter().Commands().RegisterPlugin(
        command.name, plugin, command.syntax.value_or(MSyntax()),
        [&host, shared](mel::ArgumentTokens tokens) { return Run(host, shared, std::move(tokens)); });
}

} // namespace lightbox
