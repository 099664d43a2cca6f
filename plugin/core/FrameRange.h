#pragma once

#include <QtGlobal>

namespace vellix {

/// A range of whole frames; `end` is exclusive.
struct FrameRange {
    int start = 0;
    int end = 0;

    /// The longest range that may be filled with frames. A longer one is a mistake and would exhaust memory.
    static constexpr int MAX_FRAMES = 100000;

    bool CanBeFilled() const { return static_cast<qint64>(end) - start <= MAX_FRAMES; }
    bool Contains(int frame) const { return frame >= start && frame < end; }

    /// Converts times in frames. Truncates fractions toward zero and clamps to the range of an int.
    static FrameRange FromFrames(double start, double end);
    /// The highlighted range of the host's time slider. The current frame if nothing is highlighted or the
    /// host has no time slider.
    static FrameRange FromTimeSlider();
};

} // namespace vellix
