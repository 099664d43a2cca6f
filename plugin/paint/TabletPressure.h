#pragma once

namespace vellix {

/// The response curve between a pen's pressure and the opacity of a stroke.
struct TabletPressure {
    /// Maps a raw pressure of 0..1 to the pressure to paint with, 0..1. Raises the upper half, cuts the
    /// lowest readings to 0 and lifts light ones to a floor. A reading of exactly 0 or NaN counts as missing:
    /// returns `previous`.
    static float Curve(double raw, float previous);
};

} // namespace vellix
