#pragma once

class QWidget;

namespace lightbox {

class Output;
class SceneFiles;

/// Asks the user about unsaved changes of the scene.
class UnsavedChanges {
public:
    /// If there are unsaved changes, asks whether to save them, and saves. True when the caller may continue
    /// to replace the scene or quit; false when the user cancelled or the scene could not be saved.
    static bool Settle(SceneFiles& files, Output& output, QWidget* parent);
    /// Saves the scene; asks for a file when the scene has none. False when it was not saved.
    static bool Save(SceneFiles& files, Output& output, QWidget* parent);
    /// Asks for a file and saves the scene there. False when it was not saved.
    static bool SaveAs(SceneFiles& files, Output& output, QWidget* parent);
};

} // namespace lightbox
