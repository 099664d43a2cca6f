#pragma once

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace lightbox {

/// Tangent types of a key, with the numbers that scene files use.
enum class TangentType {
    Fixed = 1,
    Linear = 2,
    Flat = 3,
    Step = 5,
    Slow = 6,
    Fast = 7,
    Spline = 9,
    Clamped = 10,
    Plateau = 16,
    StepNext = 17,
    Auto = 18
};

/// Extrapolation before the first key and after the last one, with the numbers that scene files use.
enum class Infinity { Constant = 0, Linear = 1, Cycle = 3, CycleWithOffset = 4, Oscillate = 5 };

/// The default tangents of new keys and curves.
struct TangentDefaults {
    TangentType in = TangentType::Auto;
    TangentType out = TangentType::Auto;
    bool weighted = false;
};

/// A keyframe animation curve: keys in the order of their times, and the interpolation between and beyond
/// them. Times are frames (plain numbers for a curve not driven by time); values are in the units the user
/// sees.
class AnimCurve {
public:
    /// A tangent in stored form: x in seconds, y in centimetres, radians or plain numbers. The Bezier control
    /// point beside the key lies at a third of it. Without weights only its direction counts.
    struct Tangent {
        double x = 1.0;
        double y = 0.0;
        bool operator==(const Tangent& other) const { return x == other.x && y == other.y; }
    };

    struct Key {
        double time = 0.0;
        double value = 0.0;
        TangentType inType = TangentType::Auto;
        TangentType outType = TangentType::Auto;
        /// Used only where the tangent type is Fixed.
        Tangent in;
        Tangent out;
        /// Whether both tangents rotate together; areWeightsLocked: whether they stretch together.
        bool isLocked = true;
        bool areWeightsLocked = false;
        bool isBreakdown = false;
    };

    /// Two times closer than this belong to the same key.
    static constexpr double SAME_TIME = 1e-4;

    const std::vector<Key>& Keys() const { return keys_; }
    /// Replaces all keys, given in any order. Of several keys at one time the last one wins.
    void SetKeys(std::vector<Key> keys);
    /// The index of the key at `time`; null when there is none.
    std::optional<std::size_t> Find(double time) const;
    /// Adds a key, or replaces the key at the same time. Returns its index.
    std::size_t Insert(const Key& key);
    /// Adds a key on the curve without changing its shape; the neighbouring tangents become Fixed. Returns
    /// its index; null outside the range of keys and where a key exists already.
    std::optional<std::size_t> InsertOnCurve(double time);
    Key& At(std::size_t index) { return keys_[index]; }
    void Remove(std::size_t index);

    /// The curve's value at `time`; 0 without keys.
    double Evaluate(double time) const;

    /// The tangents computed from their types, in stored form.
    Tangent InTangent(std::size_t index) const;
    Tangent OutTangent(std::size_t index) const;
    /// Degrees, for a graph where one frame is as long as one unit of value.
    double InAngle(std::size_t index) const;
    double OutAngle(std::size_t index) const;
    /// The distance from key to control point in the same graph; 1 without weights.
    double InWeight(std::size_t index) const;
    double OutWeight(std::size_t index) const;
    /// The stored form of a tangent with that angle (degrees, same graph) and weight.
    Tangent FromAngle(double degrees, double weight) const;
    /// Switches weighted tangents on or off. Switching on gives every tangent the length that keeps the
    /// curve's shape.
    void SetWeighted(bool weighted);

    bool isWeighted = false;
    Infinity preInfinity = Infinity::Constant;
    Infinity postInfinity = Infinity::Constant;
    /// Factors from a stored tangent's x and y to frames and to values in the user's units.
    double framesPerSecond = 24.0;
    double valueFactor = 1.0;

private:
    /// The cubic Bezier segment between two keys: four control points in frames and values.
    struct Segment {
        double x[4];
        double y[4];
        double ParameterAt(double time) const;
        double ValueAt(double parameter) const;
    };
    /// A tangent vector in frames and values; x is never negative.
    struct Reach {
        double x;
        double y;
    };

    void FixTangent(std::size_t index, bool isIn);
    double Secant(std::size_t from) const;
    double SmoothSlope(std::size_t index) const;
    double EasedSlope(std::size_t index) const;
    double ClampedSlope(std::size_t index, bool isIn) const;
    double SlopeOf(std::size_t index, TangentType type, bool isIn) const;
    Reach ReachOf(std::size_t index, bool isIn) const;
    Tangent Stored(const Reach& reach) const;
    Segment SegmentFrom(std::size_t index) const;
    double EvaluateBetweenKeys(double time) const;
    double EvaluateBeyondKeys(double time, bool isBefore) const;
    double EvaluateRepeated(double time, Infinity mode) const;

    std::vector<Key> keys_;
};

} // namespace lightbox
