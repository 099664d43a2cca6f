#include "tools/LateSamples.h"

#include <algorithm>

namespace vellix {

namespace {

// In 8 ms a hand leaves the chord between two samples by less than this.
constexpr double TOLERANCE = 2.0;

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

} // namespace

int CountBeforeRelease(const QPoint& last, const QList<QPoint>& late, const QPoint& release) {
    int nearest = 0;
    double least = SquaredDistance(release, last, last);
    for (int i = late.size(); i > 0; --i) {
        const QPoint& from = i > 1 ? late.at(i - 2) : last;
        const QPoint& to = late.at(i - 1);
        if (SquaredDistance(release, from, to) <= TOLERANCE * TOLERANCE) {
            return to == release ? i : i - 1;
        }
        const double distance = SquaredDistance(release, to, to);
        if (distance < least) {
            least = distance;
            nearest = i;
        }
    }
    return nearest;
}

} // namespace vellix
