#pragma once

#include <maya/MApiNamespace.h>

#include <iosfwd>

/// A direction or displacement in space.
class MVector {
public:
    MVector() = default;
    explicit MVector(const MPoint& point);
    explicit MVector(const double d[3])
        : x(d[0])
        , y(d[1])
        , z(d[2]) {}
    MVector(double xx, double yy, double zz = 0.0)
        : x(xx)
        , y(yy)
        , z(zz) {}

    double operator()(unsigned int i) const { return (*this)[i]; }
    double operator[](unsigned int i) const { return i == 0 ? x : i == 1 ? y : z; }
    double& operator[](unsigned int i) { return i == 0 ? x : i == 1 ? y : z; }

    MVector operator+(const MVector& other) const { return MVector(x + other.x, y + other.y, z + other.z); }
    MVector operator-(const MVector& other) const { return MVector(x - other.x, y - other.y, z - other.z); }
    MVector operator-() const { return MVector(-x, -y, -z); }
    MVector operator*(double factor) const { return MVector(x * factor, y * factor, z * factor); }
    MVector operator/(double divisor) const { return MVector(x / divisor, y / divisor, z / divisor); }
    /// Dot product.
    double operator*(const MVector& other) const { return x * other.x + y * other.y + z * other.z; }
    /// Cross product.
    MVector operator^(const MVector& other) const;
    /// The direction transformed by the matrix, without its translation.
    MVector operator*(const MMatrix& matrix) const;
    bool operator==(const MVector& other) const { return x == other.x && y == other.y && z == other.z; }
    bool operator!=(const MVector& other) const { return !(*this == other); }

    double length() const;
    /// The same direction with length 1; a null vector stays null.
    MVector normal() const;
    MStatus normalize();
    bool isEquivalent(const MVector& other, double tolerance = 1.0e-10) const;
    MStatus get(double dest[3]) const;

    static const MVector zero;
    static const MVector xAxis;
    static const MVector yAxis;
    static const MVector zAxis;

    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

std::ostream& operator<<(std::ostream& os, const MVector& vector);
