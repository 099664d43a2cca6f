#pragma once

#include <QObject>

#include <cstdint>
#include <functional>
#include <vector>

namespace lightbox {

class Host;

/// The program with its window, from the first paint to the end: does the host's idle work when the event
/// loop has nothing else to do, redraws the views when the scene has changed, and ends the loop when the host
/// was asked to quit.
class WindowSession : public QObject {
    Q_OBJECT
public:
    /// Before the application object is made: what OpenGL and high-resolution screens need.
    static void PrepareApplication();

    /// Makes the window and gives it to the host.
    explicit WindowSession(Host& host);
    ~WindowSession() override;

    /// Shows the window, calls `onceShown` when it stands, and runs until the end. Answers the exit status.
    int Run(const std::function<void()>& onceShown);

private:
    void Turn();

    Host& host_;
    std::vector<std::intptr_t> callbacks_;
    std::uint64_t shownRevision_ = 0;
    bool idleIsDue_ = false;
};

} // namespace lightbox
