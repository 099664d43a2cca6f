#include "openmaya/ImathConversion.h"

#include <maya/MMatrix.h>
#include <maya/MStatus.h>

#include <algorithm>
#include <ostream>

using lightbox::FromImath;
using lightbox::ToImath;

const MMatrix MMatrix::identity;

namespace {

template <typename From, typename To>
void Copy(const From from[4][4], To to[4][4]) {
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            to[row][column] = static_cast<To>(from[row][column]);
        }
    }
}

} // namespace

MMatrix::MMatrix(const double m[4][4]) {
    Copy(m, matrix);
}

MMatrix::MMatrix(const float m[4][4]) {
    Copy(m, matrix);
}

MMatrix MMatrix::operator*(const MMatrix& right) const {
    return FromImath(ToImath(*this) * ToImath(right));
}

MMatrix& MMatrix::operator*=(const MMatrix& right) {
    return *this = *this * right;
}

bool MMatrix::operator==(const MMatrix& other) const {
    return ToImath(*this) == ToImath(other);
}

bool MMatrix::isEquivalent(const MMatrix& other, double tolerance) const {
    return ToImath(*this).equalWithAbsError(ToImath(other), tolerance);
}

MMatrix MMatrix::transpose() const {
    return FromImath(ToImath(*this).transposed());
}

MMatrix MMatrix::inverse() const {
    return isSingular() ? MMatrix() : FromImath(ToImath(*this).inverse());
}

bool MMatrix::isSingular() const {
    return ToImath(*this).determinant() == 0.0;
}

MStatus MMatrix::setToIdentity() {
    *this = identity;
    return MS::kSuccess;
}

MStatus MMatrix::get(double dest[4][4]) const {
    Copy(matrix, dest);
    return MS::kSuccess;
}

MStatus MMatrix::get(float dest[4][4]) const {
    Copy(matrix, dest);
    return MS::kSuccess;
}

std::ostream& operator<<(std::ostream& os, const MMatrix& matrix) {
    os << '[';
    for (unsigned int row = 0; row < 4; ++row) {
        os << (row ? ", [" : "[");
        for (unsigned int column = 0; column < 4; ++column) {
            os << (column ? ", " : "") << matrix(row, column);
        }
        os << ']';
    }
    return os << ']';
}
