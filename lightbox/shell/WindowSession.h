#pragma once

#include <QObject>

#include <functional>

namespace lightbox {

class Host;

/// Runs the program with its window. Does the host's idle work when the event loop has nothing else to do,
/// and ends the loop when the host was asked to quit.
class WindowSession : public QObject {
    Q_OBJECT
public:
    /// Sets Qt's options for OpenGL and high-resolution screens. Call it before the application object is
    /// made.
    static void PrepareApplication();

    /// Makes the window. The host owns it.
    explicit WindowSession(Host& host);

    /// Shows the window, calls `onceShown` from the event loop, and runs until the program quits. Returns the
    /// exit status.
    int Run(const std::function<void()>& onceShown);

private:
    void Turn();
    /// Ends the session without a question. Unsaved changes are left for the next one to offer; if that is
    /// not possible, the session goes on.
    void EndUnasked();

    Host& host_;
    bool idleIsDue_ = false;
};

} // namespace lightbox
