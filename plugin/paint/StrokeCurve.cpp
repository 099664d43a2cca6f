#include "paint/StrokeCurve.h"

#include <QLineF>

#include <algorithm>
#include <cmath>

namespace vellix {

namespace {

// The next point lies from LEAST to MOST of the brush's size further on, and at least so many image pixels.
constexpr double LEAST = 0.2;
constexpr double MOST = 0.3;
constexpr double LEAST_PIXELS = 3.0;
constexpr double MOST_PIXELS = 6.0;
constexpr double RESIZE_PIXELS = 1.5;  // earlier, where the size changes
constexpr double WALKED_AT_ONCE = 0.5; // image pixels
constexpr double WALKED_AT_ONCE_FAR = 1.0;
constexpr double MOST_STEPS = 40000.0; // between two samples

/// From a point to the next one, image pixels.
double LeastWay(double size) {
    return std::max(LEAST_PIXELS, LEAST * size);
}

double Distance(const PenSample& a, const PenSample& b) {
    return Length(b.position - a.position);
}

double Between(double from, double to, double share) {
    return from + (to - from) * share;
}

// The curve's tangent at `at`, for a parameter that runs by the root of the length of each chord
// (centripetal).
QPointF Tangent(const PenSample& before, const PenSample& at, const PenSample& after) {
    const double in = std::sqrt(Distance(before, at));
    const double out = std::sqrt(Distance(at, after));
    return (at.position - before.position) / in - (after.position - before.position) / (in + out) +
           (after.position - at.position) / out;
}

} // namespace

/// The way from one sample to the next: Hermite's cubic, with u from 0 to 1.
class StrokeCurve::Segment {
public:
    Segment(const PenSample& from, const PenSample& to, const QPointF& leaving, const QPointF& arriving)
        : from_(from)
        , to_(to)
        , linear_(leaving)
        , square_(3.0 * (to.position - from.position) - 2.0 * leaving - arriving)
        , cubic_(leaving + arriving - 2.0 * (to.position - from.position)) {}

    QPointF PositionAt(double u) const {
        return {from_.position.x() + u * (linear_.x() + u * (square_.x() + u * cubic_.x())),
                from_.position.y() + u * (linear_.y() + u * (square_.y() + u * cubic_.y()))};
    }
    double SizeAt(double u) const { return Between(from_.size, to_.size, u); }
    PenSample SampleAt(double u, const QPointF& position) const {
        return {position, SizeAt(u), Between(from_.opacity, to_.opacity, u),
                Between(from_.hardness, to_.hardness, u)};
    }

private:
    const PenSample& from_;
    const PenSample& to_;
    const QPointF linear_;
    const QPointF square_;
    const QPointF cubic_;
};

void StrokeCurve::Reset() {
    *this = StrokeCurve();
}

void StrokeCurve::Add(const PenSample& sample, QList<StrokePoint>& points) {
    if (samples_.empty()) {
        samples_.push_back(sample);
        Append(sample, points);
        return;
    }
    if (sample.position == samples_.back().position) {
        return;
    }
    samples_.push_back(sample);
    if (samples_.size() > 2) {
        AddSegment(samples_.size() - 3, points);
    }
    if (samples_.size() > 3) {
        samples_.pop_front();
    }
}

void StrokeCurve::Finish(QList<StrokePoint>& points) {
    if (samples_.size() > 1) {
        AddSegment(samples_.size() - 2, points);
    }
    const StrokePoint* const last = points.isEmpty() ? nullptr : &points.last();
    if (!samples_.empty() && !(last && last->position == samples_.back().position.toPoint())) {
        Append(samples_.back(), points);
    }
    samples_.clear();
}

/// Adds the curve from one of samples_ to the next. The curve ends in the direction of its chord where it has
/// no neighbour and at a corner.
void StrokeCurve::AddSegment(std::size_t from, QList<StrokePoint>& points) {
    const PenSample& a = samples_[from];
    const PenSample& b = samples_[from + 1];
    const PenSample* const before = from > 0 && !isCorner_ ? &samples_[from - 1] : nullptr;
    const PenSample* after = from + 2 < samples_.size() ? &samples_[from + 2] : nullptr;
    isCorner_ = b.isCorner;
    after = isCorner_ ? nullptr : after;

    const double length = Distance(a, b);
    const double parameter = std::sqrt(length);
    const QPointF chord = b.position - a.position;
    const QPointF leaving = before ? Tangent(*before, a, b) * parameter : chord;
    const QPointF arriving = after ? Tangent(a, b, *after) * parameter : chord;
    const Segment segment(a, b, leaving, arriving);
    const double farStep = std::max(WALKED_AT_ONCE_FAR / length, 1.0 / MOST_STEPS);
    const double nearStep = std::max(WALKED_AT_ONCE / length, 1.0 / MOST_STEPS);
    QPointF last = a.position;
    for (double u = 0.0; u < 1.0;) {
        // Far from the next point only the length of the way matters.
        const bool isFar = walked_ + WALKED_AT_ONCE_FAR < LeastWay(segment.SizeAt(u));
        u = std::min(1.0, u + (isFar ? farStep : nearStep));
        const QPointF position = segment.PositionAt(u);
        Visit(segment, u, position, position - last, points);
        last = position;
    }
    if (isCorner_) {
        Append(b, points);
    }
}

void StrokeCurve::Visit(const Segment& segment, double u, const QPointF& position, const QPointF& step,
                        QList<StrokePoint>& points) {
    const double length = Length(step);
    walked_ += length;
    const double size = segment.SizeAt(u);
    if (walked_ >= RESIZE_PIXELS && std::abs(size - size_) >= 1.0) {
        Append(segment.SampleAt(u, position), points);
        return;
    }
    if (walked_ < LeastWay(size)) {
        return;
    }
    // The step is closest to the centre of the pixel so far before its end.
    const QPointF centre = position.toPoint();
    const double ahead =
        length > 0.0 ? QPointF::dotProduct(position - centre, step) / (length * length) : 0.0;
    const QPointF closest = position - qBound(0.0, ahead, 1.0) * step;
    const QPointF rounding = closest - centre;
    const double distance = QPointF::dotProduct(rounding, rounding);
    if (distance < distance_) {
        distance_ = distance;
        best_ = segment.SampleAt(u, closest);
    }
    if (walked_ >= std::max(MOST_PIXELS, MOST * size)) {
        Append(best_, points);
        walked_ = Length(position - best_.position);
    }
}

void StrokeCurve::Append(const PenSample& place, QList<StrokePoint>& points) {
    StrokePoint point;
    point.size = size_ = static_cast<qint32>(std::lround(place.size));
    point.opacity = static_cast<float>(place.opacity);
    point.hardness = static_cast<float>(place.hardness);
    point.position = place.position.toPoint();
    points.append(point);
    walked_ = 0.0;
    distance_ = 2.0;
}

} // namespace vellix
