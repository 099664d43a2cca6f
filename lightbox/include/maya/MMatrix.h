#pragma once

#include <maya/MApiNamespace.h>

#include <iosfwd>

/// A 4 by 4 matrix for row vectors: point * matrix, with the translation in the last row. The default is the
/// identity.
class MMatrix {
public:
    MMatrix() = default;
    explicit MMatrix(const double m[4][4]);
    explicit MMatrix(const float m[4][4]);

    double operator()(unsigned int row, unsigned int col) const { return matrix[row][col]; }
    double& operator()(unsigned int row, unsigned int col) { return matrix[row][col]; }
    const double* operator[](unsigned int row) const { return matrix[row]; }
    double* operator[](unsigned int row) { return matrix[row]; }

    MMatrix operator*(const MMatrix& right) const;
    MMatrix& operator*=(const MMatrix& right);
    bool operator==(const MMatrix& other) const;
    bool operator!=(const MMatrix& other) const { return !(*this == other); }
    bool isEquivalent(const MMatrix& other, double tolerance = 1.0e-10) const;

    MMatrix transpose() const;
    /// The inverse; the identity for a singular matrix.
    MMatrix inverse() const;
    bool isSingular() const;
    MStatus setToIdentity();
    MStatus get(double dest[4][4]) const;
    MStatus get(float dest[4][4]) const;

    static const MMatrix identity;

    double matrix[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
};

std::ostream& operator<<(std::ostream& os, const MMatrix& matrix);
