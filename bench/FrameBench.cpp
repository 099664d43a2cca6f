// Measures frame edits from MEL on a layer with many keys: how the cost grows with the number of frames in
// the range, and how it compares with filling a plain map with as many small heap objects.
#include "app/LightboxHost.h"
#include "app/PluginManager.h"
#include "core/Frame.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "host/entry/PluginMain.h"
#include "mel/Interpreter.h"
#include "node/BaseNode.h"

#include <QApplication>
#include <QMap>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <iostream>

namespace {

using namespace vellix;

const QString CAMERA = QStringLiteral("persp");

void Mel(const QString& text) {
    lightbox::Host::Get().interpreter().Execute(text.toStdString());
}

Layer& ActiveLayer() {
    return *BaseNode::GetMaster()->GetActiveLayer(CAMERA);
}

/// Makes a new scene with one layer, and highlights the frames 1 to `count`.
void NewLayer(qint64 count) {
    Mel("file -force -new; qmVellixNode -layer -camera persp; currentTime 1");
    Mel(QString("timeControl -edit -rangeArray 1 %1 $gPlayBackSlider").arg(count + 1));
}

/// Runs the line on a layer keyed at every frame of the range (on an empty layer if it inserts), and undoes
/// it each time.
void Edit(benchmark::State& state, const QString& line, bool keyed, int changedFrame) {
    const qint64 count = state.range(0);
    const QString text = line.contains('%') ? line.arg(count) : line;
    NewLayer(count);
    if (keyed) {
        Mel("qmVellixFrame -insert");
    }
    for (auto _ : state) {
        Mel(text);
        state.PauseTiming();
        if (ActiveLayer().FrameCount() != count || !ActiveLayer().FrameExists(changedFrame)) {
            std::cerr << "Wrong frames after " << line.toStdString() << "\n";
            std::exit(1);
        }
        Mel("undo");
        state.ResumeTiming();
    }
}

void Insert(benchmark::State& state) {
    Edit(state, "qmVellixFrame -insert", false, static_cast<int>(state.range(0)));
}

void Retime(benchmark::State& state) {
    Edit(state, "qmVellixFrame -retime 2", true, 2 * static_cast<int>(state.range(0)) - 1);
}

void Move(benchmark::State& state) {
    Edit(state, "qmVellixFrame -move 1 1 %1", true, static_cast<int>(state.range(0)) + 1);
}

void PlainMap(benchmark::State& state) {
    for (auto _ : state) {
        QMap<int, std::shared_ptr<Frame>> frames;
        for (int time = 1; time <= state.range(0); ++time) {
            frames.insert(time, std::make_shared<Frame>(MTime(time, MTime::uiUnit())));
        }
        benchmark::DoNotOptimize(frames.size());
    }
}

void Counts(benchmark::internal::Benchmark* bench) {
    for (const int count : {250, 500, 1000, 2000}) {
        bench->Arg(count);
    }
    bench->Unit(benchmark::kMicrosecond);
}

BENCHMARK(Insert)->Apply(Counts);
BENCHMARK(Retime)->Apply(Counts);
BENCHMARK(Move)->Apply(Counts);
BENCHMARK(PlainMap)->Apply(Counts);

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const QTemporaryDir preferences;
    lightbox::LightboxHost host({true, preferences.path().toStdString()});
    host.plugins().LoadBuiltin("vellix2", initializePlugin, uninitializePlugin);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
