#pragma once

#include <maya/MTime.h>

#include <string>

namespace lightbox {

/// Units of a time unit per second as a fraction, exact for the 1001-based rates. 0/1 for no unit.
struct UnitRate {
    double numerator = 0.0;
    double denominator = 1.0;
    double PerSecond() const { return numerator / denominator; }
};

UnitRate RateOf(MTime::Unit unit);
/// The name that MEL and scene files give the unit: "film", "pal", "48000fps"; empty for no unit.
std::string UnitName(MTime::Unit unit);
/// kInvalid when there is none of that name. Knows "24fps" and its like for the units that have another name
/// too.
MTime::Unit UnitFromName(const std::string& name);

} // namespace lightbox
