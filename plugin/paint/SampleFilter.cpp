#include "paint/SampleFilter.h"

#include <QLineF>

#include <algorithm>
#include <cmath>

namespace vellix {

namespace {

constexpr int MIN_HALF_WIDTH = 2;
constexpr int MAX_HALF_WIDTH = 4;
// Image pixels on each side. A wider window lies within so much of the stroke.
constexpr double SLOW_REACH = 12.0;
// The same where the stroke is an arc of less than 27 degrees, and no longer than its chords by more than
// this.
constexpr double GENTLE_REACH = 60.0;
constexpr double COSINE_OF_GENTLE = 0.89;
constexpr double MOST_DETOUR = 1.03;

// The weight of a sample `offset` samples from the middle of a window, in the value at its middle of the
// parabola of least squares (Madden, "Comments on the Savitzky-Golay Convolution Method", 1978).
double Weight(int halfWidth, int offset) {
    const double m = halfWidth;
    return 3.0 * (3.0 * m * m + 3.0 * m - 1.0 - 5.0 * offset * offset) /
           ((2.0 * m + 3.0) * (2.0 * m + 1.0) * (2.0 * m - 1.0));
}

} // namespace

void SampleFilter::Reset() {
    samples_.clear();
    next_ = 0;
    isFinished_ = false;
}

void SampleFilter::Add(const PenSample& sample) {
    samples_.push_back(sample);
}

/// Whether the stroke hardly bends within so many neighbours of the next sample, on each side of which it is
/// `before` and `after` image pixels long.
bool SampleFilter::IsGentle(int width, double before, double after) const {
    const QPointF middle = samples_[std::size_t(next_)].position;
    const QPointF in = middle - samples_[std::size_t(next_ - width)].position;
    const QPointF out = samples_[std::size_t(next_ + width)].position - middle;
    const double chordIn = std::hypot(in.x(), in.y());
    const double chordOut = std::hypot(out.x(), out.y());
    return before <= MOST_DETOUR * chordIn && after <= MOST_DETOUR * chordOut &&
           QPointF::dotProduct(in, out) >= COSINE_OF_GENTLE * chordIn * chordOut;
}

/// The neighbours on each side that count for the next sample; -1 while it is not known.
int SampleFilter::HalfWidth() const {
    const int count = static_cast<int>(samples_.size());
    const int after = count - 1 - next_;
    if (after < 0) {
        return -1;
    }
    const int most = std::min(MAX_HALF_WIDTH, isFinished_ ? std::min(next_, after) : next_);
    double reach[2] = {0.0, 0.0};
    for (int width = 1; width <= most; ++width) {
        if (width > after) {
            return -1;
        }
        for (const int side : {0, 1}) {
            const int outer = next_ + (side == 0 ? -width : width);
            const int inner = outer + (side == 0 ? 1 : -1);
            reach[side] += QLineF(samples_[std::size_t(outer)].position, samples_[inner].position).length();
        }
        const double longest = std::max(reach[0], reach[1]);
        if (width > MIN_HALF_WIDTH && longest > SLOW_REACH &&
            !(longest <= GENTLE_REACH && IsGentle(width, reach[0], reach[1]))) {
            return width - 1;
        }
    }
    return most;
}

bool SampleFilter::Take(PenSample& filtered) {
    const int halfWidth = HalfWidth();
    if (halfWidth < 0) {
        return false;
    }
    filtered = samples_[next_];
    if (halfWidth > 1) {
        filtered.position = QPointF();
        for (int offset = -halfWidth; offset <= halfWidth; ++offset) {
            filtered.position += Weight(halfWidth, offset) * samples_[next_ + offset].position;
        }
    }
    ++next_;
    if (next_ > MAX_HALF_WIDTH) {
        samples_.pop_front();
        --next_;
    }
    return true;
}

} // namespace vellix
