#pragma once

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace lightbox {

/// How a key's tangent is found, with the numbers that scene files use.
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

/// What a curve does before its first and behind its last key, with the numbers that scene files use.
enum class Infinity { Constant = 0, Linear = 1, Cycle = 3, CycleWithOffset = 4, Oscillate = 5 };

/// The tangents that new keys and curves get.
struct TangentDefaults {
    TangentType in = TangentType::Auto;
    TangentType out = TangentType::Auto;
    bool weighted = false;
};

/// A key frame animation curve: keys in the order of their times, and what lies between and around them.
/// Times are frames (or plain numbers, for curves that are not over time), values as the user sees them.
class AnimCurve {
public:
    /// A tangent as it is stored: seconds, and centimetres, radians or plain numbers. A third of it reaches
    /// to the control point of the curve piece beside its key; without weights only its direction counts.
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
        /// Used where the type is Fixed.
        Tangent in;
        Tangent out;
        /// Whether the tangents turn, and stretch, together.
        bool isLocked = true;
        bool areWeightsLocked = false;
        bool isBreakdown = false;
    };

    /// Times that are nearer than this are the same key's.
    static constexpr double SAME_TIME = 1e-4;

    const std::vector<Key>& Keys() const { return keys_; }
    /// Any order; of keys at the same time the last one stays.
    void SetKeys(std::vector<Key> keys);
    /// The place of the key at that time.
    std::optional<std::size_t> Find(double time) const;
    /// Adds a key, or takes the place of the one at its time; answers its place.
    std::size_t Insert(const Key& key);
    /// Adds a key on the curve without changing its shape, which makes the tangents beside it fixed. Null
    /// outside the keys, and where a key is already.
    std::optional<std::size_t> InsertOnCurve(double time);
    Key& At(std::size_t index) { return keys_[index]; }
    void Remove(std::size_t index);

    /// The value at that time; 0 without keys.
    double Evaluate(double time) const;

    /// The tangents as they come out of their types, stored form.
    Tangent InTangent(std::size_t index) const;
    Tangent OutTangent(std::size_t index) const;
    /// Degrees, as an editor that shows frames and values one to one would draw them.
    double InAngle(std::size_t index) const;
    double OutAngle(std::size_t index) const;
    /// The distance to the control point in the same picture; 1 without weights.
    double InWeight(std::size_t index) const;
    double OutWeight(std::size_t index) const;
    /// The stored form of a tangent of that angle and weight.
    Tangent FromAngle(double degrees, double weight) const;
    /// Gives every tangent the length that leaves the shape as it is, and makes it count; or ends that.
    void SetWeighted(bool weighted);

    bool isWeighted = false;
    Infinity preInfinity = Infinity::Constant;
    Infinity postInfinity = Infinity::Constant;
    /// What a stored tangent's x and y are multiplied with to be frames and values as the user sees them.
    double framesPerSecond = 24.0;
    double valueFactor = 1.0;

private:
    /// A cubic piece between two keys, by its four control points in frames and values.
    struct Piece {
        double x[4];
        double y[4];
        double ParameterAt(double time) const;
        double ValueAt(double parameter) const;
    };
    /// A direction in frames and values; x is never negative.
    struct Reach {
        double x;
        double y;
    };

    void Freeze(std::size_t index, bool isIn);
    double Secant(std::size_t from) const;
    double SmoothSlope(std::size_t index) const;
    double EasedSlope(std::size_t index) const;
    double ClampedSlope(std::size_t index, bool isIn) const;
    double SlopeOf(std::size_t index, TangentType type, bool isIn) const;
    Reach ReachOf(std::size_t index, bool isIn) const;
    Tangent Stored(const Reach& reach) const;
    Piece PieceFrom(std::size_t index) const;
    double Inside(double time) const;
    double Outside(double time, bool isBefore) const;
    double Repeated(double time, Infinity mode) const;

    std::vector<Key> keys_;
};

} // namespace lightbox
