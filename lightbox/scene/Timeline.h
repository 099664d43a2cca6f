#pragma once

#include <maya/MTime.h>

#include <cstdint>
#include <utility>

namespace lightbox {

class EventBus;

/// Current time, playback and animation range, units, playback and the time slider's highlighted range. Times
/// are frames in the current unit. Fires "timeChanged", "timeUnitChanged", "playbackRangeChanged" and, when
/// something else changed that a time slider shows (the highlighted range, the time without the scene),
/// "timeSliderChanged"; keeps the condition "playingBack".
class Timeline {
public:
    /// What playback does at the end of its range.
    enum class Loop { Once, Continuous, Oscillate };

    explicit Timeline(EventBus& events);

    /// Back to what a new scene has: frame 1, playback 1 to 120, animation 1 to 200, film.
    void Reset();

    double CurrentTime() const { return current_; }
    /// Fires "timeChanged" when the time is another one, or when `force` is given.
    void SetCurrentTime(double frame, bool force = false);
    /// Moves the time and leaves the scene as it is evaluated, so that what is keyed next takes its values to
    /// the new time.
    void MoveWithoutScene(double frame);
    /// The time that the scene shows: the current time, unless that was moved without the scene.
    double EvaluationTime() const { return evaluated_; }
    /// Rises whenever the scene is to be evaluated anew.
    std::uint64_t Evaluations() const { return evaluations_; }

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
    /// Bounds playback of every frame, as a factor of the real rate; 0 is free.
    double MaxPlaybackSpeed() const { return maxSpeed_; }
    void SetMaxPlaybackSpeed(double speed) { maxSpeed_ = speed; }
    Loop PlaybackLoop() const { return loop_; }
    void SetPlaybackLoop(Loop loop) { loop_ = loop; }
    /// Whether playback shows in every view, or in the active one only.
    bool PlaysInAllViews() const { return allViews_; }
    void SetPlaysInAllViews(bool all) { allViews_ = all; }

    MTime::Unit Unit() const { return unit_; }
    /// Frames keep their numbers. False for no unit.
    bool SetUnit(MTime::Unit unit);

    /// The highlighted range of the time slider, from its first frame to the frame after its last. With
    /// nothing highlighted, the current time and the frame after it.
    std::pair<double, double> SliderRange() const;
    bool IsRangeHighlighted() const { return highlighted_; }
    /// A range that is empty or backward is refused.
    bool HighlightRange(double start, double end);
    void ClearHighlight();

    bool IsPlaying() const { return playing_ != 0; }
    /// 1 forward, -1 backward, 0 stops. Whoever shows the frames (a window's timer) advances the time.
    void SetPlaying(int direction);
    int PlayingDirection() const { return playing_; }

private:
    EventBus& events_;
    double current_ = 1.0;
    double evaluated_ = 1.0;
    std::uint64_t evaluations_ = 1;
    double min_ = 1.0;
    double max_ = 120.0;
    double animationStart_ = 1.0;
    double animationEnd_ = 200.0;
    double speed_ = 1.0;
    double by_ = 1.0;
    double maxSpeed_ = 0.0;
    Loop loop_ = Loop::Continuous;
    bool allViews_ = false;
    MTime::Unit unit_ = MTime::kFilm;
    bool highlighted_ = false;
    std::pair<double, double> slider_{1.0, 2.0};
    int playing_ = 0;
};

} // namespace lightbox
