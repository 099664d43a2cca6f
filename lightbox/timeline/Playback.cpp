#include "timeline/Playback.h"

#include "scene/TimeUnits.h"
#include "scene/Timeline.h"

#include <QCoreApplication>
#include <QKeyEvent>

#include <algorithm>
#include <cmath>

namespace lightbox {

namespace {

/// Frames; positions that differ by less are equal.
constexpr double TOLERANCE = 1e-6;

} // namespace

Playback::Playback(Timeline& time, EventBus& events, QObject* parent)
    : QObject(parent)
    , time_(time)
    , events_(events) {
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, &Playback::OnTick);
    events_.AddCondition("playingBack", [this](bool playing) { OnPlaying(playing); });
}

Playback::Position Playback::Advance(const Timeline& time, double frame, int direction, long long steps) {
    const double by = time.PlaybackBy();
    const double lastStep = std::floor((time.MaxTime() - time.MinTime()) / by + TOLERANCE) * by;
    const auto place = [&](double distance, int towards) {
        return towards > 0 ? time.MinTime() + distance : time.MaxTime() - distance;
    };
    // The distance in frames from the end where this direction starts.
    double distance = direction > 0 ? frame - time.MinTime() : time.MaxTime() - frame;
    distance += static_cast<double>(steps) * by;
    if (distance <= lastStep + TOLERANCE) {
        return {place(distance, direction), direction};
    }
    switch (time.PlaybackLoop()) {
    case Timeline::Loop::Once:
        return {direction > 0 ? time.MaxTime() : time.MinTime(), 0};
    case Timeline::Loop::Oscillate: {
        if (lastStep <= 0.0) {
            return {place(0.0, direction), direction};
        }
        const double way = std::fmod(distance, 2.0 * lastStep);
        const bool isBack = way > lastStep + TOLERANCE;
        return {place(isBack ? 2.0 * lastStep - way : way, direction), isBack ? -direction : direction};
    }
    default:
        return {place(std::fmod(distance, lastStep + by), direction), direction};
    }
}

double Playback::Beginning(const Timeline& time, int direction) {
    const double now = time.CurrentTime();
    const bool isOutside = now < time.MinTime() || now > time.MaxTime();
    const bool isAtEnd = direction > 0 ? now >= time.MaxTime() : now <= time.MinTime();
    const bool isOver = isAtEnd && time.PlaybackLoop() == Timeline::Loop::Once;
    if (!isOutside && !isOver) {
        return now;
    }
    return direction > 0 ? time.MinTime() : time.MaxTime();
}

void Playback::OnPlaying(bool playing) {
    if (!playing) {
        timer_.stop();
        QCoreApplication::instance()->removeEventFilter(this);
        return;
    }
    QCoreApplication::instance()->installEventFilter(this);
    time_.SetCurrentTime(Beginning(time_, time_.PlayingDirection()));
    Rebase();
    Schedule();
}

double Playback::Rate() const {
    const double speed = time_.PlaybackSpeed() > 0.0 ? time_.PlaybackSpeed() : time_.MaxPlaybackSpeed();
    return RateOf(time_.Unit()).PerSecond() * speed / time_.PlaybackBy();
}

void Playback::Rebase() {
    frame_ = time_.CurrentTime();
    direction_ = time_.PlayingDirection();
    rate_ = Rate();
    steps_ = 0;
    clock_.restart();
}

long long Playback::StepsDue() const {
    if (rate_ <= 0.0) {
        return steps_ + 1;
    }
    const auto due = static_cast<long long>(static_cast<double>(clock_.nsecsElapsed()) * 1e-9 * rate_ + 1e-3);
    return time_.PlaybackSpeed() <= 0.0 ? std::min(due, steps_ + 1) : due;
}

void Playback::OnTick() {
    if (!time_.IsPlaying()) {
        return;
    }
    if (time_.CurrentTime() != frame_ || time_.PlayingDirection() != direction_ || Rate() != rate_) {
        // Something else changed the time, the direction or the rate.
        Rebase();
    }
    const long long due = StepsDue();
    if (due > steps_) {
        const Position next = Advance(time_, frame_, direction_, due - steps_);
        steps_ = due;
        frame_ = next.frame;
        if (next.direction != direction_) {
            direction_ = next.direction;
            time_.SetPlaying(direction_);
        }
        time_.SetCurrentTime(frame_);
    }
    if (time_.IsPlaying()) {
        if (time_.PlaybackSpeed() <= 0.0) {
            // When every frame is shown, playback does not catch up after a late frame.
            Rebase();
        }
        Schedule();
    }
}

void Playback::Schedule() {
    if (rate_ <= 0.0) {
        timer_.start(0);
        return;
    }
    const double next = static_cast<double>(steps_ + 1) / rate_ * 1000.0;
    const double wait = next - static_cast<double>(clock_.nsecsElapsed()) * 1e-6;
    timer_.start(static_cast<int>(std::clamp(std::ceil(wait), 0.0, 1000.0)));
}

bool Playback::eventFilter(QObject*, QEvent* event) {
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    if (!isKey || static_cast<QKeyEvent*>(event)->key() != Qt::Key_Escape) {
        return false;
    }
    event->accept();
    if (event->type() == QEvent::KeyPress) {
        time_.SetPlaying(0);
    }
    return true;
}

} // namespace lightbox
