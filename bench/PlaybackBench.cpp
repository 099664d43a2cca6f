// Measures playback in a window with software OpenGL: three layers keyed on ones in a viewport of 1280 x 720.
// Times whole frames and their parts: composing the picture, uploading it, drawing the view.
#include "DrawingWindow.h"
#include "core/Frame.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"

#include <QFile>
#include <QOpenGLFunctions>
#include <QRandomGenerator>

#include <benchmark/benchmark.h>
#include <iostream>

namespace {

using namespace vellix;
using lightbox::ViewportWidget;

constexpr int FRAMES = 72;
const QString CAMERA = QStringLiteral("persp");

DrawingWindow* g_window = nullptr;

void Mel(const QString& text) {
    g_window->Run(text.toStdString());
}

ViewportWidget& View() {
    return g_window->View();
}

/// Draws eight strokes across every frame.
QByteArray Recording(quint32 seed) {
    QRandomGenerator random(seed);
    QStringList strokes;
    for (int frame = 1; frame <= FRAMES; ++frame) {
        for (int stroke = 0; stroke < 8; ++stroke) {
            QStringList samples;
            for (int i = 0; i < 30; ++i) {
                samples << QString("[%1,%2,1,%3]")
                               .arg(100 + 25 * i + random.bounded(20))
                               .arg(150 + 90 * stroke + random.bounded(40))
                               .arg(8 * i);
            }
            strokes << QString(R"({"frame": %1, "tool": "%2", "size": %3, "opacity": 80, "hardness": 90,
                                   "color": [%4, 80, 160], "samples": [%5]})")
                           .arg(frame)
                           .arg(stroke % 2 == 0 ? "brush" : "pencil")
                           .arg(6 + random.bounded(40))
                           .arg(random.bounded(256))
                           .arg(samples.join(","));
        }
    }
    return R"({"format": "vellix-strokes", "version": 1, "size": 1024, "strokes": [)" +
           strokes.join(",").toUtf8() + "]}";
}

void MakeScene(const QTemporaryDir& folder) {
    Mel(QString("playbackOptions -ast 1 -aet %1 -min 1 -max %1 -loop continuous").arg(FRAMES));
    for (quint32 layer = 0; layer < 3; ++layer) {
        QFile file(folder.filePath("strokes.json"));
        file.open(QIODevice::WriteOnly);
        file.write(Recording(layer));
        file.close();
        Mel("qmVellixLayer -add -layerState 0 persp");
        Mel("currentTime 1; qmVellixReplay -file \"" + file.fileName() + "\" -camera persp");
    }
    Settings::ghostPrev = Settings::ghostNext = false;
}

/// Lets every drawing be one that was never shown, and is packed.
void ForgetAll() {
    for (Layer* layer : BaseNode::GetMaster()->GetLayerManager()->GetLayers(CAMERA)) {
        for (int index = 0; index < layer->FrameCount(); ++index) {
            Frame* const frame = layer->GetFrame(index);
            frame->SetPackedImage(frame->GetPackedImage());
        }
    }
}

/// The time slider's own playback at 24 frames a second, once through the scene. Returns the frames a second
/// that were shown.
double CountPlayed() {
    constexpr int milliseconds = 3000;
    Mel("currentUnit -time film; playbackOptions -playbackSpeed 1; currentTime 1; play -forward true");
    int seen = 0;
    int last = -1;
    const auto counting = QObject::connect(&View(), &ViewportWidget::Drawn, &View(), [&] {
        const int now = MayaUtil::GetPlaybackTimeValue();
        seen += now == last ? 0 : 1;
        last = now;
    });
    DrawingWindow::Turn(milliseconds);
    QObject::disconnect(counting);
    Mel("play -state off");
    return seen * 1000.0 / milliseconds;
}

void Play(benchmark::State& state, bool forgets) {
    for (auto _ : state) {
        if (forgets) {
            ForgetAll();
        }
        state.counters["frames_per_second"] = CountPlayed();
    }
}
BENCHMARK_CAPTURE(Play, first, true)->UseRealTime()->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Play, again, false)->UseRealTime()->Iterations(1)->Unit(benchmark::kMillisecond);

/// A frame of playback as fast as possible, from the new time to the last pixel.
void ShowFrame(benchmark::State& state) {
    int frame = 0;
    for (auto _ : state) {
        MayaUtil::SetPlaybackTime(1 + frame++ % FRAMES);
        g_window->DrawNow();
    }
    state.counters["frames_per_second"] = benchmark::Counter(frame, benchmark::Counter::kIsRate);
}
BENCHMARK(ShowFrame)->UseRealTime()->Unit(benchmark::kMillisecond);

/// The part of ShowFrame that composes the picture of the new time.
void ComposeFrame(benchmark::State& state) {
    BaseNode* const node = BaseNode::GetMaster();
    int frame = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(node->GetLayerManager()->ComposeFrame(CAMERA, 1 + frame++ % FRAMES, false));
    }
}
BENCHMARK(ComposeFrame)->UseRealTime()->Unit(benchmark::kMillisecond);

/// The part that draws the view with an uploaded picture: the 3D scene and the drawing.
void DrawFrame(benchmark::State& state) {
    g_window->DrawNow();
    for (auto _ : state) {
        View().BeginGl(); // discards what the view knows of its last frame
        View().EndGl();
        g_window->DrawNow();
    }
}
BENCHMARK(DrawFrame)->UseRealTime()->Unit(benchmark::kMillisecond);

/// The part that uploads the picture.
void UploadFrame(benchmark::State& state) {
    const ImageUpload upload(View());
    for (auto _ : state) {
        upload.Run();
    }
}
BENCHMARK(UploadFrame)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    lightbox::WindowSession::PrepareApplication();
    const QApplication application(argc, argv);
    const QTemporaryDir folder;
    DrawingWindow window(QSize(1280, 720));
    g_window = &window;
    if (View().size() != QSize(1280, 720)) {
        std::cerr << "The viewport cannot be made 1280 x 720 here.\n";
        return 1;
    }
    MakeScene(folder);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
