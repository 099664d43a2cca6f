#pragma once

namespace vellix {

/// The response curve between a pen's pressure and the opacity of a stroke.
struct TabletPressure {
    /// Returns the pressure to paint with, 0..1, for a raw reading of 0..1: the upper half is lifted, the
    /// lowest readings are dead, and light ones have a floor. A reading of exactly 0 (or no number) is no
    /// reading: it returns `previous`.
    static float Curve(double raw, float previous);
};

} // namespace vellix
