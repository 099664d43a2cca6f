#include "scene/AnimCurve.h"

#include <algorithm>
#include <cmath>

namespace lightbox {

namespace {

constexpr double DEGREES = 180.0 / 3.14159265358979323846;
/// The slope of a vertical tangent, in values per frame.
constexpr double MAX_SLOPE = 1e6;
/// Clamped tangents run straight between neighbours whose values differ by less than this.
constexpr double CLAMP_DISTANCE = 0.05;

double Mix(double a, double b, double t) {
    return a + (b - a) * t;
}

} // namespace

double AnimCurve::Segment::ValueAt(double t) const {
    const double s = 1.0 - t;
    return s * s * s * y[0] + 3.0 * s * s * t * y[1] + 3.0 * s * t * t * y[2] + t * t * t * y[3];
}

double AnimCurve::Segment::ParameterAt(double time) const {
    const double length = x[3] - x[0];
    const double wanted = (time - x[0]) / length;
    const double first = (x[1] - x[0]) / length;
    const double second = (x[2] - x[0]) / length;
    constexpr double third = 1.0 / 3.0;
    if (std::abs(first - third) < 1e-12 && std::abs(second - 2.0 * third) < 1e-12) {
        return wanted;
    }
    // The control points lie between the ends, so time increases with the parameter and bisection always
    // converges. Fifty steps reach the precision of a double.
    double low = 0.0;
    double high = 1.0;
    for (int step = 0; step < 50; ++step) {
        const double t = 0.5 * (low + high);
        const double s = 1.0 - t;
        const double at = 3.0 * s * s * t * first + 3.0 * s * t * t * second + t * t * t;
        (at < wanted ? low : high) = t;
    }
    return 0.5 * (low + high);
}

void AnimCurve::SetKeys(std::vector<Key> keys) {
    std::stable_sort(keys.begin(), keys.end(), [](const Key& a, const Key& b) { return a.time < b.time; });
    keys_.clear();
    keys_.reserve(keys.size());
    for (Key& key : keys) {
        if (!keys_.empty() && key.time - keys_.back().time < SAME_TIME) {
            keys_.back() = key;
        } else {
            keys_.push_back(key);
        }
    }
}

std::optional<std::size_t> AnimCurve::Find(double time) const {
    const auto found = std::lower_bound(keys_.begin(), keys_.end(), time - SAME_TIME,
                                        [](const Key& key, double wanted) { return key.time <= wanted; });
    if (found == keys_.end() || found->time - time >= SAME_TIME) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(found - keys_.begin());
}

std::size_t AnimCurve::Insert(const Key& key) {
    if (const std::optional<std::size_t> same = Find(key.time)) {
        keys_[*same] = key;
        return *same;
    }
    const auto place = std::upper_bound(keys_.begin(), keys_.end(), key.time,
                                        [](double time, const Key& other) { return time < other.time; });
    return static_cast<std::size_t>(keys_.insert(place, key) - keys_.begin());
}

std::optional<std::size_t> AnimCurve::InsertOnCurve(double time) {
    if (keys_.empty() || time <= keys_.front().time || time >= keys_.back().time || Find(time)) {
        return std::nullopt;
    }
    const auto next = std::upper_bound(keys_.begin(), keys_.end(), time,
                                       [](double wanted, const Key& key) { return wanted < key.time; });
    const auto from = static_cast<std::size_t>(next - keys_.begin()) - 1;
    Key key;
    key.time = time;
    const TangentType type = keys_[from].outType;
    if (type == TangentType::Step || type == TangentType::StepNext) {
        key.value = EvaluateBetweenKeys(time);
        key.outType = type;
        return Insert(key);
    }
    // De Casteljau's algorithm splits a segment into two of the same shape.
    const Segment segment = SegmentFrom(from);
    const double t = segment.ParameterAt(time);
    const auto cut = [t](const double(&p)[4], double(&left)[2], double(&right)[2]) {
        const double middle = Mix(p[1], p[2], t);
        left[0] = Mix(p[0], p[1], t);
        right[1] = Mix(p[2], p[3], t);
        left[1] = Mix(left[0], middle, t);
        right[0] = Mix(middle, right[1], t);
        return Mix(left[1], right[0], t);
    };
    double leftX[2];
    double leftY[2];
    double rightX[2];
    double rightY[2];
    const double cutX = cut(segment.x, leftX, rightX);
    key.value = cut(segment.y, leftY, rightY);
    key.inType = TangentType::Fixed;
    key.outType = TangentType::Fixed;
    key.in = Stored({3.0 * (cutX - leftX[1]), 3.0 * (key.value - leftY[1])});
    key.out = Stored({3.0 * (rightX[0] - cutX), 3.0 * (rightY[0] - key.value)});
    FixTangent(from, true);
    FixTangent(from + 1, false);
    Key& before = keys_[from];
    before.outType = TangentType::Fixed;
    before.out = Stored({3.0 * (leftX[0] - segment.x[0]), 3.0 * (leftY[0] - segment.y[0])});
    Key& after = keys_[from + 1];
    after.inType = TangentType::Fixed;
    after.in = Stored({3.0 * (segment.x[3] - rightX[1]), 3.0 * (segment.y[3] - rightY[1])});
    return Insert(key);
}

/// Makes a tangent Fixed if its type depends on the neighbouring keys.
void AnimCurve::FixTangent(std::size_t index, bool isIn) {
    Key& key = keys_[index];
    TangentType& type = isIn ? key.inType : key.outType;
    if (type >= TangentType::Spline && type != TangentType::StepNext) {
        (isIn ? key.in : key.out) = Stored(ReachOf(index, isIn));
        type = TangentType::Fixed;
    }
}

void AnimCurve::Remove(std::size_t index) {
    keys_.erase(keys_.begin() + static_cast<std::ptrdiff_t>(index));
}

double AnimCurve::Secant(std::size_t from) const {
    return (keys_[from + 1].value - keys_[from].value) / (keys_[from + 1].time - keys_[from].time);
}

/// Slope of the line between the neighbours; at an end, of the line to the only neighbour.
double AnimCurve::SmoothSlope(std::size_t index) const {
    const std::size_t before = index > 0 ? index - 1 : index;
    const std::size_t after = index + 1 < keys_.size() ? index + 1 : index;
    return before == after
               ? 0.0
               : (keys_[after].value - keys_[before].value) / (keys_[after].time - keys_[before].time);
}

/// Smooth, but flat at maxima, minima and ends. Limited to three times the slope to a neighbour (the bound of
/// Fritsch and Carlson), so that the curve stays within the values of the keys.
double AnimCurve::EasedSlope(std::size_t index) const {
    if (index == 0 || index + 1 == keys_.size()) {
        return 0.0;
    }
    const double before = Secant(index - 1);
    const double after = Secant(index);
    if (before * after <= 0.0) {
        return 0.0;
    }
    const double bound = 3.0 * std::min(std::abs(before), std::abs(after));
    return std::clamp(SmoothSlope(index), -bound, bound);
}

/// Smooth, but straight towards a neighbour of almost the same value.
double AnimCurve::ClampedSlope(std::size_t index, bool isIn) const {
    if (isIn && index > 0 && std::abs(keys_[index].value - keys_[index - 1].value) < CLAMP_DISTANCE) {
        return Secant(index - 1);
    }
    if (!isIn && index + 1 < keys_.size() &&
        std::abs(keys_[index + 1].value - keys_[index].value) < CLAMP_DISTANCE) {
        return Secant(index);
    }
    return SmoothSlope(index);
}

/// In values per frame.
double AnimCurve::SlopeOf(std::size_t index, TangentType type, bool isIn) const {
    switch (type) {
    case TangentType::Linear:
    case TangentType::Fast:
        if (keys_.size() == 1) {
            return 0.0;
        }
        return isIn ? Secant(index > 0 ? index - 1 : 0)
                    : Secant(index + 1 < keys_.size() ? index : index - 1);
    case TangentType::Spline:
        return SmoothSlope(index);
    case TangentType::Clamped:
        return ClampedSlope(index, isIn);
    case TangentType::Plateau:
    case TangentType::Auto:
        return EasedSlope(index);
    default:
        return 0.0;
    }
}

/// The tangent as a vector in frames and values. An out tangent points away from its key, an in tangent
/// towards it. The control point lies at a third of the vector.
AnimCurve::Reach AnimCurve::ReachOf(std::size_t index, bool isIn) const {
    const Key& key = keys_[index];
    const bool hasNeighbour = isIn ? index > 0 : index + 1 < keys_.size();
    double length = 1.0;
    if (hasNeighbour) {
        length = isIn ? key.time - keys_[index - 1].time : keys_[index + 1].time - key.time;
    }
    const TangentType type = isIn ? key.inType : key.outType;
    if (type != TangentType::Fixed) {
        return {length, length * SlopeOf(index, type, isIn)};
    }
    const Tangent& fixed = isIn ? key.in : key.out;
    const Reach reach{std::max(0.0, fixed.x * framesPerSecond), fixed.y * valueFactor};
    if (!isWeighted) {
        const double slope = reach.x > 0.0 ? std::clamp(reach.y / reach.x, -MAX_SLOPE, MAX_SLOPE)
                                           : std::copysign(reach.y != 0.0 ? MAX_SLOPE : 0.0, reach.y);
        return {length, length * slope};
    }
    // The control point must stay within the segment, or time would run backward.
    const double most = 3.0 * length;
    return hasNeighbour && reach.x > most ? Reach{most, reach.y * most / reach.x} : reach;
}

AnimCurve::Tangent AnimCurve::Stored(const Reach& reach) const {
    return {reach.x / framesPerSecond, reach.y / valueFactor};
}

AnimCurve::Segment AnimCurve::SegmentFrom(std::size_t index) const {
    const Key& from = keys_[index];
    const Key& to = keys_[index + 1];
    const Reach out = ReachOf(index, false);
    const Reach in = ReachOf(index + 1, true);
    return {{from.time, from.time + out.x / 3.0, to.time - in.x / 3.0, to.time},
            {from.value, from.value + out.y / 3.0, to.value - in.y / 3.0, to.value}};
}

double AnimCurve::Evaluate(double time) const {
    if (keys_.empty()) {
        return 0.0;
    }
    if (time < keys_.front().time) {
        return EvaluateBeyondKeys(time, true);
    }
    return time > keys_.back().time ? EvaluateBeyondKeys(time, false) : EvaluateBetweenKeys(time);
}

double AnimCurve::EvaluateBetweenKeys(double time) const {
    const auto next = std::upper_bound(keys_.begin(), keys_.end(), time,
                                       [](double wanted, const Key& key) { return wanted < key.time; });
    const auto from = static_cast<std::size_t>(next - keys_.begin()) - 1;
    const Key& key = keys_[from];
    if (next == keys_.end() || time == key.time || key.outType == TangentType::Step) {
        return key.value;
    }
    if (key.outType == TangentType::StepNext) {
        return next->value;
    }
    if (key.outType == TangentType::Linear && next->inType == TangentType::Linear) {
        return Mix(key.value, next->value, (time - key.time) / (next->time - key.time));
    }
    const Segment segment = SegmentFrom(from);
    return segment.ValueAt(segment.ParameterAt(time));
}

double AnimCurve::EvaluateBeyondKeys(double time, bool isBefore) const {
    const Key& end = isBefore ? keys_.front() : keys_.back();
    const Infinity mode = isBefore ? preInfinity : postInfinity;
    switch (mode) {
    case Infinity::Linear: {
        const Reach reach = ReachOf(isBefore ? 0 : keys_.size() - 1, isBefore);
        const double slope = reach.x > 0.0 ? reach.y / reach.x : 0.0;
        return end.value + slope * (time - end.time);
    }
    case Infinity::Cycle:
    case Infinity::CycleWithOffset:
    case Infinity::Oscillate:
        return keys_.size() > 1 ? EvaluateRepeated(time, mode) : end.value;
    default:
        return end.value;
    }
}

double AnimCurve::EvaluateRepeated(double time, Infinity mode) const {
    const Key& first = keys_.front();
    const Key& last = keys_.back();
    const double length = last.time - first.time;
    const double round = std::floor((time - first.time) / length);
    double local = std::clamp(time - round * length, first.time, last.time);
    if (mode == Infinity::Oscillate && std::fmod(round, 2.0) != 0.0) {
        local = first.time + last.time - local;
    }
    const double offset = mode == Infinity::CycleWithOffset ? round * (last.value - first.value) : 0.0;
    return EvaluateBetweenKeys(local) + offset;
}

AnimCurve::Tangent AnimCurve::InTangent(std::size_t index) const {
    return keys_[index].inType == TangentType::Fixed ? keys_[index].in : Stored(ReachOf(index, true));
}

AnimCurve::Tangent AnimCurve::OutTangent(std::size_t index) const {
    return keys_[index].outType == TangentType::Fixed ? keys_[index].out : Stored(ReachOf(index, false));
}

double AnimCurve::InAngle(std::size_t index) const {
    const Reach reach = ReachOf(index, true);
    return std::atan2(reach.y, reach.x) * DEGREES;
}

double AnimCurve::OutAngle(std::size_t index) const {
    const Reach reach = ReachOf(index, false);
    return std::atan2(reach.y, reach.x) * DEGREES;
}

double AnimCurve::InWeight(std::size_t index) const {
    const Reach reach = ReachOf(index, true);
    return isWeighted ? std::hypot(reach.x, reach.y) / 3.0 : 1.0;
}

double AnimCurve::OutWeight(std::size_t index) const {
    const Reach reach = ReachOf(index, false);
    return isWeighted ? std::hypot(reach.x, reach.y) / 3.0 : 1.0;
}

AnimCurve::Tangent AnimCurve::FromAngle(double degrees, double weight) const {
    const double angle = std::clamp(degrees, -90.0, 90.0) / DEGREES;
    return Stored({3.0 * weight * std::cos(angle), 3.0 * weight * std::sin(angle)});
}

void AnimCurve::SetWeighted(bool weighted) {
    if (weighted == isWeighted) {
        return;
    }
    // Read all tangents before the meaning of their length changes.
    std::vector<Key> keys = keys_;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        keys[i].in = Stored(ReachOf(i, true));
        keys[i].out = Stored(ReachOf(i, false));
    }
    keys_ = std::move(keys);
    isWeighted = weighted;
}

} // namespace lightbox
