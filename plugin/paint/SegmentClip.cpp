#include "paint/SegmentClip.h"

#include <algorithm>
#include <cmath>

namespace vellix {

namespace {

bool Within(const QPoint& point, int margin) {
    return point.x() >= -margin && point.x() < IMAGE_WIDTH + margin && point.y() >= -margin &&
           point.y() < IMAGE_WIDTH + margin;
}

// Narrows [enter, leave], the segment's parameter range inside the bounds, by one axis (Liang and Barsky, "A
// New Concept and Method for Line Clipping", 1984).
void NarrowByAxis(double start, double delta, double low, double high, double& enter, double& leave) {
    if (delta == 0.0) {
        if (start < low || start > high) {
            leave = -1.0;
        }
        return;
    }
    const double atLow = (low - start) / delta;
    const double atHigh = (high - start) / delta;
    enter = std::max(enter, std::min(atLow, atHigh));
    leave = std::min(leave, std::max(atLow, atHigh));
}

} // namespace

bool SegmentClip::Cut() {
    const double x = from.x();
    const double y = from.y();
    const double dx = double(to.x()) - x;
    const double dy = double(to.y()) - y;
    const double low = -CUT_MARGIN;
    const double high = IMAGE_WIDTH - 1 + CUT_MARGIN;
    double enter = 0.0;
    double leave = 1.0;
    NarrowByAxis(x, dx, low, high, enter, leave);
    NarrowByAxis(y, dy, low, high, enter, leave);
    if (enter > leave) {
        return false;
    }
    if (Within(from, WALK_MARGIN) && Within(to, WALK_MARGIN)) {
        return true;
    }
    const auto at = [&](double t) {
        return QPoint(int(std::lround(x + t * dx)), int(std::lround(y + t * dy)));
    };
    from = at(enter);
    to = at(leave);
    const double opacity = opacityFrom;
    const double change = double(opacityTo) - opacity;
    opacityFrom = float(opacity + enter * change);
    opacityTo = float(opacity + leave * change);
    return true;
}

} // namespace vellix
