// Measures packing and unpacking drawings as PNG. The plain reference is Qt with its defaults.
#include "paint/CompositeKernels.h"
#include "paint/DrawUtil.h"

#include <QBuffer>
#include <QImage>

#include <benchmark/benchmark.h>
#include <cmath>
#include <random>

using vellix::DrawUtil;
using vellix::StrokePoint;
using vellix::ToolType;

namespace {

enum Kind { DENSE, SPARSE, EMPTY };

// Adds a bent stroke in a colour of its own.
void AddStroke(QImage& drawing, std::mt19937& random, ToolType tool, int size, int samples) {
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
    vellix::composite_kernels::SourceOver(reinterpret_cast<quint32*>(drawing.bits()),
                                          reinterpret_cast<const quint32*>(stroke.constBits()), 1024 * 1024);
}

QImage Drawing(Kind kind) {
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

QByteArray ByQt(const QImage& image) {
    QByteArray packed;
    QBuffer buffer(&packed);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return packed;
}

void Pack(benchmark::State& state, Kind kind) {
    const QImage drawing = Drawing(kind);
    QByteArray packed;
    for (auto _ : state) {
        DrawUtil::PackPngBuffer(drawing, packed);
    }
    state.counters["bytes"] = packed.size();
    state.counters["bytes_against_qt"] = static_cast<double>(packed.size()) / ByQt(drawing).size();
}

void PackByQt(benchmark::State& state, Kind kind) {
    const QImage drawing = Drawing(kind);
    for (auto _ : state) {
        benchmark::DoNotOptimize(ByQt(drawing));
    }
}

void Unpack(benchmark::State& state, Kind kind) {
    QByteArray packed;
    DrawUtil::PackPngBuffer(Drawing(kind), packed);
    QImage image;
    for (auto _ : state) {
        DrawUtil::UnpackPngBuffer(packed, image);
    }
}

void UnpackByQt(benchmark::State& state, Kind kind) {
    const QByteArray packed = ByQt(Drawing(kind));
    QImage image;
    for (auto _ : state) {
        image.loadFromData(packed, "PNG");
    }
}

BENCHMARK_CAPTURE(Pack, dense, DENSE)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(PackByQt, dense, DENSE)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Unpack, dense, DENSE)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(UnpackByQt, dense, DENSE)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Pack, sparse, SPARSE)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(PackByQt, sparse, SPARSE)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Unpack, sparse, SPARSE)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(UnpackByQt, sparse, SPARSE)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Pack, empty, EMPTY)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(PackByQt, empty, EMPTY)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
