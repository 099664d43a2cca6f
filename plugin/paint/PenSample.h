#pragma once

#include <QPointF>

#include <cmath>

namespace vellix {

/// Where the pen was, and what it pressed there.
struct PenSample {
    QPointF position;      ///< image pixels, y down
    double size = 1.0;     ///< image pixels
    double opacity = 1.0;  ///< 0..1
    double hardness = 1.0; ///< 0..1
    double time = 0.0;     ///< milliseconds, from any beginning
    bool isCorner = false; ///< the pen slowed down or rested here, and turned sharply
};

/// The length of a vector between samples.
inline double Length(const QPointF& vector) {
    return std::sqrt(QPointF::dotProduct(vector, vector)); // far faster than QLineF::length() or std::hypot
}

} // namespace vellix
