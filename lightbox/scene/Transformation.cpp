#include "scene/Transformation.h"

#include <Imath/ImathMatrixAlgo.h>
#include <algorithm>
#include <cmath>

namespace lightbox {

namespace {

/// The axes in the order of rotation, by the value of rotateOrder.
const int ORDERS[6][3] = {{0, 1, 2}, {1, 2, 0}, {2, 0, 1}, {0, 2, 1}, {1, 0, 2}, {2, 1, 0}};

const int (&AxesOf(int order))[3] {
    return ORDERS[std::clamp(order, 0, 5)];
}

Imath::M44d Translation(const Imath::V3d& offset) {
    return Imath::M44d().setTranslation(offset);
}

Imath::M44d AxisRotation(int axis, double degrees) {
    const double angle = degrees * M_PI / 180.0;
    const int second = (axis + 1) % 3;
    const int third = (axis + 2) % 3;
    Imath::M44d matrix;
    matrix[second][second] = std::cos(angle);
    matrix[second][third] = std::sin(angle);
    matrix[third][second] = -std::sin(angle);
    matrix[third][third] = std::cos(angle);
    return matrix;
}

Imath::M44d Rotation(const Imath::V3d& degrees, int order) {
    Imath::M44d matrix;
    for (const int axis : AxesOf(order)) {
        matrix *= AxisRotation(axis, degrees[axis]);
    }
    return matrix;
}

/// The angles of a rotation in the given order, solved from the product of three axis rotations.
Imath::V3d Angles(const Imath::M44d& matrix, int order) {
    const auto& axes = AxesOf(order);
    const int i = axes[0];
    const int j = axes[1];
    const int k = axes[2];
    const double sign = (i + 1) % 3 == j ? 1.0 : -1.0;
    const double sine = std::clamp(-sign * matrix[i][k], -1.0, 1.0);
    Imath::V3d angles;
    angles[j] = std::asin(sine);
    if (std::abs(sine) < 1.0 - 1e-12) {
        angles[i] = std::atan2(sign * matrix[j][k], matrix[k][k]);
        angles[k] = std::atan2(sign * matrix[i][j], matrix[i][i]);
    } else {
        // Gimbal lock: the first and the last axis coincide, so the first one takes the whole rotation.
        angles[i] = std::atan2(-sign * matrix[k][j], matrix[j][j]);
        angles[k] = 0.0;
    }
    return angles * (180.0 / M_PI);
}

} // namespace

Imath::M44d Transformation::Matrix() const {
    Imath::M44d scaling;
    scaling.setScale(scale);
    Imath::M44d shearing;
    shearing[1][0] = shear.x;
    shearing[2][0] = shear.y;
    shearing[2][1] = shear.z;
    Imath::M44d unscaling;
    unscaling.setScale(inverseScale);
    return Translation(-scalePivot) * scaling * shearing * Translation(scalePivot) *
           Translation(scalePivotTranslate) * Translation(-rotatePivot) * Rotation(rotateAxis, 0) *
           Rotation(rotate, rotateOrder) * Rotation(jointOrient, 0) * unscaling * Translation(rotatePivot) *
           Translation(rotatePivotTranslate) * Translation(translate);
}

bool Transformation::SetMatrix(const Imath::M44d& matrix) {
    if (inverseScale.x * inverseScale.y * inverseScale.z == 0.0) {
        return false;
    }
    Imath::M44d unscaling;
    unscaling.setScale(Imath::V3d(1.0) / inverseScale);
    Imath::M44d turned = matrix * unscaling;
    Imath::V3d newScale;
    Imath::V3d newShear;
    if (!Imath::extractAndRemoveScalingAndShear(turned, newScale, newShear, false)) {
        return false;
    }
    scale = newScale;
    shear = newShear;
    const Imath::M44d rotation =
        Rotation(rotateAxis, 0).inverse() * turned * Rotation(jointOrient, 0).inverse();
    rotate = Angles(rotation, rotateOrder);
    translate = Imath::V3d(0.0);
    translate = matrix.translation() - Matrix().translation();
    return true;
}

} // namespace lightbox
