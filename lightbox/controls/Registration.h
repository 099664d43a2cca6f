#pragma once

namespace lightbox {

class WindowCommandTable;

/// Adds the commands of windows, layouts, menus, controls and dialogs.
void RegisterControlCommands(WindowCommandTable& table);

// The groups of commands, one per file.
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

} // namespace lightbox
