#include "openmaya/PluginCommandRunner.h"

#include "openmaya/Access.h"
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

/// The commands that run, the innermost last.
std::vector<Running> g_running;

class RunScope {
public:
    RunScope(const MPxCommand& command, mel::Value& result) { g_running.push_back({&command, &result}); }
    ~RunScope() { g_running.pop_back(); }
    RunScope(const RunScope&) = delete;
    RunScope& operator=(const RunScope&) = delete;
};

/// A plug-in's command on the undo queue.
class PluginCommandItem : public UndoItem {
public:
    PluginCommandItem(Host& host, std::unique_ptr<MPxCommand> command)
        : host_(host)
        , command_(std::move(command)) {}

    void Undo() override { Run(&MPxCommand::undoIt, "undone"); }
    void Redo() override { Run(&MPxCommand::redoIt, "redone"); }
    std::string Name() const override { return Access::StateOf(*command_).command->name; }

private:
    void Run(MStatus (MPxCommand::*operation)(), const char* what) {
        mel::Value result;
        RunScope scope(*command_, result);
        if (((*command_).*operation)().error()) {
            host_.output().Warning(Name() + " could not be " + what + ".");
        }
    }

    Host& host_;
    std::unique_ptr<MPxCommand> command_;
};

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

PluginCommandOutcome RunPluginCommand(Host& host,
                                      const std::shared_ptr<const mel::CommandRegistry::Command>& command,
                                      const MArgList& arguments) {
    PluginCommandOutcome outcome;
    std::unique_ptr<MPxCommand> instance(static_cast<MPxCommand*>(command->creator()));
    if (!instance) {
        outcome.status =
            Access::Fail(MS::kFailure, "The plug-in could not create the command " + command->name);
        return outcome;
    }
    Access::StateOf(*instance).command = command;
    {
        RunScope scope(*instance, outcome.result);
        outcome.status = instance->doIt(arguments);
    }
    if (outcome.status.error()) {
        outcome.result = mel::Value();
    } else if (instance->isUndoable()) {
        host.undo().Push(std::make_unique<PluginCommandItem>(host, std::move(instance)));
    }
    return outcome;
}

} // namespace lightbox
