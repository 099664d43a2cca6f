// Measures the time from a move of the pointer to the frame that shows it, in a window with ten layers,
// ghosts and a view of 1920 x 1080. The pointer really moves, 500 times in one stroke; each move is timed.
#include "DrawingWindow.h"
#include "core/Frame.h"
#include "core/Layer.h"
#include "host/Settings.h"
#include "paint/Stroke.h"
#include "plugin/tools/RealInput.h"

#include <QPainter>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cmath>
#include <random>
#include <vector>

using namespace vellix;

namespace {

constexpr int MOVES = 500;
constexpr QSize VIEW(1920, 1080);

QImage Drawing(int layer, int frame) {
    QImage image(1024, 1024, QImage::Format_RGBA8888);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor::fromHsv(layer * 36, 255, 220, 180), 8));
    for (int ring = 0; ring < 6; ++ring) {
        painter.drawEllipse(QPoint(200 + 60 * layer, 300 + 40 * frame), 40 + 30 * ring, 60 + 20 * ring);
    }
    return image;
}

void FillLayers(DrawingWindow& window) {
    for (int layer = 0; layer < 10; ++layer) {
        window.Run("qmVellixLayer -add -ls 0 persp");
        for (const int time : {1, 5, 9, 13, 17, 21, 25}) {
            window.Run("currentTime " + std::to_string(time) + "; qmVellixFrame -insert");
        }
        const Layer& drawn = *DrawingWindow::Node().GetActiveLayer("persp");
        for (int frame = 0; frame < drawn.FrameCount(); ++frame) {
            drawn.GetFrame(frame)->SetImage(Drawing(layer, frame));
        }
    }
    window.Run("qmVellixLayer -e -active 4 persp; currentTime 13");
    window.Run("qmVellixUtil -e -gp 1; qmVellixUtil -e -gn 1; select -clear");
    DrawingWindow::Turn(200);
}

double At(std::vector<double> values, double share) {
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(share * static_cast<double>(values.size() - 1))];
}

double Milliseconds(const QElapsedTimer& timer) {
    return static_cast<double>(timer.nsecsElapsed()) * 1e-6;
}

/// Draws one stroke of MOVES moves, a spiral about the middle of the view. The moves are 11 pixels long, so
/// that the tool drops no point.
template <typename Move>
void DrawStroke(DrawingWindow& session, RealInput& input, Move move) {
    const auto place = [&session](int i) {
        const double radius = 150.0 + 0.5 * i;
        const double angle = 22.0 * std::log(radius / 150.0);
        const QPointF around(radius * std::cos(angle), radius * std::sin(angle));
        return session.View().mapToGlobal(session.View().rect().center() + around.toPoint());
    };
    session.Run("qmVellixUtil -brushTool; qmVellixUtil -brushOptions 24 80 100 0");
    input.MoveTo(place(0));
    DrawingWindow::Turn(50);
    input.Press();
    DrawingWindow::Until([] { return DrawingWindow::Node().HasActiveStroke(); });
    const Stroke& stroke = *DrawingWindow::Node().GetActiveStroke("persp", false);
    DrawingWindow::Until([&] { return stroke.points.size() == 2; });
    std::mt19937 random(7);
    for (int i = 1; i <= MOVES; ++i) {
        move(stroke, [&, i] { input.MoveTo(place(i)); });
        DrawingWindow::Turn(4 + static_cast<int>(random() % 9)); // out of step with the sampling
    }
    input.Release();
    DrawingWindow::Until([] { return !DrawingWindow::Node().HasActiveStroke(); });
    DrawingWindow::Turn(600); // else the next press is a double click
    session.Run("undo");
}

using Renderer = lightbox::ViewOptions::Renderer;

void Latency(benchmark::State& state, Renderer renderer) {
    DrawingWindow session(VIEW);
    lightbox::ViewOptions options = session.View().Options();
    options.renderer = renderer;
    session.View().SetOptions(options);
    FillLayers(session);
    RealInput input;
    if (!input.IsAvailable()) {
        state.SkipWithError("The display does not let the pointer be moved");
        return;
    }
    for (auto _ : state) {
        std::vector<double> shown;
        QElapsedTimer timer;
        bool isShown = false;
        const Stroke* drawn = nullptr;
        int before = 0;
        const auto connection = QObject::connect(&session.View(), &QOpenGLWidget::frameSwapped, [&] {
            isShown = isShown || (drawn && drawn->points.size() > before && !drawn->changed);
        });
        DrawStroke(session, input, [&](const Stroke& stroke, const auto& move) {
            drawn = &stroke;
            before = stroke.points.size();
            isShown = false;
            timer.start();
            move();
            DrawingWindow::Until([&] { return isShown; });
            shown.push_back(Milliseconds(timer));
        });
        QObject::disconnect(connection);

        // Times the parts of a frame separately. A whole image is uploaded, which is more than a stroke
        // needs.
        const ImageUpload upload(session.View());
        std::vector<double> composing;
        std::vector<double> uploading;
        std::vector<double> drawing;
        std::vector<double> window; // the share of drawing that an unchanged frame takes too
        DrawStroke(session, input, [&](const Stroke& stroke, const auto& move) {
            const int points = stroke.points.size();
            session.View().setUpdatesEnabled(false);
            move();
            DrawingWindow::Until([&] { return stroke.points.size() > points; });
            timer.start();
            DrawingWindow::Node().GetFinalImage("persp");
            composing.push_back(Milliseconds(timer));
            timer.start();
            upload.Run();
            uploading.push_back(Milliseconds(timer));
            session.View().setUpdatesEnabled(true);
            timer.start();
            session.DrawNow(); // with nothing left to compose
            drawing.push_back(Milliseconds(timer));
            timer.start();
            session.DrawNow();
            window.push_back(Milliseconds(timer));
        });
        state.SetIterationTime(At(shown, 0.5) * 1e-3);
        state.counters["median"] = At(shown, 0.5);
        state.counters["worst"] = At(shown, 0.99);
        state.counters["composing"] = At(composing, 0.5);
        state.counters["uploading"] = At(uploading, 0.5);
        state.counters["drawing"] = At(drawing, 0.5);
        state.counters["window"] = At(window, 0.5);
    }
}
/// From a flip to the frame that shows it, as the key's command runs it.
void Flip(benchmark::State& state) {
    constexpr int flips = 100;
    DrawingWindow session(VIEW);
    FillLayers(session);
    for (auto _ : state) {
        std::vector<double> shown;
        unsigned frames = 0;
        QElapsedTimer timer;
        for (int i = 0; i < 2 * flips; ++i) {
            const unsigned before = session.View().FrameCount();
            const std::string line = i % 2 == 0 ? "qmVellixUtil -flip -1" : "qmVellixUtil -flip 0";
            bool isShown = false;
            const auto connection = QObject::connect(&session.View(), &QOpenGLWidget::frameSwapped, [&] {
                isShown = session.View().FrameCount() != before;
            });
            timer.start();
            session.Run(line);
            DrawingWindow::Until([&] { return isShown; });
            frames += session.View().FrameCount() - before;
            shown.push_back(Milliseconds(timer));
            QObject::disconnect(connection);
            DrawingWindow::Turn(20);
        }
        state.SetIterationTime(At(shown, 0.5) * 1e-3);
        state.counters["median"] = At(shown, 0.5);
        state.counters["worst"] = At(shown, 0.99);
        state.counters["frames"] = static_cast<double>(frames) / (2 * flips);
    }
}
BENCHMARK(Flip)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

BENCHMARK_CAPTURE(Latency, Viewport2, Renderer::Viewport2)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Latency, Legacy, Renderer::Legacy)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    return DrawingWindow::RunBenchmarks(argc, argv);
}
