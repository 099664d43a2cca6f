#include "ui/BrushSample.h"

#include "paint/BrushPreset.h"
#include "paint/DrawUtil.h"
#include "paint/Stroke.h"
#include "paint/StrokeSmoother.h"
#include "paint/ToolTable.h"

#include <QColor>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace vellix {

namespace {

constexpr double FULL_TURN = 6.28318530717958647692;
constexpr double WAVE_STEP = 3.0; // pixels

template <typename Pressure>
BrushSample::Path Wave(const QSize& size, Pressure pressureAt) {
    BrushSample::Path path;
    const double margin = std::min(size.width(), size.height()) * 0.2;
    const double length = size.width() - 2.0 * margin;
    const int steps = std::max(static_cast<int>(length / WAVE_STEP), 8);
    for (int i = 0; i <= steps; ++i) {
        const double share = static_cast<double>(i) / steps;
        const double height = std::sin(share * FULL_TURN) * size.height() * 0.2;
        path.append({QPointF(margin + share * length, size.height() / 2.0 - height), pressureAt(share)});
    }
    return path;
}

} // namespace

BrushSample::Path BrushSample::RisingWave(const QSize& size) {
    return Wave(size, [](double share) { return static_cast<float>(share); });
}

BrushSample::Path BrushSample::SwellingWave(const QSize& size) {
    return Wave(size, [](double share) { return static_cast<float>(std::sin(share * FULL_TURN / 2.0)); });
}

QImage BrushSample::Paint(const QSize& size, const BrushPreset& brush, const QVector<Path>& strokes) {
    if (KindOf(brush.tool) != ToolKind::Freehand) {
        return QImage();
    }
    QImage image(size, QImage::Format_RGBA8888);
    image.fill(brush.tool == ToolType::Eraser ? QColor(0, 0, 0, 255) : QColor(0, 0, 0, 0));
    for (const Path& path : strokes) {
        Stroke stroke;
        stroke.tool = brush.tool;
        StrokeSmoother smoother;
        LineStyle curves;
        curves.smoothCurves = true;
        curves.sizeVaries = brush.pressure.setsSize;
        smoother.Reset(curves);
        double time = 0.0; // as if by an even hand
        for (const Touch& touch : path) {
            StrokePoint point;
            point.position = touch.position.toPoint();
            point.size = brush.pressure.SizeAt(brush.size, touch.pressure);
            point.opacity = static_cast<float>(brush.opacity) / 100.0f *
                            (brush.pressureSetsOpacity ? brush.pressure.opacity.At(touch.pressure) : 1.0f);
            smoother.Receive(stroke, point, touch.position, time += 8.0, QString());
        }
        smoother.Finish(stroke);
        if (stroke.points.size() == 1) { // a click
            stroke.points.append(stroke.points.first());
            stroke.points.last().position.rx() += 1;
        }
        QImage painted(size, QImage::Format_RGBA8888);
        painted.fill(QColor(0, 0, 0, 0));
        if (brush.tool == ToolType::Eraser) {
            DrawUtil::DrawFreehand(image, stroke.points, 0, brush.tool);
        } else {
            DrawUtil::DrawFreehand(painted, stroke.points, 0, brush.tool);
            QPainter(&image).drawImage(0, 0, painted);
        }
    }
    return image;
}

QImage BrushSample::InColor(const QImage& coverage, const QColor& color) {
    QImage image = coverage.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    return image;
}

} // namespace vellix
