#pragma once

#include "scene/EventSubscriptions.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

namespace lightbox {

class Host;
class Timeline;

/// Moves the time while the timeline plays, from the event loop, which goes on meanwhile. In real time frames
/// are left out when showing them takes too long; a playback speed of 0 shows every frame. Escape stops it.
class Playback : public QObject {
    Q_OBJECT

public:
    struct Position {
        double frame;
        /// 1 forward, -1 backward, 0 at the end of what is played once.
        int direction;
    };

    explicit Playback(Host& host, QObject* parent = nullptr);

    /// Where so many steps from a frame of the playback range lead, with the timeline's step and loop.
    static Position Advance(const Timeline& time, double frame, int direction, long long steps);
    /// Where playback begins: the current frame, unless it lies outside the range or at its end.
    static double Beginning(const Timeline& time, int direction);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void OnPlaying(bool playing);
    void OnTick();
    /// Counts steps from here on.
    void Rebase();
    /// Steps that the clock asks for, from the last Rebase().
    long long StepsDue() const;
    /// Steps a second; 0 as fast as possible.
    double Rate() const;
    void Schedule();

    Host& host_;
    EventSubscriptions events_;
    QTimer timer_;
    QElapsedTimer clock_;
    double frame_ = 0.0;
    int direction_ = 0;
    long long steps_ = 0;
    /// What the clock was set for; a change of it starts the count anew.
    double rate_ = 0.0;
};

} // namespace lightbox
