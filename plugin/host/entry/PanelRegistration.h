#pragma once

#include <QString>

namespace vellix {

/// Registers the factories of all panels and dialogs with DialogManager, until its Shutdown. `pluginFolder`
/// is the folder the plug-in was loaded from; the documentation is found relative to it.
void RegisterPanels(const QString& pluginFolder);

} // namespace vellix
