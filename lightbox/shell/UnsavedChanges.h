#pragma once

class QWidget;

namespace lightbox {

class Host;

/// The question about changes of the scene that no file has.
class UnsavedChanges {
public:
    /// Asks, when there are any, whether to save them, and saves. True when what was about to happen (a new
    /// scene, another one, the end) may go on.
    static bool Settle(Host& host, QWidget* parent);
    /// Saves the scene, asking for a file when it has none. False when it was not saved.
    static bool Save(Host& host, QWidget* parent);
    /// Asks for a file and saves the scene there.
    static bool SaveAs(Host& host, QWidget* parent);
};

} // namespace lightbox
