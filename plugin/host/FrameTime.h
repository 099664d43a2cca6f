#pragma once

#include <maya/MTime.h>

#include <QtGlobal>

#include <limits>

namespace vellix {

/// Converts a time to whole frames in the host's current time unit, truncated toward zero and clamped to the
/// range of int.
inline int ToWholeFrames(const MTime& time) {
    const double frames = time.as(MTime::uiUnit());
    if (frames >= static_cast<double>(std::numeric_limits<int>::max())) {
        return std::numeric_limits<int>::max();
    }
    if (frames > static_cast<double>(std::numeric_limits<int>::min())) {
        return static_cast<int>(frames);
    }
    return std::numeric_limits<int>::min();
}

/// Returns whether the frame number fits into an int, so that a frame can be keyed there.
inline bool IsWholeFrame(qint64 frame) {
    return frame >= std::numeric_limits<int>::min() && frame <= std::numeric_limits<int>::max();
}

/// The frame rate of the host's current time unit, in frames per second.
inline double FrameRate() {
    return MTime(1.0, MTime::kSeconds).as(MTime::uiUnit());
}

inline MTime FromWholeFrames(int frame) {
    return MTime(static_cast<double>(frame), MTime::uiUnit());
}

} // namespace vellix
