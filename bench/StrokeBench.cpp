// Measures a stroke of 1,000 samples painted by the plug-in's freehand tools. The plain reference stamps the
// same discs at the same places with QPainter and a radial gradient.
#include "paint/DrawUtil.h"
#include "paint/PngStructure.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdlib>
#include <utility>
#include <vector>

using vellix::DrawUtil;
using vellix::PngStructure;
using vellix::StrokePoint;
using vellix::ToolType;

namespace {

constexpr int SAMPLES = 1000;

enum Pressure { STEADY, PRESSED };

// Returns a scribble over the whole image, with the samples as far apart as the tool's thinning leaves them.
QList<StrokePoint> Scribble(int size, Pressure pressure) {
    const double spacing = std::max(0.1 * size, 1.0);
    QList<StrokePoint> points;
    double phase = 0.0;
    for (int i = 0; i < SAMPLES; ++i) {
        StrokePoint point;
        point.size = size;
        point.opacity = pressure == STEADY ? 0.8f : float(0.6 + 0.35 * std::sin(0.02 * i));
        point.position = QPoint(qRound(512 + 420 * std::sin(1.31 * phase)),
                                qRound(512 + 400 * std::sin(1.7 * phase + 0.4)));
        points.append(point);
        const double speed =
            std::hypot(420 * 1.31 * std::cos(1.31 * phase), 400 * 1.7 * std::cos(1.7 * phase + 0.4));
        phase += spacing / std::max(speed, 100.0);
    }
    return points;
}

QImage EmptyLayer() {
    QImage image(1024, 1024, QImage::Format_RGBA8888);
    image.fill(QColor(20, 60, 160, 0));
    return image;
}

struct Disc {
    QPointF centre;
    double opacity;
};

// Adds the discs that the pencil stamps along a segment.
void AddPencilDiscs(const StrokePoint& from, const StrokePoint& to, std::vector<Disc>& discs) {
    const int dx = std::abs(to.position.x() - from.position.x());
    const int dy = std::abs(to.position.y() - from.position.y());
    const int steps = std::max(dx, dy);
    for (int step = 0; step <= steps; step += std::max(from.size / 10, 1)) {
        const double t = steps == 0 ? 0.0 : static_cast<double>(step) / steps;
        const QPointF at = QPointF(from.position) + t * QPointF(to.position - from.position);
        discs.push_back(
            {QPointF(qRound(at.x()), qRound(at.y())), from.opacity + t * (to.opacity - from.opacity)});
    }
}

// Adds the discs that the brush stamps along a segment: two beside the line at every pixel, the nearer one
// stronger, and half as strong at the ends. Leaves out stamps that would add nothing.
void AddBrushDiscs(const StrokePoint& from, const StrokePoint& to, std::vector<Disc>& discs) {
    const QPoint way = to.position - from.position;
    const bool steep = std::abs(way.y()) > std::abs(way.x());
    const int steps = std::max(std::abs(way.x()), std::abs(way.y()));
    for (int step = 0; step <= steps; ++step) {
        const double t = steps == 0 ? 0.0 : static_cast<double>(step) / steps;
        const QPointF at = QPointF(from.position) + t * QPointF(way);
        const double minor = steep ? at.x() : at.y();
        const double below = std::floor(minor);
        const double share = step == 0 || step == steps ? 0.5 : 1.0;
        for (const double flow : {1.0 - (minor - below), minor - below}) {
            if (flow * 255.0 >= 1.0) {
                const double place = flow == minor - below ? below + 1 : below;
                discs.push_back({steep ? QPointF(place, at.y()) : QPointF(at.x(), place), share * flow});
            }
        }
    }
}

std::vector<Disc> Discs(const QList<StrokePoint>& points, ToolType tool) {
    std::vector<Disc> discs;
    for (int i = 1; i < points.size(); ++i) {
        if (tool == ToolType::Brush) {
            AddBrushDiscs(points[i - 1], points[i], discs);
        } else {
            AddPencilDiscs(points[i - 1], points[i], discs);
        }
    }
    return discs;
}

// Uses one gradient around the origin, moved from disc to disc, which is the fastest way with QPainter.
QBrush DiscBrush(ToolType tool, double radius) {
    QRadialGradient gradient(QPointF(0.0, 0.0), radius);
    const QColor color(20, 60, 160);
    gradient.setColorAt(0.0, color);
    if (tool == ToolType::Pencil) {
        gradient.setColorAt(1.0 - 1.0 / radius, color);
    }
    gradient.setColorAt(1.0, QColor(20, 60, 160, 0));
    return gradient;
}

void Reference(benchmark::State& state, ToolType tool, int size, Pressure pressure) {
    const std::vector<Disc> discs = Discs(Scribble(size, pressure), tool);
    const double radius = 0.5 * size;
    const QBrush brush = DiscBrush(tool, radius);
    QImage image = EmptyLayer();
    for (auto _ : state) {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(brush);
        for (const Disc& disc : discs) {
            painter.setOpacity(disc.opacity);
            painter.resetTransform();
            painter.translate(disc.centre);
            painter.drawEllipse(QPointF(0.0, 0.0), radius, radius);
        }
    }
    state.counters["stamps"] = static_cast<double>(discs.size());
}

void Painted(benchmark::State& state, ToolType tool, int size, Pressure pressure) {
    const QList<StrokePoint> points = Scribble(size, pressure);
    QImage image = EmptyLayer();
    for (auto _ : state) {
        DrawUtil::DrawFreehand(image, points, 0, tool);
        benchmark::ClobberMemory();
    }
}

// Paints one new segment in the middle of the stroke, like a refresh while the pen moves.
void Segment(benchmark::State& state, ToolType tool, int size) {
    const QList<StrokePoint> points = Scribble(size, PRESSED).mid(500, 2);
    QImage image = EmptyLayer();
    for (auto _ : state) {
        DrawUtil::DrawFreehand(image, points, 0, tool);
        benchmark::ClobberMemory();
    }
}

QByteArray PackedDrawing() {
    QImage image = EmptyLayer();
    DrawUtil::DrawFreehand(image, Scribble(30, PRESSED), 0, ToolType::Pencil);
    QByteArray packed;
    DrawUtil::PackPngBuffer(image, packed);
    return packed;
}

void Pack(benchmark::State& state) {
    QImage image;
    DrawUtil::UnpackPngBuffer(PackedDrawing(), image);
    QByteArray packed;
    for (auto _ : state) {
        DrawUtil::PackPngBuffer(image, packed);
    }
    state.counters["bytes"] = packed.size();
}

void Unpack(benchmark::State& state) {
    const QByteArray packed = PackedDrawing();
    QImage image;
    for (auto _ : state) {
        DrawUtil::UnpackPngBuffer(packed, image);
    }
}

void Check(benchmark::State& state) {
    const QByteArray packed = PackedDrawing();
    for (auto _ : state) {
        benchmark::DoNotOptimize(PngStructure::IsSound(packed));
    }
}

BENCHMARK_CAPTURE(Reference, Pencil30, ToolType::Pencil, 30, STEADY)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Painted, Pencil30, ToolType::Pencil, 30, STEADY)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Painted, Pencil30Pressure, ToolType::Pencil, 30, PRESSED)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Reference, Brush100, ToolType::Brush, 100, STEADY)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Painted, Brush100, ToolType::Brush, 100, STEADY)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Painted, Brush100Pressure, ToolType::Brush, 100, PRESSED)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Segment, Brush100, ToolType::Brush, 100)->Unit(benchmark::kMicrosecond);
BENCHMARK(Pack)->Unit(benchmark::kMillisecond);
BENCHMARK(Unpack)->Unit(benchmark::kMillisecond);
BENCHMARK(Check)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
