#pragma once

namespace vellix {

/// Whole frames from `start` up to, but not with, `end`.
struct FrameRange {
    int start = 0;
    int end = 0;

    bool Contains(int frame) const { return frame >= start && frame < end; }

    /// The highlighted range of the host's time slider; the current frame when nothing is highlighted, or
    /// when the host has no time slider.
    static FrameRange FromTimeSlider();
};

} // namespace vellix
