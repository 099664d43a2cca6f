#pragma once

#include <QBasicTimer>
#include <QObject>

namespace vellix {

/// Writes the settings file soon after a setting changed that took the user some trouble, such as a preset or
/// a key: a host that ends abruptly then loses none. A slider that is dragged is written once, when it rests.
/// Without a user interface the file is only written at the end. Main thread only.
class SettingsWriter : private QObject {
public:
    static void Schedule() noexcept;
    /// Forgets what was scheduled. Call before the last writing, and before the plug-in is unloaded.
    static void Stop();

    ~SettingsWriter() override;

private:
    SettingsWriter() = default;

    void timerEvent(QTimerEvent* event) override;

    QBasicTimer timer_;
};

} // namespace vellix
