#pragma once

class QWidget;

namespace lightbox {

class Host;

/// Asks the user about unsaved changes of the scene.
class UnsavedChanges {
public:
    /// If there are unsaved changes, asks whether to save them, and saves. True when the caller may continue
    /// to replace the scene or quit; false when the user cancelled or the scene could not be saved.
    static bool Settle(Host& host, QWidget* parent);
    /// Saves the scene; asks for a file when the scene has none. False when it was not saved.
    static bool Save(Host& host, QWidget* parent);
    /// Asks for a file and saves the scene there. False when it was not saved.
    static bool SaveAs(Host& host, QWidget* parent);
};

} // namespace lightbox
