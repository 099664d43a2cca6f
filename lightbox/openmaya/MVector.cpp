#include "openmaya/ImathConversion.h"

#include <maya/MStatus.h>
#include <maya/MVector.h>

#include <Imath/ImathVec.h>
#include <cmath>
#include <ostream>

const MVector MVector::zero;
const MVector MVector::xAxis(1.0, 0.0, 0.0);
const MVector MVector::yAxis(0.0, 1.0, 0.0);
const MVector MVector::zAxis(0.0, 0.0, 1.0);

MVector::MVector(const MPoint& point)
    : x(point.x)
    , y(point.y)
    , z(point.z) {}

MVector MVector::operator^(const MVector& other) const {
    return MVector(y * other.z - z * other.y, z * other.x - x * other.z, x * other.y - y * other.x);
}

MVector MVector::operator*(const MMatrix& matrix) const {
    Imath::V3d result;
    lightbox::ToImath(matrix).multDirMatrix(Imath::V3d(x, y, z), result);
    return lightbox::ToVector(result);
}

double MVector::length() const {
    return std::sqrt(*this * *this);
}

MVector MVector::normal() const {
    MVector unit = *this;
    unit.normalize();
    return unit;
}

MStatus MVector::normalize() {
    const double size = length();
    if (size > 0.0) {
        *this = *this / size;
    }
    return MS::kSuccess;
}

bool MVector::isEquivalent(const MVector& other, double tolerance) const {
    return (*this - other).length() <= tolerance;
}

MStatus MVector::get(double dest[3]) const {
    dest[0] = x;
    dest[1] = y;
    dest[2] = z;
    return MS::kSuccess;
}

std::ostream& operator<<(std::ostream& os, const MVector& vector) {
    return os << '[' << vector.x << ", " << vector.y << ", " << vector.z << ']';
}
