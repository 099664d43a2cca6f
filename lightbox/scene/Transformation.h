#pragma once

#include <Imath/ImathMatrix.h>
#include <Imath/ImathVec.h>

namespace lightbox {

/// The parts of a transform node. Angles are degrees. The matrix of a transform is, for row vectors and in
/// the published order, scale pivot, scale, shear, scale pivot translation, rotate pivot, rotate axis,
/// rotation, rotate pivot translation, translation. A joint adds its orientation and the inverse of its
/// parent's scale after the rotation.
struct Transformation {
    Imath::V3d translate{0.0};
    Imath::V3d rotate{0.0};
    Imath::V3d scale{1.0};
    Imath::V3d shear{0.0};
    Imath::V3d rotatePivot{0.0};
    Imath::V3d rotatePivotTranslate{0.0};
    Imath::V3d scalePivot{0.0};
    Imath::V3d scalePivotTranslate{0.0};
    Imath::V3d rotateAxis{0.0};
    int rotateOrder = 0;
    Imath::V3d jointOrient{0.0};
    Imath::V3d inverseScale{1.0};

    Imath::M44d Matrix() const;
    /// Sets translate, rotate, scale and shear so that Matrix() returns `matrix`; the other parts stay.
    /// Returns false for a singular matrix.
    bool SetMatrix(const Imath::M44d& matrix);
};

} // namespace lightbox
