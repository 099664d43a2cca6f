#pragma once

#include <maya/MPoint.h>
#include <maya/MUserData.h>

#include <QLineF>

class QImage;

namespace vellix {

/// The data that BaseNodeDrawOverride passes from prepareForDraw to addUIDrawables. The host stores it in
/// between.
class BaseNodeUserData : public MUserData {
public:
    BaseNodeUserData()
        : MUserData(false) {}

    /// The composed image, owned by the drawing node; null when there is nothing to draw.
    const QImage* image = nullptr;
    bool imageChanged = false;
    /// Centre and half side of the drawing's square, in view pixels.
    MPoint center;
    float halfSize = 0.0f;
    /// The node's opacity, 0 to 1.
    float opacity = 1.0f;
    bool drawTransformOutline = false;
    /// The corners of the transform outline, in view pixels.
    MPoint outline[4];
    /// The string between the brush and the pen, in view pixels; null for none.
    QLineF penString;
};

} // namespace vellix
