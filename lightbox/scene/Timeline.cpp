#include "scene/Timeline.h"

#include "scene/EventBus.h"
#include "scene/TimeUnits.h"

#include <algorithm>
#include <cmath>

namespace lightbox {

Timeline::Timeline(EventBus& events)
    : events_(events) {}

void Timeline::Reset() {
    SetPlaying(0);
    min_ = 1.0;
    max_ = 120.0;
    animationStart_ = 1.0;
    animationEnd_ = 200.0;
    by_ = 1.0;
    ClearHighlight();
    if (unit_ != MTime::kFilm) {
        SetUnit(MTime::kFilm);
    }
    events_.Fire("playbackRangeChanged");
    SetCurrentTime(1.0);
}

void Timeline::SetCurrentTime(double frame, bool force) {
    if (!std::isfinite(frame) || (frame == current_ && frame == evaluated_ && !force)) {
        return;
    }
    current_ = frame;
    evaluated_ = frame;
    ++evaluations_;
    events_.Fire("timeChanged");
}

void Timeline::MoveWithoutScene(double frame) {
    if (std::isfinite(frame) && frame != current_) {
        current_ = frame;
        events_.Fire("timeSliderChanged");
    }
}

bool Timeline::SetPlaybackRange(double min, double max) {
    if (!std::isfinite(min) || !std::isfinite(max) || max < min) {
        return false;
    }
    min_ = min;
    max_ = max;
    animationStart_ = std::min(animationStart_, min);
    animationEnd_ = std::max(animationEnd_, max);
    events_.Fire("playbackRangeChanged");
    return true;
}

bool Timeline::SetAnimationRange(double start, double end) {
    if (!std::isfinite(start) || !std::isfinite(end) || end < start) {
        return false;
    }
    animationStart_ = start;
    animationEnd_ = end;
    min_ = std::clamp(min_, start, end);
    max_ = std::clamp(max_, start, end);
    events_.Fire("playbackRangeChanged");
    return true;
}

bool Timeline::SetUnit(MTime::Unit unit) {
    if (RateOf(unit).numerator == 0.0) {
        return false;
    }
    if (unit != unit_) {
        unit_ = unit;
        events_.Fire("timeUnitChanged");
    }
    return true;
}

std::pair<double, double> Timeline::SliderRange() const {
    return highlighted_ ? slider_ : std::make_pair(current_, current_ + 1.0);
}

bool Timeline::HighlightRange(double start, double end) {
    if (!std::isfinite(start) || !std::isfinite(end) || end <= start) {
        return false;
    }
    if (!highlighted_ || slider_ != std::make_pair(start, end)) {
        slider_ = {start, end};
        highlighted_ = true;
        events_.Fire("timeSliderChanged");
    }
    return true;
}

void Timeline::ClearHighlight() {
    if (highlighted_) {
        highlighted_ = false;
        events_.Fire("timeSliderChanged");
    }
}

void Timeline::SetPlaying(int direction) {
    playing_ = direction;
    events_.SetCondition("playingBack", direction != 0);
}

} // namespace lightbox
