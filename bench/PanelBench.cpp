// Measures the layer manager with a hundred layers on five cameras: shown for the first time, after one
// change, and after a change of document. The reference is a plain tree widget that is cleared and refilled.
// All times include painting.
#include "app/LightboxHost.h"
#include "core/LayerState.h"
#include "ui/LayerManagerDialog.h"

#include <QApplication>
#include <QTemporaryDir>
#include <QTreeWidget>

#include <benchmark/benchmark.h>

namespace {

using namespace vellix;

constexpr int CAMERAS = 5;
constexpr int LAYERS = 20;
const QSize SIZE(320, 900);

/// Returns rows whose names depend on the seed.
QList<LayerManagerRow> Rows(int seed) {
    QList<LayerManagerRow> rows;
    for (int camera = 0; camera < CAMERAS; ++camera) {
        for (int layer = 0; layer < LAYERS; ++layer) {
            rows.append({QStringLiteral("camera%1").arg(camera),
                         QStringLiteral("shot %1 layer %2").arg(seed).arg(layer), (layer + seed) % 3 != 0,
                         static_cast<LayerState>((layer + seed) % 3)});
        }
    }
    return rows;
}

const QString ACTIVE = QStringLiteral("camera2");

void Paint(QWidget& widget) {
    QApplication::sendPostedEvents();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    benchmark::DoNotOptimize(widget.grab());
}

void FirstFill(benchmark::State& state) {
    const QList<LayerManagerRow> rows = Rows(0);
    for (auto _ : state) {
        state.PauseTiming();
        auto panel = std::make_unique<LayerManagerDialog>();
        panel->resize(SIZE);
        panel->show();
        state.ResumeTiming();
        panel->Fill(rows, ACTIVE, 7);
        panel->Update();
        Paint(*panel);
        state.PauseTiming();
        panel.reset();
        state.ResumeTiming();
    }
}

/// Refills the panel from two documents in turn.
void Refill(benchmark::State& state, const QList<LayerManagerRow>& first,
            const QList<LayerManagerRow>& second) {
    LayerManagerDialog panel;
    panel.resize(SIZE);
    panel.show();
    bool other = false;
    for (auto _ : state) {
        panel.Fill(other ? second : first, ACTIVE, 7);
        panel.Update();
        Paint(panel);
        other = !other;
    }
}

void RefillOther(benchmark::State& state) {
    Refill(state, Rows(0), Rows(1));
}

void RefillOneChange(benchmark::State& state) {
    QList<LayerManagerRow> changed = Rows(0);
    changed[47].visible = !changed[47].visible;
    Refill(state, Rows(0), changed);
}

void PlainTree(benchmark::State& state) {
    QTreeWidget tree;
    tree.setColumnCount(3);
    tree.resize(SIZE);
    tree.show();
    int seed = 0;
    for (auto _ : state) {
        const QList<LayerManagerRow> rows = Rows(seed++ % 2);
        tree.clear();
        QTreeWidgetItem* camera = nullptr;
        for (const LayerManagerRow& row : rows) {
            if (!camera || camera->text(0) != row.camera) {
                camera = new QTreeWidgetItem(&tree, {row.camera});
            }
            new QTreeWidgetItem(camera, {row.visible ? QStringLiteral("V") : QString(),
                                         QString::number(static_cast<int>(row.state)), row.name});
        }
        tree.expandAll();
        Paint(tree);
    }
}

BENCHMARK(FirstFill)->Unit(benchmark::kMillisecond);
BENCHMARK(RefillOther)->Unit(benchmark::kMillisecond);
BENCHMARK(RefillOneChange)->Unit(benchmark::kMillisecond);
BENCHMARK(PlainTree)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const QTemporaryDir preferences;
    const lightbox::LightboxHost host({true, preferences.path().toStdString()});
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
