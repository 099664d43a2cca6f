// Measures packing and unpacking drawings as PNG. The plain reference is Qt with its defaults.
#include "SampleDrawings.h"
#include "paint/DrawUtil.h"
#include "plugin/paint/PngBytes.h"

#include <benchmark/benchmark.h>

using vellix::DrawUtil;
using vellix::png_bytes::ByQt;
using namespace vellix::sample_drawings;

namespace {

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
