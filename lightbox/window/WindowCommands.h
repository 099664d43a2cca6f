#pragma once

#include "window/ControlType.h"

#include <functional>
#include <string>

class MSyntax;

namespace lightbox {

class ControlRegistry;
class Host;

namespace mel {
class CommandRegistry;
}

/// Adds MEL's window commands. Without controls, as in batch, they are there but end with an error that says
/// so. `controls` must stay until no MEL runs any more.
void RegisterWindowCommands(Host& host, ControlRegistry* controls);

/// How the groups of window commands add theirs.
class WindowCommandTable {
public:
    WindowCommandTable(Host& host, ControlRegistry* controls)
        : host_(host)
        , controls_(controls) {}

    /// Null in batch: then no command gets so far as to use it.
    ControlRegistry* Controls() const { return controls_; }
    /// The command of a kind of control: makes, edits, queries one.
    void Add(ControlType type);
    /// Any other command.
    void Add(const std::string& name, const MSyntax& syntax,
             std::function<mel::Value(mel::CommandCall&, ControlRegistry&)> function);

private:
    Host& host_;
    ControlRegistry* controls_;
};

// The groups, one a file.
void RegisterTopWindowCommands(WindowCommandTable& table);
void RegisterControlQueryCommands(WindowCommandTable& table);
void RegisterBoxLayoutCommands(WindowCommandTable& table);
void RegisterFormLayoutCommand(WindowCommandTable& table);
void RegisterPaneLayoutCommand(WindowCommandTable& table);
void RegisterFrameLayoutCommands(WindowCommandTable& table);
void RegisterTabLayoutCommands(WindowCommandTable& table);
void RegisterMenuCommands(WindowCommandTable& table);
void RegisterMenuItemCommands(WindowCommandTable& table);
void RegisterMenuSetCommands(WindowCommandTable& table);
void RegisterButtonCommands(WindowCommandTable& table);
void RegisterLabelCommands(WindowCommandTable& table);
void RegisterTextFieldCommands(WindowCommandTable& table);
void RegisterNumberFieldCommands(WindowCommandTable& table);
void RegisterToggleCommands(WindowCommandTable& table);
void RegisterToggleGroupCommands(WindowCommandTable& table);
void RegisterSliderCommands(WindowCommandTable& table);
void RegisterColorSliderCommand(WindowCommandTable& table);
void RegisterOptionMenuCommands(WindowCommandTable& table);
void RegisterTextScrollListCommand(WindowCommandTable& table);
void RegisterProgressCommands(WindowCommandTable& table);
void RegisterDialogCommands(WindowCommandTable& table);
void RegisterPanelCommands(WindowCommandTable& table);
void RegisterCommandPortCommand(WindowCommandTable& table);
void RegisterGrabCommands(WindowCommandTable& table);

} // namespace lightbox
