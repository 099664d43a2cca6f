#pragma once

#include <QObject>
#include <QTimer>

namespace vellix {

class LayerManager;

/// Does ahead, while the user does nothing, what the master drawing will need: packs what was drawn, so that
/// saving finds it done; frees the pixels of drawings away from the current time, whose bytes remain; and
/// decodes the drawings that playback shows next. It goes in steps of one drawing and rests while the user
/// draws, types, moves anything, or plays. Main thread only.
class IdleWork : private QObject {
public:
    static void Start();
    static void Stop();
    /// Call after a change of a drawing or of the time. Does nothing unless started.
    static void Schedule();

    ~IdleWork() override;

private:
    IdleWork();

    bool eventFilter(QObject* watched, QEvent* event) override;
    void Rest();
    void StepIn(int milliseconds) noexcept;
    void TakeStep();

    QTimer timer_;
};

} // namespace vellix
