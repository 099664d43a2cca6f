#pragma once

#include "controls/ControlType.h"

#include <functional>
#include <string>

class MSyntax;

namespace lightbox {

class ControlRegistry;

namespace mel {
class CommandRegistry;
}

/// Registers window commands with the interpreter.
class WindowCommandTable {
public:
    WindowCommandTable(mel::CommandRegistry& commands, ControlRegistry* controls)
        : commands_(commands)
        , controls_(controls) {}

    /// Null in batch mode, where every window command ends with an error before it uses the registry.
    ControlRegistry* Controls() const { return controls_; }
    /// Adds the command that creates, edits and queries controls of a type.
    void Add(ControlType type);
    /// Adds any other command.
    void Add(const std::string& name, const MSyntax& syntax,
             std::function<mel::Value(mel::CommandCall&, ControlRegistry&)> function);

private:
    mel::CommandRegistry& commands_;
    ControlRegistry* controls_;
};

} // namespace lightbox
