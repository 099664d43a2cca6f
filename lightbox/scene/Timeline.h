#pragma once

#include <maya/MTime.h>

#include <utility>

namespace lightbox {

class EventBus;

/// Current time, playback and animation range, units, playback and the time slider's highlighted range. Times
/// are frames in the current unit. Fires "timeChanged", "timeUnitChanged" and "playbackRangeChanged", and
/// keeps the condition "playingBack".
class Timeline {
public:
    explicit Timeline(EventBus& events);

    /// Back to what a new scene has: frame 1, playback 1 to 120, animation 1 to 200, film.
    void Reset();

    double CurrentTime() const { return current_; }
    /// Fires "timeChanged" when the time is another one, or when `force` is given.
    void SetCurrentTime(double frame, bool force = false);

    double MinTime() const { return min_; }
    double MaxTime() const { return max_; }
    /// A range whose end lies before its start is refused. The animation range grows to hold it.
    bool SetPlaybackRange(double min, double max);
    double AnimationStart() const { return animationStart_; }
    double AnimationEnd() const { return animationEnd_; }
    /// The playback range shrinks to lie within it.
    bool SetAnimationRange(double start, double end);
    /// 1 is real time, 0 plays every frame.
    double PlaybackSpeed() const { return speed_; }
    void SetPlaybackSpeed(double speed) { speed_ = speed; }
    double PlaybackBy() const { return by_; }
    void SetPlaybackBy(double by) { by_ = by; }

    MTime::Unit Unit() const { return unit_; }
    /// Frames keep their numbers. False for no unit.
    bool SetUnit(MTime::Unit unit);

    /// The highlighted range of the time slider, from its first frame to the frame after its last. With
    /// nothing highlighted, the current time and the frame after it.
    std::pair<double, double> SliderRange() const;
    bool IsRangeHighlighted() const { return highlighted_; }
    /// A range that is empty or backward is refused.
    bool HighlightRange(double start, double end);
    void ClearHighlight() { highlighted_ = false; }

    bool IsPlaying() const { return playing_ != 0; }
    /// 1 forward, -1 backward, 0 stops. Whoever shows the frames (a window's timer) advances the time.
    void SetPlaying(int direction);
    int PlayingDirection() const { return playing_; }

private:
    EventBus& events_;
    double current_ = 1.0;
    double min_ = 1.0;
    double max_ = 120.0;
    double animationStart_ = 1.0;
    double animationEnd_ = 200.0;
    double speed_ = 1.0;
    double by_ = 1.0;
    MTime::Unit unit_ = MTime::kFilm;
    bool highlighted_ = false;
    std::pair<double, double> slider_{1.0, 2.0};
    int playing_ = 0;
};

} // namespace lightbox
