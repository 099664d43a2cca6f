#pragma once

#include <maya/MTime.h>

#include <string>

namespace lightbox {

/// How many units of a time unit make a second, as a fraction, exact for the 1001-based rates. 0/1 for no
/// unit.
struct UnitRate {
    double numerator = 0.0;
    double denominator = 1.0;
    double PerSecond() const { return numerator / denominator; }
};

UnitRate RateOf(MTime::Unit unit);
/// The unit's name in MEL and scene files: "film", "pal", "48000fps"; empty for no unit.
std::string UnitName(MTime::Unit unit);
/// The unit with that name, or kInvalid. Knows "24fps" and the like also for units that have another name.
MTime::Unit UnitFromName(const std::string& name);

} // namespace lightbox
