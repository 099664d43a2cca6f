#pragma once

#include "mel/CommandRegistry.h"
#include "mel/Value.h"

#include <maya/MPxCommand.h>

#include <memory>
#include <string>

/// What the host keeps with a running command of a plug-in.
struct MPxCommand::State {
    std::shared_ptr<const lightbox::mel::CommandRegistry::Command> command;
    std::string text;
};

namespace lightbox {

/// The call of doIt(), redoIt() or undoIt() that runs; calls nest when a command runs MEL. MPxCommand's
/// static setResult() goes to the innermost one.
class PluginCommandCall {
public:
    PluginCommandCall();
    ~PluginCommandCall();
    PluginCommandCall(const PluginCommandCall&) = delete;
    PluginCommandCall& operator=(const PluginCommandCall&) = delete;

    /// Null when none runs.
    static PluginCommandCall* Current();

    mel::Value result;

private:
    PluginCommandCall* outer_;
};

} // namespace lightbox
