#pragma once

#include <maya/MStatus.h>

/// An angle in a unit.
class MAngle {
public:
    enum Unit { kInvalid, kRadians, kDegrees, kAngMinutes, kAngSeconds, kLast };

    MAngle() = default;
    MAngle(double value, Unit unit = kRadians)
        : value_(value)
        , unit_(unit) {}

    Unit unit() const { return unit_; }
    double value() const { return value_; }
    MStatus setUnit(Unit newUnit);
    MStatus setValue(double newValue);

    /// The value in another unit; 0 for a unit that there is not.
    double as(Unit otherUnit, MStatus* ReturnStatus = nullptr) const;
    double asUnits(Unit otherUnit, MStatus* ReturnStatus = nullptr) const {
        return as(otherUnit, ReturnStatus);
    }
    double asRadians() const { return as(kRadians); }
    double asDegrees() const { return as(kDegrees); }
    double asAngMinutes() const { return as(kAngMinutes); }
    double asAngSeconds() const { return as(kAngSeconds); }

    /// The unit of the user interface: always degrees. Setting another one fails.
    static Unit uiUnit() { return kDegrees; }
    static MStatus setUIUnit(Unit newUnit);
    /// The unit in which the host computes.
    static Unit internalUnit() { return kRadians; }
    static double internalToUI(double internalValue) {
        return MAngle(internalValue, internalUnit()).as(uiUnit());
    }
    static double uiToInternal(double uiValue) { return MAngle(uiValue, uiUnit()).as(internalUnit()); }

private:
    double value_ = 0.0;
    Unit unit_ = kRadians;
};
