#pragma once

#include <maya/MStatus.h>

/// A length in a unit.
class MDistance {
public:
    enum Unit {
        kInvalid,
        kInches,
        kFeet,
        kYards,
        kMiles,
        kMillimeters,
        kCentimeters,
        kKilometers,
        kMeters,
        kLast
    };

    MDistance() = default;
    MDistance(double value, Unit unit = kCentimeters)
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
    double asInches() const { return as(kInches); }
    double asFeet() const { return as(kFeet); }
    double asYards() const { return as(kYards); }
    double asMiles() const { return as(kMiles); }
    double asMillimeters() const { return as(kMillimeters); }
    double asCentimeters() const { return as(kCentimeters); }
    double asKilometers() const { return as(kKilometers); }
    double asMeters() const { return as(kMeters); }

    /// The unit of the user interface: always centimetres. Setting another one fails.
    static Unit uiUnit() { return kCentimeters; }
    static MStatus setUIUnit(Unit newUnit);
    /// The unit in which the host computes.
    static Unit internalUnit() { return kCentimeters; }
    static double internalToUI(double internalValue) {
        return MDistance(internalValue, internalUnit()).as(uiUnit());
    }
    static double uiToInternal(double uiValue) { return MDistance(uiValue, uiUnit()).as(internalUnit()); }

private:
    double value_ = 0.0;
    Unit unit_ = kCentimeters;
};
