#include <maya/MPoint.h>

#include <cmath>
#include <ostream>

const MPoint MPoint::origin;

bool MPoint::operator==(const MPoint& other) const {
    return x == other.x && y == other.y && z == other.z && w == other.w;
}

bool MPoint::isEquivalent(const MPoint& other, double tolerance) const {
    return std::abs(x - other.x) <= tolerance && std::abs(y - other.y) <= tolerance &&
           std::abs(z - other.z) <= tolerance && std::abs(w - other.w) <= tolerance;
}

double MPoint::distanceTo(const MPoint& other) const {
    return std::sqrt((x - other.x) * (x - other.x) + (y - other.y) * (y - other.y) +
                     (z - other.z) * (z - other.z));
}

std::ostream& operator<<(std::ostream& os, const MPoint& point) {
    return os << '[' << point.x << ", " << point.y << ", " << point.z << ", " << point.w << ']';
}
