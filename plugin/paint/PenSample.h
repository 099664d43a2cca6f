#pragma once

#include <QPointF>

namespace vellix {

/// Where the pen was, and what it pressed there.
struct PenSample {
    QPointF position;      ///< image pixels, y down
    double size = 1.0;     ///< image pixels
    double opacity = 1.0;  ///< 0..1
    double hardness = 1.0; ///< 0..1
};

} // namespace vellix
