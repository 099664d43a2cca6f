#pragma once

namespace lightbox {

class ControlRegistry;
class ViewportPanels;
class WindowCommandTable;

namespace mel {
class CommandRegistry;
}

/// Registers the window commands. When `controls` is null, as in batch mode, the commands end with an error;
/// when `panels` is null, those for viewports do. Both objects have to outlive all execution of MEL.
void RegisterWindowCommands(mel::CommandRegistry& commands, ControlRegistry* controls,
                            ViewportPanels* panels);

// The shell's own groups of commands, one per file.
void RegisterCommandPortCommand(WindowCommandTable& table);
void RegisterHotkeyCommands(WindowCommandTable& table);
void RegisterGrabCommands(WindowCommandTable& table);
void RegisterThemeCommand(WindowCommandTable& table);

} // namespace lightbox
