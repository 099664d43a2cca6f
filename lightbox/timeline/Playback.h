#pragma once

#include "scene/EventSubscriptions.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

namespace lightbox {

class EventBus;
class Timeline;

/// Advances the current time during playback, from a timer of the event loop. Real-time playback skips frames
/// when drawing is too slow; a playback speed of 0 shows every frame. Escape stops playback.
class Playback : public QObject {
    Q_OBJECT

public:
    struct Position {
        double frame;
        /// 1 forward, -1 backward, 0 when playback without a loop has ended.
        int direction;
    };

    explicit Playback(Timeline& time, EventBus& events, QObject* parent = nullptr);

    /// The position after a number of steps from a frame of the playback range, with the timeline's step size
    /// and loop.
    static Position Advance(const Timeline& time, double frame, int direction, long long steps);
    /// The first frame of playback: the current frame, or the start of the range (its end when playing
    /// backward) if the current frame is outside the range, or if it is at the end and playback does not
    /// loop.
    static double Beginning(const Timeline& time, int direction);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void OnPlaying(bool playing);
    void OnTick();
    /// Restarts the clock and the count of steps at the current frame.
    void Rebase();
    /// The number of steps due since the last Rebase(), by the clock.
    long long StepsDue() const;
    /// Steps per second; 0 for as fast as possible.
    double Rate() const;
    void Schedule();

    Timeline& time_;
    EventSubscriptions events_;
    QTimer timer_;
    QElapsedTimer clock_;
    double frame_ = 0.0;
    int direction_ = 0;
    long long steps_ = 0;
    /// The Rate() of the current count of steps. A change of the rate restarts the count.
    double rate_ = 0.0;
};

} // namespace lightbox
