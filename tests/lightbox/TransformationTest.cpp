#include "scene/Transformation.h"

#include <gtest/gtest.h>

using lightbox::Transformation;

TEST(TransformationTest, PublishedOrderOfRotations) {
    // Row vectors: with order xyz, a turn about x is done first.
    Transformation parts;
    parts.rotate = {90, 90, 0};
    const Imath::V3d turned = Imath::V3d(0, 1, 0) * parts.Matrix();
    EXPECT_TRUE(turned.equalWithAbsError({1, 0, 0}, 1e-12)) << "y to z by x, z to x by y";
    parts.rotateOrder = 4; // yxz
    const Imath::V3d other = Imath::V3d(0, 1, 0) * parts.Matrix();
    EXPECT_TRUE(other.equalWithAbsError({0, 0, 1}, 1e-12)) << "y stays by y, then y to z by x";
}

TEST(TransformationTest, PivotsStayWhereTheyAre) {
    Transformation parts;
    parts.rotatePivot = parts.scalePivot = {3, 4, 5};
    parts.rotate = {10, 20, 30};
    parts.scale = {2, 3, 4};
    EXPECT_TRUE((Imath::V3d(3, 4, 5) * parts.Matrix()).equalWithAbsError({3, 4, 5}, 1e-12));
}

TEST(TransformationTest, SetMatrixComesBackToTheSameMatrix) {
    for (int order = 0; order < 6; ++order) {
        for (const double middle : {0.0, 35.0, 90.0, -90.0, 120.0}) {
            for (const double first : {-170.0, 0.0, 20.0}) {
                Transformation parts;
                parts.rotateOrder = order;
                parts.rotate = {first, middle, middle - first};
                parts.translate = {1, -2, 3};
                parts.scale = {2, 0.5, 1};
                parts.shear = {0.1, 0, 0.2};
                parts.rotatePivot = {4, 0, 1};
                parts.scalePivotTranslate = {0, 1, 0};
                parts.rotateAxis = {0, 15, 0};
                const Imath::M44d wanted = parts.Matrix();
                Transformation found = parts;
                found.rotate = found.translate = {9, 9, 9};
                ASSERT_TRUE(found.SetMatrix(wanted));
                EXPECT_TRUE(found.Matrix().equalWithAbsError(wanted, 1e-6))
                    << order << ' ' << middle << ' ' << first;
            }
        }
    }
    Imath::M44d flat;
    flat.setScale(Imath::V3d(1, 0, 1));
    Transformation parts;
    EXPECT_FALSE(parts.SetMatrix(flat));
    EXPECT_EQ(parts.scale, Imath::V3d(1));
}
