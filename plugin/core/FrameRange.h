#pragma once

#include <QtGlobal>

namespace vellix {

/// Whole frames from `start` up to, but not with, `end`.
struct FrameRange {
    int start = 0;
    int end = 0;

    /// More than a layer can reasonably hold: a range that was not meant must not fill the memory.
    static constexpr int MOST_FRAMES = 100000;

    bool CanBeFilled() const { return qint64(end) - start <= MOST_FRAMES; }
    bool Contains(int frame) const { return frame >= start && frame < end; }

    /// Whole frames, from times in frames that may be parts of one or beyond an int.
    static FrameRange FromFrames(double start, double end);
    /// The highlighted range of the host's time slider; the current frame when nothing is highlighted, or
    /// when the host has no time slider.
    static FrameRange FromTimeSlider();
};

} // namespace vellix
