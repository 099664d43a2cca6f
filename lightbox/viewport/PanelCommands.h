#pragma once

namespace lightbox {

class ViewportPanels;
class WindowCommandTable;

/// modelPanel, modelEditor, getPanel, panel, lookThru, lookThroughModelPanel, setNamedPanelLayout, refresh.
/// Without `panels`, as in a window that has none, they end with an error that says so.
void RegisterPanelCommands(WindowCommandTable& table, ViewportPanels* panels);

} // namespace lightbox
