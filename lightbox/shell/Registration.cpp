#include "shell/Registration.h"

#include "controls/Registration.h"
#include "controls/WindowCommandTable.h"
#include "viewport/PanelCommands.h"

namespace lightbox {

void RegisterWindowCommands(mel::CommandRegistry& commands, ControlRegistry* controls,
                            ViewportPanels* panels) {
    WindowCommandTable table(commands, controls);
    RegisterControlCommands(table);
    RegisterPanelCommands(table, panels);
    RegisterCommandPortCommand(table);
    RegisterGrabCommands(table);
    RegisterHotkeyCommands(table);
    RegisterThemeCommand(table);
}

} // namespace lightbox
