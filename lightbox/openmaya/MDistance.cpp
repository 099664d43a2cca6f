#include <maya/MDistance.h>

namespace {

/// Centimetres in one unit; 0 for no unit.
double CentimetresIn(MDistance::Unit unit) {
    switch (unit) {
    case MDistance::kInches:
        return 2.54;
    case MDistance::kFeet:
        return 30.48;
    case MDistance::kYards:
        return 91.44;
    case MDistance::kMiles:
        return 160934.4;
    case MDistance::kMillimeters:
        return 0.1;
    case MDistance::kCentimeters:
        return 1.0;
    case MDistance::kKilometers:
        return 100000.0;
    case MDistance::kMeters:
        return 100.0;
    default:
        return 0.0;
    }
}

} // namespace

MStatus MDistance::setUnit(Unit newUnit) {
    if (CentimetresIn(newUnit) == 0.0) {
        return MS::kInvalidParameter;
    }
    unit_ = newUnit;
    return MS::kSuccess;
}

MStatus MDistance::setValue(double newValue) {
    value_ = newValue;
    return MS::kSuccess;
}

double MDistance::as(Unit otherUnit, MStatus* ReturnStatus) const {
    const double size = CentimetresIn(otherUnit);
    if (ReturnStatus) {
        *ReturnStatus = size == 0.0 ? MS::kInvalidParameter : MS::kSuccess;
    }
    return size == 0.0 ? 0.0 : unit_ == otherUnit ? value_ : value_ * CentimetresIn(unit_) / size;
}

MStatus MDistance::setUIUnit(Unit newUnit) {
    return newUnit == uiUnit() ? MS::kSuccess : MS::kInvalidParameter;
}
