#pragma once

namespace vellix {

/// How a freehand stroke follows the pen. By default it does as it always did.
struct LineStyle {
    /// Image pixels.
    static constexpr int MAX_STABILISER = 100;

    bool smoothCurves = false; ///< joined by curves, not by straight segments
    /// Pressure sets the size. Only even sizes are drawn then: the stamps of odd ones lie aside (see
    /// BrushGrid), which would show where the size changes.
    bool sizeVaries = false;
    int stabiliser = 0; ///< length of the string on which the pen draws the brush, image pixels; 0 for none

    bool IsPlain() const { return !smoothCurves && stabiliser == 0; }
};

} // namespace vellix
