#pragma once

namespace lightbox {

class ViewportPanels;
class WindowCommandTable;

/// Registers modelPanel, modelEditor, getPanel, panel, lookThru, lookThroughModelPanel, setNamedPanelLayout
/// and refresh. When `panels` is null, as in a window without viewports, the commands end with an error.
void RegisterPanelCommands(WindowCommandTable& table, ViewportPanels* panels);

} // namespace lightbox
