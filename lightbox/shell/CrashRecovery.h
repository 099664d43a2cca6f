#pragma once

class QWidget;

namespace lightbox {

class Host;

/// What happens at the start after a session that has not ended properly and has saved its scene
/// automatically.
class CrashRecovery {
public:
    /// Asks the user whether to open the automatic save, and does what he answers.
    static void Ask(Host& host, QWidget* parent);
    /// Prints where the automatic save is, for a program without a window.
    static void Report(Host& host);
};

} // namespace lightbox
