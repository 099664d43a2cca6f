#include <maya/MAngle.h>

namespace {

/// Radians in one unit; 0 for no unit.
double RadiansIn(MAngle::Unit unit) {
    constexpr double degree = 3.14159265358979323846 / 180.0;
    switch (unit) {
    case MAngle::kRadians:
        return 1.0;
    case MAngle::kDegrees:
        return degree;
    case MAngle::kAngMinutes:
        return degree / 60.0;
    case MAngle::kAngSeconds:
        return degree / 3600.0;
    default:
        return 0.0;
    }
}

} // namespace

MStatus MAngle::setUnit(Unit newUnit) {
    if (RadiansIn(newUnit) == 0.0) {
        return MS::kInvalidParameter;
    }
    unit_ = newUnit;
    return MS::kSuccess;
}

MStatus MAngle::setValue(double newValue) {
    value_ = newValue;
    return MS::kSuccess;
}

double MAngle::as(Unit otherUnit, MStatus* ReturnStatus) const {
    const double size = RadiansIn(otherUnit);
    if (ReturnStatus) {
        *ReturnStatus = size == 0.0 ? MS::kInvalidParameter : MS::kSuccess;
    }
    return size == 0.0 ? 0.0 : unit_ == otherUnit ? value_ : value_ * RadiansIn(unit_) / size;
}

MStatus MAngle::setUIUnit(Unit newUnit) {
    return newUnit == uiUnit() ? MS::kSuccess : MS::kInvalidParameter;
}
