#pragma once

#include <maya/MMatrix.h>
#include <maya/MSpace.h>
#include <maya/MStatus.h>
#include <maya/MVector.h>

#include <iosfwd>

/// A point in space, with its homogeneous coordinate.
class MPoint {
public:
    MPoint() = default;
    MPoint(const double d[4])
        : x(d[0])
        , y(d[1])
        , z(d[2])
        , w(d[3]) {}
    explicit MPoint(const MVector& vector);
    MPoint(double xx, double yy, double zz = 0.0, double ww = 1.0)
        : x(xx)
        , y(yy)
        , z(zz)
        , w(ww) {}

    double operator[](unsigned int i) const { return i == 0 ? x : i == 1 ? y : i == 2 ? z : w; }
    double& operator[](unsigned int i) { return i == 0 ? x : i == 1 ? y : i == 2 ? z : w; }
    bool operator==(const MPoint& other) const;
    bool operator!=(const MPoint& other) const { return !(*this == other); }
    bool isEquivalent(const MPoint& other, double tolerance = 1.0e-10) const;
    double distanceTo(const MPoint& other) const;

    MVector operator-(const MPoint& other) const;
    MPoint operator+(const MVector& vector) const;
    MPoint operator-(const MVector& vector) const;
    MPoint operator*(const MMatrix& matrix) const;
    /// Divides by w, which becomes 1; a point at infinity stays.
    MPoint& cartesianize();

    static const MPoint origin;

    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    double w = 1.0;
};

std::ostream& operator<<(std::ostream& os, const MPoint& point);
