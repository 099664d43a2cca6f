#include "tools/LateSamples.h"

#include "tools/EventClock.h"

#include <algorithm>
#include <cstddef>

namespace vellix {

namespace {

// In 8 ms a hand leaves the chord between two samples by less than this.
constexpr double TOLERANCE = 2.0;
// The time of a release is known to be at most so much too late, in milliseconds.
constexpr qint64 TIME_TOLERANCE = 50;

double Squared(double x, double y) {
    return x * x + y * y;
}

/// The squared distance of a point from the line between two others.
double SquaredDistance(const QPoint& point, const QPoint& from, const QPoint& to) {
    const double dx = to.x() - from.x();
    const double dy = to.y() - from.y();
    const double px = point.x() - from.x();
    const double py = point.y() - from.y();
    const double length = Squared(dx, dy);
    const double along = length > 0.0 ? std::min(std::max((px * dx + py * dy) / length, 0.0), 1.0) : 0.0;
    return Squared(px - along * dx, py - along * dy);
}

/// Where the path passes the place for the last time: the number of samples before it. -1 if it never does.
int LastPassing(const QPoint& last, const QList<QPoint>& late, const QPoint& place) {
    for (int i = late.size(); i > 0; --i) {
        const QPoint& from = i > 1 ? late.at(i - 2) : last;
        const QPoint& to = late.at(i - 1);
        if (SquaredDistance(place, from, to) <= TOLERANCE * TOLERANCE) {
            return to == place ? i : i - 1;
        }
    }
    return -1;
}

} // namespace

int CountBeforeRelease(const QPoint& last, const QList<QPoint>& late, const QPoint& release) {
    const int passing = LastPassing(last, late, release);
    if (passing >= 0) {
        return passing;
    }
    int nearest = 0;
    double least = SquaredDistance(release, last, last);
    for (int i = late.size(); i > 0; --i) {
        const double distance = SquaredDistance(release, late.at(i - 1), late.at(i - 1));
        if (distance < least) {
            least = distance;
            nearest = i;
        }
    }
    return nearest;
}

int CountBeforeRelease(const std::vector<DatedSample>& samples, const QPoint& release, qint64 releaseTime) {
    const int all = static_cast<int>(samples.size());
    if (all <= 2 || releaseTime == EventClock::UNKNOWN || samples.back().time <= releaseTime) {
        return all;
    }
    const auto firstAfter = [&samples](qint64 time) {
        const auto found = std::find_if(samples.begin(), samples.end(),
                                        [time](const DatedSample& sample) { return sample.time > time; });
        return static_cast<int>(found - samples.begin());
    };
    const int begin = std::max(firstAfter(releaseTime - TIME_TOLERANCE), 1);
    const int end = std::max(firstAfter(releaseTime), 1) + 1; // the path to this sample passes the place
    QList<QPoint> about;
    for (int i = begin; i < end; ++i) {
        about.append(samples[static_cast<std::size_t>(i)].position);
    }
    const int passing = LastPassing(samples[static_cast<std::size_t>(begin) - 1].position, about, release);
    return passing < 0 ? all : std::max(begin + passing, 2);
}

} // namespace vellix
