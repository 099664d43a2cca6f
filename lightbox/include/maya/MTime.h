#pragma once

#include <maya/MStatus.h>

#include <iosfwd>

/// A point in time or a length of time, in a unit. Comparisons and sums convert between units; two times are
/// equal when they fall on the same tick of 1/141,120,000 second.
class MTime {
public:
    enum Unit {
        kInvalid = 0,
        kHours,
        kMinutes,
        kSeconds,
        kMilliseconds,
        kGames,     ///< 15 frames per second
        kFilm,      ///< 24 frames per second
        kPALFrame,  ///< 25 frames per second
        kNTSCFrame, ///< 30 frames per second
        kShowScan,  ///< 48 frames per second
        kPALField,  ///< 50 frames per second
        kNTSCField, ///< 60 frames per second
        k2FPS,
        k3FPS,
        k4FPS,
        k5FPS,
        k6FPS,
        k8FPS,
        k10FPS,
        k12FPS,
        k16FPS,
        k20FPS,
        k40FPS,
        k75FPS,
        k80FPS,
        k100FPS,
        k120FPS,
        k125FPS,
        k150FPS,
        k200FPS,
        k240FPS,
        k250FPS,
        k300FPS,
        k375FPS,
        k400FPS,
        k500FPS,
        k600FPS,
        k750FPS,
        k1200FPS,
        k1500FPS,
        k2000FPS,
        k3000FPS,
        k6000FPS,
        k23_976FPS, ///< 24000/1001 frames per second
        k29_97FPS,  ///< 30000/1001 frames per second
        k29_97DF,   ///< 30000/1001 frames per second, drop frame
        k47_952FPS, ///< 48000/1001 frames per second
        k59_94FPS,  ///< 60000/1001 frames per second
        k44100FPS,
        k48000FPS,
        kUserDef,
        kLast
    };

    MTime() = default;
    MTime(double value, Unit unit = kFilm);

    Unit unit() const { return unit_; }
    double value() const { return value_; }
    double as(Unit unit) const;
    MStatus setUnit(Unit unit);
    MStatus setValue(double value);

    /// The time unit of the user interface.
    static Unit uiUnit();
    /// Frames keep their numbers: a key on frame 10 stays on frame 10.
    static MStatus setUIUnit(Unit unit);

    bool operator==(const MTime& other) const;
    bool operator!=(const MTime& other) const { return !(*this == other); }
    bool operator<(const MTime& other) const;
    bool operator>(const MTime& other) const { return other < *this; }
    bool operator<=(const MTime& other) const { return !(other < *this); }
    bool operator>=(const MTime& other) const { return !(*this < other); }

    MTime operator+(const MTime& other) const;
    MTime operator+(double value) const;
    MTime operator-(const MTime& other) const;
    MTime operator-(double value) const;
    MTime operator-() const;
    MTime operator*(double scale) const;
    MTime operator/(double scale) const;
    double operator/(const MTime& other) const;
    MTime& operator+=(const MTime& other);
    MTime& operator+=(double value);
    MTime& operator-=(const MTime& other);
    MTime& operator-=(double value);
    MTime& operator*=(double scale);
    MTime& operator/=(double scale);
    MTime& operator++();
    MTime& operator--();
    MTime operator++(int);
    MTime operator--(int);

private:
    double value_ = 0.0;
    Unit unit_ = kFilm;
};

MTime operator*(double scale, const MTime& time);
/// Writes the time as a plain decimal number of frames in the UI unit, with as many digits as it needs.
std::ostream& operator<<(std::ostream& os, const MTime& time);
