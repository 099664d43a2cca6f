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

// A corner: the direction changes by more than 60 degrees, and next to it the pen is slower than this part of
// its speed shortly before or after. Directions are those over so many image pixels, or samples at most.
constexpr double COSINE_OF_CORNER = 0.5;
constexpr double SLOW = 0.4;
constexpr double DIRECTION_REACH = 8.0;
constexpr int DIRECTION_SAMPLES = 3;
// Shorter ways have no direction: they may be the hand's trembling. Image pixels.
constexpr double LEAST_WAY = 3.0;
// Samples are 8 ms apart, but some come late, and the next one then early. Milliseconds.
constexpr double LEAST_PERIOD = 4.0;

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
    Kept kept;
    static_cast<PenSample&>(kept) = sample;
    kept.step = samples_.empty() ? 0.0 : Length(sample.position - samples_.back().position);
    samples_.push_back(kept);
}

/// Whether the pen goes on evenly, and hardly turns, within so many neighbours of the next sample.
bool SampleFilter::IsGentle(int width) const {
    const auto at = [this](int index) { return samples_[std::size_t(index)].position; };
    double shortest = std::numeric_limits<double>::max();
    double longest = 0.0;
    for (int i = next_ - width + 1; i <= next_ + width; ++i) {
        shortest = std::min(shortest, samples_[std::size_t(i)].step);
        longest = std::max(longest, samples_[std::size_t(i)].step);
    }
    const QPointF in = at(next_) - at(next_ - width);
    const QPointF out = at(next_ + width) - at(next_);
    return shortest >= LEAST_EVENNESS * longest && width * longest <= GENTLE_REACH &&
           QPointF::dotProduct(in, out) >= COSINE_OF_GENTLE * width * width * longest * longest;
}

/// From a sample forward (1) or back (-1), to the sample with which the way has a direction. `isKnown`
/// becomes false if later samples may still change that.
QPointF SampleFilter::WayFrom(int index, int direction, bool& isKnown) const {
    const int count = static_cast<int>(samples_.size());
    QPointF way;
    for (int i = 1; i <= DIRECTION_SAMPLES; ++i) {
        const int other = index + direction * i;
        if (other < 0 || other >= count) {
            isKnown = isKnown && (other < 0 || isFinished_);
            return way;
        }
        way = samples_[std::size_t(other)].position - samples_[std::size_t(index)].position;
        if (Length(way) >= DIRECTION_REACH) {
            return way;
        }
    }
    return way;
}

/// Of the way to a sample, image pixels a millisecond. Samples come unevenly, and none while the pen rests.
double SampleFilter::Speed(int index) const {
    const double time = samples_[std::size_t(index)].time - samples_[std::size_t(index - 1)].time;
    return samples_[std::size_t(index)].step / std::max(time, LEAST_PERIOD);
}

bool SampleFilter::IsSlowAt(int index) const {
    const int last = static_cast<int>(samples_.size()) - 1;
    double fastest = 0.0;
    for (int i = std::max(1, index - DIRECTION_SAMPLES + 1); i <= std::min(last, index + DIRECTION_SAMPLES);
         ++i) {
        fastest = std::max(fastest, Speed(i));
    }
    return std::min(Speed(index), Speed(index + 1)) < SLOW * fastest;
}

SampleFilter::Corner SampleFilter::CornerAt(int index) {
    Corner& corner = samples_[std::size_t(index)].corner;
    if (corner == Corner::Unknown) {
        corner = FindCorner(index);
    }
    return corner;
}

SampleFilter::Corner SampleFilter::FindCorner(int index) const {
    bool isKnown = true;
    const QPointF in = -WayFrom(index, -1, isKnown);
    const QPointF out = WayFrom(index, 1, isKnown);
    if (!isKnown) {
        return Corner::Unknown;
    }
    const double lengths[] = {Length(in), Length(out)};
    const bool turns = std::min(lengths[0], lengths[1]) >= LEAST_WAY &&
                       QPointF::dotProduct(in, out) <= COSINE_OF_CORNER * lengths[0] * lengths[1];
    return turns && IsSlowAt(index) ? Corner::Yes : Corner::No;
}

/// The neighbours on each side that count for the next sample; -1 while it is not known.
int SampleFilter::HalfWidth() {
    const int count = static_cast<int>(samples_.size());
    const int after = count - 1 - next_;
    if (after < 0) {
        return -1;
    }
    const int most = std::min(MAX_HALF_WIDTH, isFinished_ ? std::min(next_, after) : next_);
    double reach[2] = {0.0, 0.0};
    for (int width = 1; width <= most; ++width) {
        for (const int side : {-1, 1}) {
            const Corner corner = CornerAt(next_ + side * (width - 1));
            if (corner == Corner::Unknown && width <= MIN_HALF_WIDTH) {
                return -1; // wider windows are only taken where the pen is slow or goes straight on
            }
            if (corner == Corner::Yes) {
                return width - 1;
            }
        }
        if (width > after) {
            return -1;
        }
        const int first = next_ - width + 1;
        const int last = next_ + width;
        reach[0] += samples_[std::size_t(first)].step;
        reach[1] += samples_[std::size_t(last)].step;
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
    filtered.isCorner = halfWidth == 0 && CornerAt(next_) == Corner::Yes;
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
