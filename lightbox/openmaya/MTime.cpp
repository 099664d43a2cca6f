#include "scene/Host.h"
#include "scene/TimeUnits.h"
#include "scene/Timeline.h"
#include "text/NumberText.h"

#include <maya/MTime.h>

#include <cmath>
#include <ostream>

namespace {

/// The published number of ticks per second. Every unit is a whole number of ticks, except those of the
/// 1001-based rates.
constexpr double TICKS_PER_SECOND = 141120000.0;

double Ticks(const MTime& time) {
    const lightbox::UnitRate rate = lightbox::RateOf(time.unit());
    return rate.numerator == 0.0
               ? 0.0
               : std::round(time.value() * rate.denominator * TICKS_PER_SECOND / rate.numerator);
}

} // namespace

MTime::MTime(double value, Unit unit)
    : value_(value)
    , unit_(unit) {}

double MTime::as(Unit unit) const {
    if (unit == unit_) {
        return value_;
    }
    const lightbox::UnitRate from = lightbox::RateOf(unit_);
    const lightbox::UnitRate to = lightbox::RateOf(unit);
    // Multiply before dividing, so that whole frames convert to exact whole frames.
    const double divisor = from.numerator * to.denominator;
    return divisor == 0.0 ? 0.0 : value_ * (to.numerator * from.denominator) / divisor;
}

MStatus MTime::setUnit(Unit unit) {
    unit_ = unit;
    return lightbox::RateOf(unit).numerator == 0.0 ? MS::kInvalidParameter : MS::kSuccess;
}

MStatus MTime::setValue(double value) {
    value_ = value;
    return MS::kSuccess;
}

MTime::Unit MTime::uiUnit() {
    lightbox::Host* host = lightbox::Host::Current();
    return host ? host->time().Unit() : kFilm;
}

MStatus MTime::setUIUnit(Unit unit) {
    lightbox::Host* host = lightbox::Host::Current();
    return host && host->time().SetUnit(unit) ? MS::kSuccess : MS::kFailure;
}

bool MTime::operator==(const MTime& other) const {
    return unit_ == other.unit_ && value_ == other.value_ ? true : Ticks(*this) == Ticks(other);
}

bool MTime::operator<(const MTime& other) const {
    // Every unit has more than one tick.
    if (unit_ == other.unit_ && std::fabs(value_ - other.value_) >= 1.0) {
        return value_ < other.value_;
    }
    return Ticks(*this) < Ticks(other);
}

MTime MTime::operator+(const MTime& other) const {
    return MTime(value_ + other.as(unit_), unit_);
}
MTime MTime::operator+(double value) const {
    return MTime(value_ + value, unit_);
}
MTime MTime::operator-(const MTime& other) const {
    return MTime(value_ - other.as(unit_), unit_);
}
MTime MTime::operator-(double value) const {
    return MTime(value_ - value, unit_);
}
MTime MTime::operator-() const {
    return MTime(-value_, unit_);
}
MTime MTime::operator*(double scale) const {
    return MTime(value_ * scale, unit_);
}
MTime MTime::operator/(double scale) const {
    return MTime(value_ / scale, unit_);
}
double MTime::operator/(const MTime& other) const {
    return value_ / other.as(unit_);
}

MTime& MTime::operator+=(const MTime& other) {
    return *this = *this + other;
}
MTime& MTime::operator+=(double value) {
    return *this = *this + value;
}
MTime& MTime::operator-=(const MTime& other) {
    return *this = *this - other;
}
MTime& MTime::operator-=(double value) {
    return *this = *this - value;
}
MTime& MTime::operator*=(double scale) {
    return *this = *this * scale;
}
MTime& MTime::operator/=(double scale) {
    return *this = *this / scale;
}
MTime& MTime::operator++() {
    return *this += 1.0;
}
MTime& MTime::operator--() {
    return *this -= 1.0;
}

MTime MTime::operator++(int) {
    const MTime before = *this;
    ++*this;
    return before;
}

MTime MTime::operator--(int) {
    const MTime before = *this;
    --*this;
    return before;
}

MTime operator*(double scale, const MTime& time) {
    return time * scale;
}

std::ostream& operator<<(std::ostream& os, const MTime& time) {
    return os << lightbox::DecimalText(time.as(MTime::uiUnit()));
}
