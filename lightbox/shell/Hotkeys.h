#pragma once

namespace lightbox {

class MainWindow;

/// Adds the hotkeys for the active panel and the scene; they work in every window of the program. A focused
/// text field or a tool gets the keys that it accepts first.
void AddHotkeys(MainWindow& window);

} // namespace lightbox
