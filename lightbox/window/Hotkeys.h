#pragma once

#include <QObject>

namespace lightbox {

class MainWindow;

/// Keys that act on the panel in use or on the scene, in every window of the program. A text field that has
/// the keyboard keeps what it can take, and so does a tool.
class Hotkeys : public QObject {
public:
    /// For as long as the window is there, which owns it.
    explicit Hotkeys(MainWindow& window);
};

} // namespace lightbox
