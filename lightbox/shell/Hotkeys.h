#pragma once

namespace lightbox {

class MainWindow;

/// Adds the hotkeys for the active panel and the scene; they work in every window of the program. A focused
/// text field or a tool gets the keys that it accepts first.
/// The keys of menu items stand with the items (scripts/mainWindow.mel), those of playback with its buttons
/// (PlaybackControls), and those that scripts bind in ScriptedHotkeys.
void AddHotkeys(MainWindow& window);

} // namespace lightbox
