// Measures composition against a plain reference that redraws everything with one QPainter on straight-alpha
// images.
#include "app/LightboxHost.h"
#include "core/Frame.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "host/GhostLayers.h"
#include "host/Settings.h"
#include "paint/Composite.h"
#include "paint/DrawUtil.h"
#include "paint/LineStyle.h"
#include "paint/StrokeSmoother.h"
#include "plugin/core/PlainComposer.h"

#include <QApplication>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <cmath>
#include <memory>

namespace {

using namespace vellix;

const QString CAMERA = QStringLiteral("persp");
constexpr int STROKES = 6;   ///< in each drawing
constexpr int GHOSTS = 3;    ///< on each side
constexpr int KEYS = 10;     ///< of each layer, at 1, 2, 3...
constexpr int ACTIVE = 2;    ///< the layer that is drawn on
constexpr int DEEP_KEYS = 8; ///< of every layer whose ghosts are shown at the times 4 and 5

/// Returns a stroke like one by hand: a curve of a few hundred pixels across the image.
Stroke RandomStroke(QRandomGenerator& random) {
    Stroke stroke;
    stroke.tool = random.bounded(2) == 0 ? ToolType::Pencil : ToolType::Brush;
    stroke.color = QColor::fromRgb(QRgb(random.bounded(0x1000000)));
    const int size = 4 + random.bounded(28);
    double x = 150 + random.bounded(700);
    double y = 150 + random.bounded(700);
    double angle = random.bounded(6.28);
    const double bend = random.bounded(0.2) - 0.1;
    for (int i = 0; i < 60; ++i) {
        StrokePoint point;
        point.size = size;
        point.opacity = 0.7f;
        point.position = QPoint(static_cast<int>(x), static_cast<int>(y));
        stroke.points.append(point);
        x += 8 * std::cos(angle);
        y += 8 * std::sin(angle);
        angle += bend;
    }
    return stroke;
}

QImage RandomDrawing(QRandomGenerator& random) {
    QImage drawing = PlainComposer::Blank();
    for (int i = 0; i < STROKES; ++i) {
        const Stroke stroke = RandomStroke(random);
        QImage work = PlainComposer::Blank();
        QColor color = stroke.color;
        color.setAlpha(0);
        work.fill(color);
        DrawUtil::DrawFreehand(work, stroke.points, 0, stroke.tool);
        composite::SourceOver(drawing, work, TileMask::All()); // as strokes are committed
    }
    return drawing;
}

/// A document of layers with a different drawing at every key. The ghosts of the active layer are on.
class Document {
public:
    /// `isDeep`: not only the active layer has many keys.
    explicit Document(int layers, bool isDeep = false) {
        Settings::ghostPrev = Settings::ghostNext = true;
        Settings::ghostPrevCount = Settings::ghostNextCount = GHOSTS;
        Settings::ghostColorOverride = false;
        QRandomGenerator random(20180314);
        for (int i = 0; i < layers; ++i) {
            manager.InsertLayer(CAMERA, -1, QString());
            const bool hasAll = isDeep || i == ACTIVE;
            const int keys = isDeep ? DEEP_KEYS : KEYS;
            for (int key = 1; key <= (hasAll ? keys : 2); ++key) {
                auto frame = std::make_unique<Frame>(MTime(hasAll ? key : 3 + key, MTime::uiUnit()));
                frame->SetImage(RandomDrawing(random));
                if (isDeep) {
                    frame->PackImage(); // or they fill the memory
                }
                manager.GetLayer(CAMERA, i)->InsertFrame(frame.release());
            }
        }
        manager.SetActiveLayer(CAMERA, ACTIVE, true);
        ShowTime(5);
        ShowTime(4);
    }

    /// At times 4 and 5 every layer shows a different drawing.
    void ShowTime(int frame) {
        manager.OnPlaybackTimeChanged(frame, false);
        benchmark::DoNotOptimize(manager.GetFlattenedImage(CAMERA));
    }

    /// The layers and ghosts shown now, as input of the plain composer.
    PlainComposer Plain() {
        PlainComposer plain;
        plain.previousCount = plain.nextCount = GHOSTS;
        Layer* active = manager.GetActiveLayer(CAMERA);
        for (int k = GHOSTS; k >= 1; --k) {
            plain.previous.push_back(active->GetImage(-k));
            plain.next.push_back(active->GetImage(k));
        }
        for (Layer* layer : manager.GetLayers(CAMERA)) {
            plain.layers.push_back(layer->GetImage(0));
        }
        return plain;
    }

    LayerManager manager;
};

/// A brush stroke of size 100 in circles around the image's centre.
class CirclingStroke {
public:
    CirclingStroke(Document& document)
        : manager_(document.manager)
        , stroke_(manager_.GetActiveStroke(CAMERA, true)) {
        stroke_->tool = ToolType::Brush;
        stroke_->color = QColor(20, 90, 200);
        Grow();
        Grow();
    }

    ~CirclingStroke() { manager_.CancelActiveStroke(); }

    /// Adds one segment, eight pixels long.
    void Grow() {
        StrokePoint point;
        point.size = 100;
        point.opacity = 0.8f;
        point.position = QPoint(512 + int(300 * std::cos(angle_)), 512 + int(300 * std::sin(angle_)));
        stroke_->points.append(point);
        stroke_->changed = true;
        angle_ += 8.0 / 300.0;
        benchmark::DoNotOptimize(manager_.GetFlattenedImage(CAMERA));
    }

    const Stroke& Get() const { return *stroke_; }

private:
    LayerManager& manager_;
    Stroke* stroke_;
    double angle_ = 0;
};

/// A refresh for each sample of a fast pen in circles, from the sample to the composed image.
void SampleRefresh(benchmark::State& state, ToolType tool, int size, const LineStyle& style) {
    Document document(10);
    LayerManager& manager = document.manager;
    Stroke* const stroke = manager.GetActiveStroke(CAMERA, true);
    stroke->tool = tool;
    stroke->color = QColor(20, 90, 200);
    StrokeSmoother smoother;
    smoother.Reset(style);
    double angle = 0.0;
    StrokePoint sample;
    sample.size = size;
    sample.opacity = 0.8f;
    for (auto _ : state) {
        sample.position = QPoint(512 + int(300 * std::cos(angle)), 512 + int(300 * std::sin(angle)));
        smoother.Receive(*stroke, sample, QString());
        smoother.DrawTail(*stroke);
        benchmark::DoNotOptimize(manager.GetFlattenedImage(CAMERA));
        angle += 16.0 / 300.0;
    }
    manager.CancelActiveStroke();
}

LineStyle Curves() {
    LineStyle style;
    style.smoothCurves = true;
    return style;
}

LineStyle CurvesOnAString() {
    LineStyle style = Curves();
    style.stabiliser = 40;
    return style;
}

void PlainRebuild(benchmark::State& state) {
    Document document(static_cast<int>(state.range(0)));
    const PlainComposer plain = document.Plain();
    QImage image = PlainComposer::Blank();
    QImage previousGhosts = image.copy();
    QImage ghosts = image.copy();
    for (auto _ : state) {
        plain.Compose(image, previousGhosts, ghosts);
        benchmark::DoNotOptimize(image.constBits());
    }
}

/// Composes when all layers and ghosts change, as on a change of time.
void Rebuild(benchmark::State& state) {
    Document document(static_cast<int>(state.range(0)));
    int frame = 4;
    for (auto _ : state) {
        frame = 9 - frame;
        document.ShowTime(frame);
    }
    state.counters["difference"] =
        PlainComposer::Difference(*document.manager.GetFlattenedImage(CAMERA), document.Plain().Compose());
}

/// The same, with drawings that were decoded or painted but never composed; if `asImages`, with images that
/// other code has given the frames, of which nothing is known.
void RebuildFirstLook(benchmark::State& state, bool asImages) {
    Document document(static_cast<int>(state.range(0)));
    int frame = 4;
    for (auto _ : state) {
        state.PauseTiming();
        for (Layer* layer : document.manager.GetLayers(CAMERA)) {
            for (int i = 0; i < layer->FrameCount(); ++i) {
                Frame& drawing = *layer->GetFrame(i);
                if (asImages) {
                    benchmark::DoNotOptimize(drawing.GetImage().bits()); // which gets another cache key
                } else {
                    drawing.SetPackedImage(drawing.GetPackedImage());
                    drawing.Unpack();
                }
            }
        }
        state.ResumeTiming();
        frame = 9 - frame;
        document.ShowTime(frame);
    }
}

void PlainBrushRefresh(benchmark::State& state) {
    Document document(static_cast<int>(state.range(0)));
    CirclingStroke stroke(document);
    PlainComposer plain = document.Plain();
    QImage work = PlainComposer::Blank();
    plain.layers.insert(plain.layers.begin() + ACTIVE + 1, &work);
    QImage image = PlainComposer::Blank();
    QImage previousGhosts = image.copy();
    QImage ghosts = image.copy();
    for (auto _ : state) {
        DrawUtil::DrawFreehand(work, stroke.Get().points, 0, ToolType::Brush);
        plain.Compose(image, previousGhosts, ghosts);
        benchmark::DoNotOptimize(image.constBits());
    }
}

void BrushRefresh(benchmark::State& state) {
    Document document(static_cast<int>(state.range(0)));
    CirclingStroke stroke(document);
    for (auto _ : state) {
        stroke.Grow();
    }
}

void Unchanged(benchmark::State& state) {
    Document document(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(document.manager.GetFlattenedImage(CAMERA));
    }
}

/// Ten layers with the ghosts of `layers`. All layers and ghosts change, as on a change of time.
void RebuildGhosts(benchmark::State& state, GhostLayers layers) {
    Settings::ghostLayers = static_cast<int>(layers);
    Document document(10, true);
    int frame = 4;
    for (auto _ : state) {
        frame = 9 - frame;
        document.ShowTime(frame);
    }
    Settings::ghostLayers = static_cast<int>(GhostLayers::Active);
}

/// The same, at times that were not shown lately.
void RebuildNewGhosts(benchmark::State& state, GhostLayers layers) {
    Settings::ghostLayers = static_cast<int>(layers);
    Document document(10, true);
    for (int key = 1; key <= DEEP_KEYS; ++key) {
        document.ShowTime(key); // decodes the drawings
    }
    int key = 0;
    for (auto _ : state) {
        key = key % DEEP_KEYS + 1;
        document.ShowTime(key);
    }
    Settings::ghostLayers = static_cast<int>(GhostLayers::Active);
}

/// The same; the drawing of one layer changes, as when a stroke is done or taken back.
void RedrawAmongGhosts(benchmark::State& state, GhostLayers layers) {
    Settings::ghostLayers = static_cast<int>(layers);
    Document document(10, true);
    QRandomGenerator random(7);
    const QImage drawings[] = {RandomDrawing(random), RandomDrawing(random)};
    Layer& active = *document.manager.GetActiveLayer(CAMERA);
    int shown = 0;
    for (auto _ : state) {
        shown = 1 - shown;
        active.SetImage(drawings[shown]);
        benchmark::DoNotOptimize(document.manager.GetFlattenedImage(CAMERA));
    }
    Settings::ghostLayers = static_cast<int>(GhostLayers::Active);
}

/// From the press of a flip key to its picture, and back.
void Flip(benchmark::State& state) {
    Document document(10, true);
    for (auto _ : state) {
        document.manager.Flip(CAMERA, -1, state.range(0) != 0);
        benchmark::DoNotOptimize(document.manager.GetFlattenedImage(CAMERA));
        document.manager.EndFlip();
        benchmark::DoNotOptimize(document.manager.GetFlattenedImage(CAMERA));
    }
}

BENCHMARK(PlainRebuild)->Arg(10)->Unit(benchmark::kMillisecond);
BENCHMARK(Rebuild)->Arg(10)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RebuildFirstLook, drawings, false)->Arg(10)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RebuildFirstLook, images, true)->Arg(10)->Unit(benchmark::kMillisecond);
BENCHMARK(PlainBrushRefresh)->Arg(10)->Unit(benchmark::kMillisecond);
BENCHMARK(BrushRefresh)->Arg(4)->Arg(10)->Arg(40)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(SampleRefresh, Brush100, ToolType::Brush, 100, LineStyle())->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(SampleRefresh, Brush100Styled, ToolType::Brush, 100, CurvesOnAString())
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(SampleRefresh, Brush100Curved, ToolType::Brush, 100, Curves())
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(SampleRefresh, Pencil30, ToolType::Pencil, 30, LineStyle())->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(SampleRefresh, Pencil30Styled, ToolType::Pencil, 30, CurvesOnAString())
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(SampleRefresh, Pencil30Curved, ToolType::Pencil, 30, Curves())
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(SampleRefresh, Pencil6, ToolType::Pencil, 6, LineStyle())->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(SampleRefresh, Pencil6Styled, ToolType::Pencil, 6, CurvesOnAString())
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(SampleRefresh, Pencil6Curved, ToolType::Pencil, 6, Curves())->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(RebuildGhosts, ofOne, GhostLayers::Active)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RebuildGhosts, ofAll, GhostLayers::Visible)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RebuildNewGhosts, ofOne, GhostLayers::Active)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RebuildNewGhosts, ofAll, GhostLayers::Visible)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RedrawAmongGhosts, ofOne, GhostLayers::Active)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RedrawAmongGhosts, ofAll, GhostLayers::Visible)->Unit(benchmark::kMillisecond);
BENCHMARK(Flip)->Arg(0)->Arg(1);
BENCHMARK(Unchanged)->Arg(10)->Arg(40)->Unit(benchmark::kNanosecond);

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const QTemporaryDir preferences;
    const lightbox::LightboxHost host({false, preferences.path().toStdString()});
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
