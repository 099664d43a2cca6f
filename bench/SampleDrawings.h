#pragma once

#include "paint/CompositeKernels.h"
#include "paint/DrawUtil.h"

#include <QImage>

#include <cmath>
#include <random>

namespace vellix {

/// Drawings from a fixed seed: DENSE has 300 broad brush strokes, SPARSE three pencil strokes.
namespace sample_drawings {

enum Kind { DENSE, SPARSE, EMPTY };

// Adds a bent stroke in a colour of its own.
inline void AddStroke(QImage& drawing, std::mt19937& random, ToolType tool, int size, int samples) {
    const auto in = [&](int least, int most) {
        return least + static_cast<int>(random() % static_cast<unsigned>(most - least + 1));
    };
    QImage stroke(1024, 1024, QImage::Format_RGBA8888);
    const int red = in(0, 255);
    const int green = in(0, 255);
    stroke.fill(QColor(red, green, in(0, 255), 0));
    double x = in(0, 1023);
    double y = in(0, 1023);
    double direction = in(0, 628) * 0.01;
    const double bend = in(-100, 100) * 0.001;
    const double opacity = in(40, 100) * 0.01;
    QList<StrokePoint> points;
    for (int i = 0; i < samples; ++i) {
        StrokePoint point;
        point.position = QPoint(qRound(x), qRound(y));
        point.size = size;
        point.opacity = static_cast<float>(opacity * (0.6 + 0.4 * std::sin(i * 0.1)));
        points.append(point);
        x += std::cos(direction) * 10;
        y += std::sin(direction) * 10;
        direction += bend;
    }
    DrawUtil::DrawFreehand(stroke, points, 0, tool);
    composite_kernels::SourceOver(reinterpret_cast<quint32*>(drawing.bits()),
                                          reinterpret_cast<const quint32*>(stroke.constBits()), 1024 * 1024);
}

inline QImage Drawing(Kind kind) {
    QImage drawing(1024, 1024, QImage::Format_RGBA8888);
    drawing.fill(Qt::transparent);
    std::mt19937 random(7);
    for (int i = 0; kind == DENSE && i < 300; ++i) {
        AddStroke(drawing, random, ToolType::Brush, 40 + static_cast<int>(random() % 60), 40);
    }
    for (int i = 0; kind == SPARSE && i < 3; ++i) {
        AddStroke(drawing, random, ToolType::Pencil, 12, 60);
    }
    return drawing;
}

} // namespace sample_drawings
} // namespace vellix
