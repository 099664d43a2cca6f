#pragma once

#include <QObject>

#include <functional>

namespace lightbox {

class Host;

/// The program with its window, from the first paint to the end: does the host's idle work when the event
/// loop has nothing else to do, and ends the loop when the host was asked to quit.
class WindowSession : public QObject {
    Q_OBJECT
public:
    /// Before the application object is made: what OpenGL and high-resolution screens need.
    static void PrepareApplication();

    /// Makes the window and gives it to the host.
    explicit WindowSession(Host& host);

    /// Shows the window, calls `onceShown` when it stands, and runs until the end. Answers the exit status.
    int Run(const std::function<void()>& onceShown);

private:
    void Turn();

    Host& host_;
    bool idleIsDue_ = false;
};

} // namespace lightbox
