// Measures letting go of the pen, undo and redo on the dense drawing: the whole commands, with the stroke
// painted before as it is while the pen moves. The plain reference packs the picture with Qt. Also measures
// replays.
#include "SampleDrawings.h"
#include "app/LightboxHost.h"
#include "app/PluginManager.h"
#include "core/Frame.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "formats/SceneFiles.h"
#include "host/MayaUtil.h"
#include "host/entry/PluginMain.h"
#include "mel/Interpreter.h"
#include "node/BaseNode.h"

#include <QApplication>
#include <QBuffer>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <chrono>
#include <malloc.h>

namespace {

using namespace vellix;
using namespace vellix::sample_drawings;

const QString CAMERA = QStringLiteral("persp");

/// A brush stroke of 20 samples, or one of size 100 to and fro over the whole picture.
enum Reach { SMALL, WHOLE };

BaseNode& Node() {
    return *BaseNode::GetMaster();
}

void Mel(const char* line) {
    lightbox::Host::Get().interpreter().Execute(line);
}

void NewScene(Kind kind) {
    lightbox::Host::Get().files().New(true);
    Mel("qmVellixNode -l -c persp; qmVellixFrame -insert");
    Node().GetActiveLayer(CAMERA)->SetImage(Drawing(kind));
    Node().GetFinalImage(CAMERA);
}

QList<StrokePoint> Points(Reach reach, std::mt19937& random) {
    QList<StrokePoint> points;
    StrokePoint point;
    point.opacity = 0.7f;
    if (reach == SMALL) {
        point.size = 24;
        double x = 100 + static_cast<int>(random() % 800u);
        double y = 100 + static_cast<int>(random() % 800u);
        double direction = 0.01 * static_cast<int>(random() % 628u);
        for (int i = 0; i < 20; ++i) {
            point.position = QPoint(qRound(x), qRound(y));
            points.append(point);
            x += 8 * std::cos(direction);
            y += 8 * std::sin(direction);
            direction += 0.1;
        }
        return points;
    }
    point.size = 100;
    for (int i = 0; i < 16; ++i) {
        for (int step = 0; step <= 20; ++step) {
            const int x = step * 1024 / 20;
            point.position = QPoint(i % 2 == 0 ? x : 1024 - x, 32 + i * 64);
            points.append(point);
        }
    }
    return points;
}

/// Draws a stroke up to the moment before the pen is lifted.
void Draw(Reach reach, std::mt19937& random, bool shown) {
    int layer = -1;
    bool frameAdded = false;
    Node().PrepareForDraw(CAMERA, layer, frameAdded);
    Stroke* const stroke = Node().GetActiveStroke(CAMERA, false);
    stroke->tool = ToolType::Brush;
    stroke->color = QColor(static_cast<int>(random() % 256u), 80, 120);
    stroke->points = Points(reach, random);
    stroke->changed = true;
    if (shown) {
        Node().GetFinalImage(CAMERA);
    } else {
        Node().GetLayerManager()->PaintActiveStroke();
    }
}

template <typename Step>
double Seconds(Step step) {
    const auto start = std::chrono::steady_clock::now();
    step();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void PenUp(benchmark::State& state, Reach reach, bool withRefresh) {
    NewScene(DENSE);
    std::mt19937 random(11);
    for (auto _ : state) {
        Draw(reach, random, true);
        state.SetIterationTime(Seconds([&] {
            MayaUtil::PushStroke(CAMERA, -1, false);
            if (withRefresh) {
                Node().GetFinalImage(CAMERA);
            }
        }));
        Mel("flushUndo");
    }
}

/// Undo and redo of one stroke in turn.
void UndoRedo(benchmark::State& state, Reach reach, bool withRefresh) {
    NewScene(DENSE);
    std::mt19937 random(11);
    Draw(reach, random, true);
    MayaUtil::PushStroke(CAMERA, -1, false);
    const char* line = "undo";
    for (auto _ : state) {
        Node().GetFinalImage(CAMERA);
        state.SetIterationTime(Seconds([&] {
            Mel(line);
            if (withRefresh) {
                Node().GetFinalImage(CAMERA);
            }
        }));
        line = line[0] == 'u' ? "redo" : "undo";
    }
}

/// The memory that strokes take up in the undo queue.
void UndoMemory(benchmark::State& state, Reach reach, int strokes) {
    NewScene(DENSE);
    std::mt19937 random(11);
    const auto used = [] {
        const struct mallinfo2 heap = mallinfo2();
        return static_cast<double>(heap.uordblks + heap.hblkhd) / 1e6;
    };
    double taken = 0.0;
    for (auto _ : state) {
        Draw(reach, random, false); // what the first stroke takes up stays anyway
        MayaUtil::PushStroke(CAMERA, -1, false);
        const double before = used();
        for (int i = 0; i < strokes; ++i) {
            Draw(reach, random, false);
            MayaUtil::PushStroke(CAMERA, -1, false);
        }
        taken = used() - before;
    }
    state.counters["megabytes"] = taken;
}

void PackByQt(benchmark::State& state) {
    const QImage drawing = Drawing(DENSE);
    for (auto _ : state) {
        QByteArray packed;
        QBuffer buffer(&packed);
        buffer.open(QIODevice::WriteOnly);
        drawing.save(&buffer, "PNG");
        benchmark::DoNotOptimize(packed.constData());
    }
}

int ReplayRecording() {
    const QString own = QString::fromLocal8Bit(qgetenv("VELLIX_BENCH_RECORDING"));
    const QString file = own.isEmpty() ? QStringLiteral(VELLIX_SOURCE_FOLDER "/demo/rough.json") : own;
    const std::string line = "qmVellixReplay -camera persp -file \"" + file.toStdString() + "\"";
    return lightbox::Host::Get().interpreter().Execute(line).AsInt();
}

/// Replays a recording on a layer without frames or, with `dense`, on frames that hold the dense drawing.
void Replay(benchmark::State& state, bool dense) {
    const QImage drawing = dense ? Drawing(DENSE) : QImage();
    int strokes = 0;
    for (auto _ : state) {
        lightbox::Host::Get().files().New(true);
        Mel("qmVellixNode -l -c persp");
        if (dense) {
            ReplayRecording();
            Layer* const layer = Node().GetActiveLayer(CAMERA);
            for (int frame = 0; frame < layer->FrameCount(); ++frame) {
                layer->GetFrame(frame)->SetImage(drawing.copy());
            }
        }
        state.SetIterationTime(Seconds([&] { strokes = ReplayRecording(); }));
    }
    state.counters["strokes_per_second"] =
        benchmark::Counter(static_cast<double>(strokes), benchmark::Counter::kIsIterationInvariantRate);
}

BENCHMARK(PackByQt)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK_CAPTURE(PenUp, small, SMALL, false)->Unit(benchmark::kMicrosecond)->UseManualTime();
BENCHMARK_CAPTURE(PenUp, small_shown, SMALL, true)->Unit(benchmark::kMicrosecond)->UseManualTime();
BENCHMARK_CAPTURE(PenUp, whole, WHOLE, false)->Unit(benchmark::kMicrosecond)->UseManualTime()->Iterations(20);
BENCHMARK_CAPTURE(UndoRedo, small, SMALL, false)->Unit(benchmark::kMicrosecond)->UseManualTime();
BENCHMARK_CAPTURE(UndoRedo, small_shown, SMALL, true)->Unit(benchmark::kMicrosecond)->UseManualTime();
BENCHMARK_CAPTURE(UndoRedo, whole, WHOLE, false)->Unit(benchmark::kMicrosecond)->UseManualTime();
BENCHMARK_CAPTURE(Replay, empty, false)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK_CAPTURE(Replay, dense, true)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK_CAPTURE(UndoMemory, small, SMALL, 200)->Iterations(1)->UseRealTime();
BENCHMARK_CAPTURE(UndoMemory, whole, WHOLE, 50)->Iterations(1)->UseRealTime();

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    QApplication application(argc, argv);
    const QTemporaryDir prefs;
    lightbox::Host::Options options;
    options.prefsFolder = prefs.path().toStdString();
    lightbox::LightboxHost host(options);
    host.plugins().LoadBuiltin("vellix2", initializePlugin, uninitializePlugin);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
