#pragma once

#include <maya/MTime.h>

#include <cstdint>
#include <utility>

namespace lightbox {

class EventBus;

/// The current time, playback range, animation range, time unit, playback options and the time slider's
/// highlighted range. Times are frames in the current unit. Fires "timeChanged", "timeUnitChanged",
/// "playbackRangeChanged", and "timeSliderChanged" for other changes that a time slider shows (the
/// highlighted range, the time moved without the scene). Keeps the condition "playingBack".
class Timeline {
public:
    /// What playback does at the end of the range.
    enum class Loop { Once, Continuous, Oscillate };

    explicit Timeline(EventBus& events);

    /// Restores the defaults of a new scene: frame 1, playback 1 to 120, animation 1 to 200, film.
    void Reset();

    double CurrentTime() const { return current_; }
    /// Sets the time in frames. Fires "timeChanged" when it differs, or when `force` is set.
    void SetCurrentTime(double frame, bool force = false);
    /// Moves the time without evaluating the scene, so that the next key stores the current values at the new
    /// time.
    void MoveWithoutScene(double frame);
    /// The time that the scene shows: the current time, unless MoveWithoutScene() moved that.
    double EvaluationTime() const { return evaluated_; }
    /// Increases whenever the scene must be evaluated again.
    std::uint64_t Evaluations() const { return evaluations_; }

    double MinTime() const { return min_; }
    double MaxTime() const { return max_; }
    /// Returns false for a range that ends before it starts. The animation range grows to contain it.
    bool SetPlaybackRange(double min, double max);
    double AnimationStart() const { return animationStart_; }
    double AnimationEnd() const { return animationEnd_; }
    /// Returns false for a range that ends before it starts. The playback range shrinks to lie within it.
    bool SetAnimationRange(double start, double end);
    /// 1 is real time, 0 plays every frame.
    double PlaybackSpeed() const { return speed_; }
    void SetPlaybackSpeed(double speed) { speed_ = speed; }
    double PlaybackBy() const { return by_; }
    void SetPlaybackBy(double by) { by_ = by; }
    /// The upper limit for playback of every frame, as a factor of the real rate; 0 means no limit.
    double MaxPlaybackSpeed() const { return maxSpeed_; }
    void SetMaxPlaybackSpeed(double speed) { maxSpeed_ = speed; }
    Loop PlaybackLoop() const { return loop_; }
    void SetPlaybackLoop(Loop loop) { loop_ = loop; }
    /// Whether playback updates every view, or only the active one.
    bool PlaysInAllViews() const { return allViews_; }
    void SetPlaysInAllViews(bool all) { allViews_ = all; }

    MTime::Unit Unit() const { return unit_; }
    /// Frames keep their numbers. Returns false for no unit.
    bool SetUnit(MTime::Unit unit);

    /// The highlighted range of the time slider, from its first frame to the frame after its last one.
    /// Without a highlight: the current time and the frame after it.
    std::pair<double, double> SliderRange() const;
    bool IsRangeHighlighted() const { return highlighted_; }
    /// Returns false for an empty or backward range.
    bool HighlightRange(double start, double end);
    void ClearHighlight();

    bool IsPlaying() const { return playing_ != 0; }
    /// 1 plays forward, -1 backward, 0 stops. Whoever shows the frames (a window's timer) advances the time.
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
