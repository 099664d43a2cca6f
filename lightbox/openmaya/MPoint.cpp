#include <maya/MMatrix.h>
#include <maya/MPoint.h>
#include <maya/MVector.h>

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

MPoint::MPoint(const MVector& vector)
    : x(vector.x)
    , y(vector.y)
    , z(vector.z) {}

MVector MPoint::operator-(const MPoint& other) const {
    return MVector(x - other.x, y - other.y, z - other.z);
}

MPoint MPoint::operator+(const MVector& vector) const {
    return MPoint(x + vector.x * w, y + vector.y * w, z + vector.z * w, w);
}

MPoint MPoint::operator-(const MVector& vector) const {
    return *this + -vector;
}

MPoint MPoint::operator*(const MMatrix& matrix) const {
    MPoint result;
    for (unsigned int column = 0; column < 4; ++column) {
        result[column] =
            x * matrix(0, column) + y * matrix(1, column) + z * matrix(2, column) + w * matrix(3, column);
    }
    return result;
}

MPoint& MPoint::cartesianize() {
    if (w != 0.0 && w != 1.0) {
        *this = MPoint(x / w, y / w, z / w);
    }
    return *this;
}

std::ostream& operator<<(std::ostream& os, const MPoint& point) {
    return os << '[' << point.x << ", " << point.y << ", " << point.z << ", " << point.w << ']';
}
