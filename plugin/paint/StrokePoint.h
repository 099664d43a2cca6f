#pragma once

#include <QPoint>
#include <QtGlobal>

namespace vellix {

/// One sample of a stroke.
struct StrokePoint {
    qint32 size = 1;       ///< tool size in image pixels: diameter, pen width of a shape, point size of text
    float opacity = 1.0f;  ///< 0..1, tablet pressure included
    float hardness = 1.0f; ///< 0..1, inner radius of the brush fall-off
    QPoint position;       ///< image pixels, y down
};

} // namespace vellix
