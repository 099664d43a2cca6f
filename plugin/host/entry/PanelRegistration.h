#pragma once

#include <QString>

namespace vellix {

/// Tells the panels' registry what makes each panel and dialog; it forgets them when the panels are shut
/// down. `pluginFolder` is where the plug-in was loaded from: its documentation is found from there.
void RegisterPanels(const QString& pluginFolder);

} // namespace vellix
