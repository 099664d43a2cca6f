#include "controls/Registration.h"

#include <initializer_list>

namespace lightbox {

void RegisterControlCommands(WindowCommandTable& table) {
    for (const auto group :
         {RegisterTopWindowCommands,   RegisterControlQueryCommands,  RegisterBoxLayoutCommands,
          RegisterFormLayoutCommand,   RegisterPaneLayoutCommand,     RegisterFrameLayoutCommands,
          RegisterTabLayoutCommands,   RegisterMenuCommands,          RegisterMenuItemCommands,
          RegisterMenuSetCommands,     RegisterButtonCommands,        RegisterLabelCommands,
          RegisterTextFieldCommands,   RegisterNumberFieldCommands,   RegisterToggleCommands,
          RegisterToggleGroupCommands, RegisterSliderCommands,        RegisterColorSliderCommand,
          RegisterOptionMenuCommands,  RegisterTextScrollListCommand, RegisterProgressCommands,
          RegisterDialogCommands}) {
        group(table);
    }
}

} // namespace lightbox
