#pragma once

namespace lightbox {

class MainWindow;

/// Gives the window the keys that act on the panel in use or on the scene, in every window of the program. A
/// text field that has the keyboard keeps what it can take, and so does a tool. The keys of menu items are
/// given with the items (ScriptedWindow), those of playback with its buttons (PlaybackControls).
void AddHotkeys(MainWindow& window);

} // namespace lightbox
