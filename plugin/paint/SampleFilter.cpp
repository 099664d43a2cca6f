#include "paint/SampleFilter.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace vellix {

namespace {

constexpr int MIN_HALF_WIDTH = 2;
constexpr int MAX_HALF_WIDTH = 4;
// Image pixels on each side. A wider window lies within so much of the stroke.
constexpr double SLOW_REACH = 12.0;
// The same where the pen goes on evenly: its shortest step is at least so much of its longest, and the chords
// to both sides, as long as the longest step allows, point the same way.
constexpr double GENTLE_REACH = 72.0;
constexpr double LEAST_EVENNESS = 0.6;
constexpr double COSINE_OF_GENTLE = 0.55;

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
    steps_.clear();
    next_ = 0;
    isFinished_ = false;
}

void SampleFilter::Add(const PenSample& sample) {
    const QPointF step = sample.position - (samples_.empty() ? sample : samples_.back()).position;
    steps_.push_back(std::sqrt(QPointF::dotProduct(step, step))); // far faster than QLineF::length()
    samples_.push_back(sample);
}

/// Whether the pen goes on evenly, and hardly turns, within so many neighbours of the next sample.
bool SampleFilter::IsGentle(int width) const {
    const auto at = [this](int index) { return samples_[std::size_t(index)].position; };
    double shortest = std::numeric_limits<double>::max();
    double longest = 0.0;
    for (int i = next_ - width + 1; i <= next_ + width; ++i) {
        shortest = std::min(shortest, steps_[std::size_t(i)]);
        longest = std::max(longest, steps_[std::size_t(i)]);
    }
    const QPointF in = at(next_) - at(next_ - width);
    const QPointF out = at(next_ + width) - at(next_);
    return shortest >= LEAST_EVENNESS * longest && width * longest <= GENTLE_REACH &&
           QPointF::dotProduct(in, out) >= COSINE_OF_GENTLE * width * width * longest * longest;
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
        reach[0] += steps_[std::size_t(next_ - width + 1)];
        reach[1] += steps_[std::size_t(next_ + width)];
        if (width > MIN_HALF_WIDTH && std::max(reach[0], reach[1]) > SLOW_REACH && !IsGentle(width)) {
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
        steps_.pop_front();
        --next_;
    }
    return true;
}

} // namespace vellix
