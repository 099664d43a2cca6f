#pragma once

namespace lightbox {

class ControlRegistry;
class Host;
class ViewportPanels;
class WindowCommandTable;

/// Adds MEL's window commands. Without controls, as in batch, they are there but end with an error that says
/// so; without `panels` those of viewports do. Both must stay until no MEL runs any more.
void RegisterWindowCommands(Host& host, ControlRegistry* controls, ViewportPanels* panels);

// Those of the shell, one group a file.
void RegisterCommandPortCommand(WindowCommandTable& table);
void RegisterGrabCommands(WindowCommandTable& table);

} // namespace lightbox
