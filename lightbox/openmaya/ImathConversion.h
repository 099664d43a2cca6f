#pragma once

#include <maya/MMatrix.h>
#include <maya/MPoint.h>
#include <maya/MVector.h>

#include <Imath/ImathMatrix.h>
#include <Imath/ImathVec.h>

namespace lightbox {

// Conversions between the values of OpenMaya and Imath. Both use matrices for row vectors.

inline Imath::M44d ToImath(const MMatrix& matrix) {
    return Imath::M44d(matrix.matrix);
}
inline MMatrix FromImath(const Imath::M44d& matrix) {
    return MMatrix(matrix.x);
}
inline MPoint ToPoint(const Imath::V3d& point) {
    return MPoint(point.x, point.y, point.z);
}
inline MVector ToVector(const Imath::V3d& vector) {
    return MVector(vector.x, vector.y, vector.z);
}
/// The point divided by its w.
inline Imath::V3d ToImath(const MPoint& point) {
    const double w = point.w != 0.0 ? point.w : 1.0;
    return {point.x / w, point.y / w, point.z / w};
}

} // namespace lightbox
