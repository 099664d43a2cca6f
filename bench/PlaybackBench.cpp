// Playback in a window with software OpenGL: three layers keyed on ones in a viewport of 1280 x 720, as a
// whole and by its parts: composing the picture, bringing it to the card, drawing the view.
#include "core/LayerManager.h"
#include "host/MayaUtil.h"
#include "host/PluginMain.h"
#include "host/Settings.h"
#include "mel/Interpreter.h"
#include "node/BaseNode.h"
#include "scene/Host.h"
#include "scene/PluginManager.h"
#include "window/MainWindow.h"
#include "window/ViewportPanel.h"
#include "window/ViewportPanels.h"
#include "window/ViewportWidget.h"
#include "window/WindowInterface.h"
#include "window/WindowSession.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QOpenGLFunctions>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <iostream>
#include <memory>
#include <set>

namespace {

using namespace vellix;
using lightbox::Host;
using lightbox::ViewportWidget;

constexpr int FRAMES = 24;
const QString CAMERA = QStringLiteral("persp");

void Mel(const QString& text) {
    Host::Get().interpreter().Execute(text.toStdString());
}

ViewportWidget& View() {
    return lightbox::WindowInterface::Current(Host::Get())->Panels().Find("modelPanel4")->View();
}

void Settle(int milliseconds) {
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < milliseconds) {
        QApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 10);
    }
}

/// Eight strokes across every frame.
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
        Mel(layer == 0 ? "qmVellixNode -layer -camera persp -layerState 0"
                       : "qmVellixLayer -add -layerState 0 persp");
        Mel("currentTime 1; qmVellixReplay -file \"" + file.fileName() + "\" -camera persp");
    }
    Settings::ghostPrev = Settings::ghostNext = false;
}

bool SizeView(lightbox::MainWindow& window) {
    const QSize wanted(1280, 720);
    for (int round = 0; round < 6 && View().size() != wanted; ++round) {
        window.resize(window.size() + wanted - View().size());
        Settle(50);
    }
    return View().size() == wanted;
}

/// Draws the view and waits for the last pixel. The window's own composition lets no frame begin before the
/// one before is shown, so the event loop has to turn.
void DrawNow() {
    const unsigned before = View().FrameCount();
    View().Refresh(false);
    while (View().FrameCount() == before) {
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    View().makeCurrent();
    QOpenGLContext::currentContext()->functions()->glFinish();
    View().doneCurrent();
}

/// The time slider's own playback at 24 frames a second: how many frames of the scene were seen.
void Play(benchmark::State& state) {
    constexpr int milliseconds = 3000;
    double framesASecond = 0.0;
    for (auto _ : state) {
        Mel("currentUnit -time film; playbackOptions -playbackSpeed 1; currentTime 1; play -forward true");
        int seen = 0;
        int last = -1;
        const auto counting = QObject::connect(&View(), &ViewportWidget::Drawn, &View(), [&] {
            const int now = MayaUtil::GetPlaybackTimeValue();
            seen += now == last ? 0 : 1;
            last = now;
        });
        Settle(milliseconds);
        QObject::disconnect(counting);
        Mel("play -state off");
        framesASecond = seen * 1000.0 / milliseconds;
    }
    state.counters["frames_per_second"] = framesASecond;
}
BENCHMARK(Play)->UseRealTime()->Iterations(1)->Unit(benchmark::kMillisecond);

/// A frame of playback, from the new time to the last pixel, as fast as it goes.
void ShowFrame(benchmark::State& state) {
    int frame = 0;
    for (auto _ : state) {
        MayaUtil::SetPlaybackTime(1 + frame++ % FRAMES);
        DrawNow();
    }
    state.counters["frames_per_second"] = benchmark::Counter(frame, benchmark::Counter::kIsRate);
}
BENCHMARK(ShowFrame)->UseRealTime()->Unit(benchmark::kMillisecond);

/// Of that, the picture of the new time.
void ComposeFrame(benchmark::State& state) {
    BaseNode* const node = BaseNode::GetMaster();
    int frame = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(node->GetLayerManager()->ComposeFrame(CAMERA, 1 + frame++ % FRAMES, false));
    }
}
BENCHMARK(ComposeFrame)->UseRealTime()->Unit(benchmark::kMillisecond);

/// The view again with what the card has: the 3D scene and the drawing.
void DrawFrame(benchmark::State& state) {
    DrawNow();
    for (auto _ : state) {
        DrawNow();
    }
}
BENCHMARK(DrawFrame)->UseRealTime()->Unit(benchmark::kMillisecond);

/// What bringing the picture to the card takes by itself.
void UploadFrame(benchmark::State& state) {
    const QImage image(1024, 1024, QImage::Format_RGBA8888);
    View().makeCurrent();
    QOpenGLFunctions* const gl = QOpenGLContext::currentContext()->functions();
    GLuint texture = 0;
    gl->glGenTextures(1, &texture);
    gl->glBindTexture(GL_TEXTURE_2D, texture);
    gl->glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 1024, 1024, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    for (auto _ : state) {
        gl->glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 1024, 1024, GL_RGBA, GL_UNSIGNED_BYTE, image.constBits());
        gl->glFinish();
    }
    gl->glDeleteTextures(1, &texture);
    View().doneCurrent();
}
BENCHMARK(UploadFrame)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    lightbox::WindowSession::PrepareApplication();
    QApplication application(argc, argv);
    const QTemporaryDir folder;
    Host host({false, folder.path().toStdString()});
    lightbox::WindowSession session(host);
    host.plugins().LoadBuiltin("vellix2", initializePlugin, uninitializePlugin);
    lightbox::MainWindow& window = *lightbox::WindowInterface::Current(host);
    window.show();
    Settle(100);
    MakeScene(folder);
    if (!SizeView(window)) {
        std::cerr << "The viewport cannot be made 1280 x 720 here.\n";
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
