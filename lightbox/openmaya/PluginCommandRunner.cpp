#include "openmaya/PluginCommandRunner.h"

#include "mel/Interpreter.h"
#include "openmaya/Access.h"
#include "openmaya/PluginCommandState.h"
#include "scene/Host.h"
#include "scene/Output.h"
#include "scene/UndoItem.h"
#include "scene/UndoQueue.h"

namespace lightbox {

namespace {

PluginCommandCall* g_innermost = nullptr;

/// Runs one of a command's operations. No exception of a plug-in reaches the host.
template <class Operation>
MStatus Guarded(Operation&& operation) {
    try {
        return operation();
    } catch (const std::exception& failure) {
        return Access::Fail(MS::kFailure, failure.what());
    } catch (...) {
        return Access::Fail(MS::kFailure, "The command threw an exception.");
    }
}

/// An executed command on the undo queue.
class PluginCommandItem : public UndoItem {
public:
    PluginCommandItem(Host& host, std::unique_ptr<MPxCommand> command, std::string name)
        : host_(host)
        , command_(std::move(command))
        , name_(std::move(name)) {}

    void Undo() override {
        const PluginCommandCall call;
        Report(Guarded([this] { return command_->undoIt(); }), "undo");
    }
    void Redo() override {
        const PluginCommandCall call;
        Report(Guarded([this] { return command_->redoIt(); }), "redo");
    }
    std::string Name() const override { return name_; }

private:
    void Report(const MStatus& status, const char* what) {
        if (!status) {
            host_.output().Error(name_ + ": could not " + what + ": " + Access::Text(status.errorString()));
        }
    }

    Host& host_;
    std::unique_ptr<MPxCommand> command_;
    std::string name_;
};

} // namespace

PluginCommandCall::PluginCommandCall()
    : outer_(g_innermost) {
    g_innermost = this;
}

PluginCommandCall::~PluginCommandCall() {
    g_innermost = outer_;
}

PluginCommandCall* PluginCommandCall::Current() {
    return g_innermost;
}

bool IsInPluginCommand() {
    return g_innermost != nullptr;
}

PluginCommandOutcome RunPluginCommand(Host& host, const mel::CommandRegistry::Command& command,
                                      const MArgList& arguments) {
    PluginCommandOutcome outcome;
    std::unique_ptr<MPxCommand> instance(static_cast<MPxCommand*>(command.creator()));
    if (!instance) {
        outcome.status = Access::Fail(MS::kFailure, "The command could not be created.");
        return outcome;
    }
    auto& state = Access::StateOf(*instance);
    state.command = host.interpreter().Commands().Find(command.name);
    {
        PluginCommandCall call;
        outcome.status = Guarded([&] { return instance->doIt(arguments); });
        outcome.result = std::move(call.result);
    }
    if (outcome.status && instance->isUndoable()) {
        host.undo().Push(std::make_unique<PluginCommandItem>(host, std::move(instance), command.name));
    }
    return outcome;
}

} // namespace lightbox
