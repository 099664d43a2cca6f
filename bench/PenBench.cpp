// Measures how accurately the draw tool follows a pen: the pointer draws the strokes of a recording at their
// own speed, on an image that is shown pixel for pixel.
#include "DrawingWindow.h"
#include "paint/Stroke.h"
#include "paint/StrokeRecording.h"
#include "paint/StrokeSmoother.h"
#include "plugin/tools/RealInput.h"

#include <QLineF>

#include <algorithm>
#include <atomic>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cmath>
#include <limits>
#include <thread>
#include <vector>

using namespace vellix;

namespace {

constexpr QSize VIEW(1024, 1024);
constexpr int SAMPLE_PERIOD = 8; // milliseconds
/// Phases of the sampling to compare with, a quarter of a millisecond apart.
constexpr int PHASES = 32;

struct TimedPoint {
    QPointF position; ///< image pixels
    double time;      ///< milliseconds from the first
};
using TimedPath = std::vector<TimedPoint>;

QPointF At(const TimedPath& path, double time) {
    const auto next = std::lower_bound(path.begin(), path.end(), time,
                                       [](const TimedPoint& point, double t) { return point.time < t; });
    if (next == path.begin()) {
        return path.front().position;
    }
    if (next == path.end()) {
        return path.back().position;
    }
    const TimedPoint& before = *(next - 1);
    const double share = (time - before.time) / std::max(next->time - before.time, 1e-9);
    return before.position + (next->position - before.position) * share;
}

/// Returns the last point of the path at or before the time: the pointer jumps from point to point.
QPointF LastBefore(const TimedPath& path, double time) {
    const auto next = std::upper_bound(path.begin(), path.end(), time,
                                       [](double t, const TimedPoint& point) { return t < point.time; });
    return next == path.begin() ? path.front().position : (next - 1)->position;
}

/// Returns the smoothed points of the path, sampled at the tool's rate. The first sample is at 0, the second
/// at `phase`, in milliseconds.
QList<StrokePoint> Smoothed(const TimedPath& path, const RecordedStroke& recorded, double phase) {
    Stroke stroke;
    stroke.tool = recorded.tool;
    StrokeSmoother smoother;
    StrokePoint point;
    point.size = recorded.size;
    const auto receive = [&](double time) {
        point.position = LastBefore(path, time).toPoint();
        smoother.Receive(stroke, point, QString());
    };
    receive(0.0);
    double time = phase;
    while (time < path.back().time + SAMPLE_PERIOD) {
        receive(time);
        time += SAMPLE_PERIOD;
    }
    return stroke.points;
}

/// Returns the smoothed points for every phase of the sampling. The phase is arbitrary, and where a pen turns
/// fast, the lines of two phases lie several pixels apart even without any fault.
std::vector<QList<StrokePoint>> SmoothedInEveryPhase(const TimedPath& path, const RecordedStroke& recorded) {
    std::vector<QList<StrokePoint>> lines;
    for (int phase = 1; phase <= PHASES; ++phase) {
        lines.push_back(Smoothed(path, recorded, static_cast<double>(phase * SAMPLE_PERIOD) / PHASES));
    }
    return lines;
}

double Distance(const QPointF& point, const QList<StrokePoint>& line) {
    double nearest = QLineF(point, line.first().position).length();
    for (int i = 1; i < line.size(); ++i) {
        const QPointF from = line.at(i - 1).position;
        const QPointF along = QPointF(line.at(i).position) - from;
        const double length = QPointF::dotProduct(along, along);
        const double share =
            length > 0.0 ? std::min(std::max(QPointF::dotProduct(point - from, along) / length, 0.0), 1.0)
                         : 0.0;
        nearest = std::min(nearest, QLineF(point, from + along * share).length());
    }
    return nearest;
}

/// Moves the pointer along the path, every millisecond if the machine can. `origin` is the screen position of
/// the path's point (0, 0). Returns the positions and times of the pointer.
TimedPath Follow(const TimedPath& path, const QPoint& origin) {
    RealInput input;
    TimedPath followed;
    const auto start = std::chrono::steady_clock::now();
    const auto now = [start] {
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    };
    const auto moveTo = [&](const QPointF& position) {
        input.MoveTo(origin + position.toPoint());
        followed.push_back({position, now()});
    };
    double time = 0.0;
    while (time <= path.back().time) {
        moveTo(At(path, time));
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        time = now();
    }
    moveTo(path.back().position);
    return followed;
}

/// Draws a stroke along the path. Returns its points, and in `followed` the path that the pointer took.
QList<StrokePoint> Drawn(DrawingWindow& window, RealInput& input, const TimedPath& path,
                         TimedPath& followed) {
    // A sample lies one pixel to the right of the pointer and one below it.
    const int above = (1024 - window.View().height() + 1) / 2;
    const QPoint origin = window.View().mapToGlobal(QPoint(-1, -above + 1));
    input.MoveTo(origin + path.front().position.toPoint());
    DrawingWindow::Turn(30);
    input.Press();
    DrawingWindow::Until([] { return DrawingWindow::Node().HasActiveStroke(); });
    const Stroke& stroke = *DrawingWindow::Node().GetActiveStroke("persp", false);
    DrawingWindow::Until([&] { return stroke.points.size() == 2; });
    std::atomic<bool> done(false);
    std::thread pen([&] {
        followed = Follow(path, origin);
        done = true;
    });
    DrawingWindow::Until([&] { return done.load(); });
    pen.join();
    DrawingWindow::Turn(3 * SAMPLE_PERIOD);
    const QList<StrokePoint> points = stroke.points;
    input.Release();
    DrawingWindow::Until([] { return !DrawingWindow::Node().HasActiveStroke(); });
    return points;
}

void Prepare(DrawingWindow& window, const char* tool, int size) {
    window.Run("qmVellixUtil -pencilTool; qmVellixUtil -pencilOptions " + std::to_string(size) + " 100 0");
    window.Run(std::string("qmVellixUtil -brushOptions ") + std::to_string(size) + " 100 100 0");
    window.Run(std::string("qmVellixUtil ") + tool);
}

/// A straight line drawn in a second, with a point at every pixel.
void SampleRate(benchmark::State& state) {
    DrawingWindow window(VIEW);
    RealInput input;
    window.Run("qmVellixLayer -add -ls 0 persp; qmVellixFrame -insert");
    for (auto _ : state) {
        Prepare(window, "-pencilTool", 1);
        const TimedPath path{{QPointF(20, 500), 0.0}, {QPointF(1000, 500), 1000.0}};
        TimedPath followed;
        state.counters["samples"] = Drawn(window, input, path, followed).size();
    }
}
BENCHMARK(SampleRate)->Iterations(1);

void Recording(benchmark::State& state) {
    StrokeRecording recording;
    QString error;
    if (!recording.Read(QString::fromLocal8Bit(qgetenv("VELLIX_BENCH_RECORDING")), error)) {
        state.SkipWithError(("VELLIX_BENCH_RECORDING: " + error).toLocal8Bit().constData());
        return;
    }
    DrawingWindow window(VIEW);
    RealInput input;
    window.Run("qmVellixLayer -add -ls 0 persp; qmVellixFrame -insert");
    for (auto _ : state) {
        double worst = 0.0;
        int strayed = 0;
        double sum = 0.0;
        int count = 0;
        for (const RecordedStroke& recorded : recording.GetStrokes()) {
            TimedPath path;
            for (const RecordedSample& sample : recorded.samples) {
                path.push_back({sample.position, sample.milliseconds});
            }
            Prepare(window, recorded.tool == ToolType::Pencil ? "-pencilTool" : "-brushTool", recorded.size);
            TimedPath followed;
            const QList<StrokePoint> points = Drawn(window, input, path, followed);
            const std::vector<QList<StrokePoint>> expected = SmoothedInEveryPhase(followed, recorded);
            for (const StrokePoint& point : points) {
                double distance = std::numeric_limits<double>::max();
                for (const QList<StrokePoint>& line : expected) {
                    distance = std::min(distance, Distance(point.position, line));
                }
                worst = std::max(worst, distance);
                strayed += distance > 1.5 ? 1 : 0;
                sum += distance;
                ++count;
            }
        }
        state.counters["worst"] = worst;
        state.counters["strayed"] = strayed;
        state.counters["mean"] = sum / std::max(count, 1);
        state.counters["strokes"] = static_cast<double>(recording.GetStrokes().size());
        state.counters["points"] = count;
    }
}
BENCHMARK(Recording)->Iterations(1);

} // namespace

int main(int argc, char** argv) {
    return DrawingWindow::RunBenchmarks(argc, argv);
}
