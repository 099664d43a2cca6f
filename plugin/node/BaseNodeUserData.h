#pragma once

#include <maya/MPoint.h>
#include <maya/MUserData.h>

#include <QImage>

namespace vellix {

/// What BaseNodeDrawOverride takes from preparing a drawing to drawing it. The host keeps it in between.
class BaseNodeUserData : public MUserData {
public:
    BaseNodeUserData()
        : MUserData(false) {}

    /// The composed image, owned by the drawing node; null when there is nothing to draw.
    const QImage* image = nullptr;
    bool imageChanged = false;
    /// The square, in view pixels.
    MPoint center;
    float halfSize = 0.0f;
    /// 0 to 1.
    float opacity = 1.0f;
    bool drawTransformOutline = false;
    /// Its corners, in view pixels.
    MPoint outline[4];
};

} // namespace vellix
