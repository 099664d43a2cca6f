#pragma once

class QWidget;

namespace lightbox {

class Output;
class SceneFiles;

/// What happens at the start after a session that has not ended properly and has saved its scene
/// automatically.
class CrashRecovery {
public:
    /// Asks the user whether to open the automatic save, and does what he answers.
    static void Ask(SceneFiles& files, Output& output, QWidget* parent);
    /// Prints where the automatic save is, for a program without a window.
    static void Report(SceneFiles& files, Output& output);
};

} // namespace lightbox
