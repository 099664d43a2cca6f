// Measures a scene of 500 keyed drawings: opening it compared with decoding its PNG bytes once, saving it
// after one change compared with encoding everything, its memory, and the speed of replaying a recording.
#include "SampleDrawings.h"
#include "app/LightboxHost.h"
#include "app/PluginManager.h"
#include "core/Frame.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "formats/SceneFiles.h"
#include "host/Settings.h"
#include "host/entry/PluginMain.h"
#include "mel/Interpreter.h"
#include "node/BaseNode.h"
#include "node/LayerDataAsciiWriter.h"
#include "paint/DrawUtil.h"
#include "paint/WholeFile.h"
#include "plugin/paint/PngBytes.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <ostream>
#include <streambuf>
#include <unistd.h>

namespace {

using namespace vellix;

const QString CAMERA = QStringLiteral("persp");
constexpr int FRAMES = 500;

std::unique_ptr<QTemporaryDir> g_folder;

QString ScenePath() {
    return g_folder->filePath("five-hundred.ma");
}

lightbox::mel::Value Mel(const QString& text) {
    return lightbox::Host::Get().interpreter().Execute(text.toStdString());
}

void NewScene() {
    lightbox::Host::Get().files().New(true);
}

void NewLayer() {
    NewScene();
    Mel("qmVellixNode -l -c persp");
}

/// Returns a loose drawing of a dozen strokes, which depends on the seed.
QImage Drawing(quint32 seed) {
    QRandomGenerator random(seed);
    QImage image(Settings::FINAL_IMAGE_WIDTH, Settings::FINAL_IMAGE_WIDTH, QImage::Format_RGBA8888);
    image.fill(QColor(30, 40, 60, 0));
    for (int stroke = 0; stroke < 12; ++stroke) {
        QList<StrokePoint> points;
        double x = 150 + random.bounded(700);
        double y = 150 + random.bounded(700);
        double angle = random.bounded(6.28);
        const double bend = random.bounded(0.2) - 0.1;
        const int size = 4 + random.bounded(20);
        for (int i = 0; i < 60; ++i) {
            StrokePoint point;
            point.size = size;
            point.opacity = 0.8f;
            point.position = QPoint(static_cast<int>(x), static_cast<int>(y));
            points.append(point);
            x += 7 * std::cos(angle);
            y += 7 * std::sin(angle);
            angle += bend;
        }
        DrawUtil::DrawFreehand(image, points, 0, stroke % 2 == 0 ? ToolType::Pencil : ToolType::Brush);
    }
    return image;
}

LayerManager& Layers() {
    return *BaseNode::GetMaster()->GetLayerManager();
}

/// The drawings' PNG bytes, and the scene file that holds them; written once.
const QList<QByteArray>& Drawings() {
    static QList<QByteArray> drawings;
    if (!drawings.isEmpty()) {
        return drawings;
    }
    for (int frame = 1; frame <= FRAMES; ++frame) {
        QByteArray png;
        DrawUtil::PackPngBuffer(Drawing(static_cast<quint32>(frame)), png);
        drawings.append(png);
    }
    NewScene();
    Mel("qmVellixNode -l -c persp -ln \"Rough\"");
    for (int frame = 1; frame <= FRAMES; ++frame) {
        auto keyed = std::make_unique<Frame>(MTime(frame, MTime::uiUnit()));
        keyed->SetPackedImage(drawings[frame - 1]);
        Layers().GetActiveLayer(CAMERA)->InsertFrame(keyed.release());
    }
    Mel("file -rename \"" + ScenePath() + "\"; file -save -type \"mayaAscii\"");
    NewScene();
    return drawings;
}

void Open() {
    lightbox::Host::Get().files().Open(ScenePath().toStdString(), true);
    if (Layers().GetActiveLayer(CAMERA)->FrameCount() != FRAMES) {
        std::cerr << "The scene did not come back whole\n";
        std::exit(1);
    }
}

void DecodeAll(benchmark::State& state) {
    const QList<QByteArray>& drawings = Drawings();
    for (auto _ : state) {
        for (const QByteArray& png : drawings) {
            QImage image;
            image.loadFromData(png, "PNG");
            benchmark::DoNotOptimize(image.constBits());
        }
    }
}

void OpenSceneOnOneProcessor(benchmark::State& state) {
    Drawings();
    NewScene();
    QProcess child;
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    for (auto _ : state) {
        child.start("taskset", {"1", QCoreApplication::applicationFilePath(), "--open", ScenePath()});
        child.waitForFinished(-1);
        state.SetIterationTime(child.readAllStandardOutput().split(' ').value(0).toDouble());
    }
}

/// Writes a scene of 5,000 transforms; with `refused`, a statement that has no place in a scene after every
/// fifth.
QString PlainScene(bool refused) {
    QString path = g_folder->filePath(refused ? "refused.ma" : "plain.ma");
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        std::abort();
    }
    file.write(
        "//Maya ASCII 2018 scene\nrequires maya \"2018\";\ncurrentUnit -l centimeter -a degree -t film;\n");
    for (int i = 0; i < 5000; ++i) {
        file.write(
            QString("createNode transform -n \"part%1\";\n\tsetAttr \".t\" -type \"double3\" %1 2 3 ;\n"
                    "\tsetAttr \".r\" -type \"double3\" 10 %1 30 ;\n\tsetAttr \".s\" -type \"double3\" 1 1 "
                    "%1 ;\n")
                .arg(i)
                .toLatin1());
        if (refused && i % 5 == 0) {
            file.write(QString("sysFile -delete \"part%1.txt\";\n").arg(i).toLatin1());
        }
    }
    return path;
}

/// Opens a scene without drawings, with or without a thousand statements that are refused.
void OpenPlainScene(benchmark::State& state, bool refused) {
    const std::string path = PlainScene(refused).toStdString();
    for (auto _ : state) {
        lightbox::Host::Get().files().Open(path, true);
    }
    NewScene();
}

void EncodeAll(benchmark::State& state) {
    std::vector<QImage> images;
    for (const QByteArray& png : Drawings()) {
        images.push_back(QImage::fromData(png, "PNG").convertToFormat(QImage::Format_RGBA8888));
    }
    for (auto _ : state) {
        for (const QImage& image : images) {
            QByteArray png;
            DrawUtil::PackPngBuffer(image, png);
            benchmark::DoNotOptimize(png.constData());
        }
    }
}

void SaveAfterOneChange(benchmark::State& state) {
    Drawings();
    Open();
    Mel("file -rename \"" + g_folder->filePath("changed.ma") + "\"");
    int shade = 0;
    for (auto _ : state) {
        state.PauseTiming();
        Layers().GetActiveLayer(CAMERA)->GetFrame(250)->GetImage().setPixelColor(5, 5,
                                                                                 QColor(++shade % 256, 9, 9));
        state.ResumeTiming();
        lightbox::Host::Get().files().Save(true);
    }
    NewScene();
}

/// Takes any number of bytes and keeps none.
class NoFile : public std::ostream {
public:
    NoFile()
        : std::ostream(&buffer_) {}

private:
    class Buffer : public std::streambuf {
        int_type overflow(int_type character) override { return traits_type::not_eof(character); }
        std::streamsize xsputn(const char*, std::streamsize count) override { return count; }
    };
    Buffer buffer_;
};

void WriteDrawing() {
    NoFile out;
    LayerDataAsciiWriter(Layers(), out).Write();
}

void ChangePixel(QImage& image, int shade) {
    image.setPixelColor(5, 5, QColor(shade % 256, 9, 9));
}

/// Writes the text of one dense drawing that has changed; with `isIdle`, after the program was idle.
void SaveDense(benchmark::State& state, bool isIdle) {
    NewLayer();
    Layers().AddFrame(CAMERA, MTime(1, MTime::uiUnit()));
    Frame& frame = *Layers().GetActiveLayer(CAMERA)->GetFrame(0);
    frame.SetImage(sample_drawings::Drawing(sample_drawings::DENSE));
    int shade = 0;
    for (auto _ : state) {
        state.PauseTiming();
        ChangePixel(frame.GetImage(), ++shade);
        if (isIdle) {
            frame.GetPackedImage(); // as IdleWork does
        }
        state.ResumeTiming();
        WriteDrawing();
    }
}

void EncodeDenseByQt(benchmark::State& state) {
    const QImage image = sample_drawings::Drawing(sample_drawings::DENSE);
    for (auto _ : state) {
        benchmark::DoNotOptimize(png_bytes::ByQt(image));
    }
}

/// Writes 500 changed drawings, fifty at a time.
void SaveChanged(benchmark::State& state) {
    constexpr int part = 50;
    for (auto _ : state) {
        qint64 nanoseconds = 0;
        for (int first = 0; first < FRAMES; first += part) {
            NewLayer();
            Layer& layer = *Layers().GetActiveLayer(CAMERA);
            for (int i = first; i < first + part; ++i) {
                auto frame = std::make_unique<Frame>(MTime(i, MTime::uiUnit()));
                frame->SetPackedImage(Drawings()[i]);
                ChangePixel(frame->GetImage(), i);
                layer.InsertFrame(frame.release());
            }
            QElapsedTimer timer;
            timer.start();
            WriteDrawing();
            nanoseconds += timer.nsecsElapsed();
        }
        state.SetIterationTime(static_cast<double>(nanoseconds) / 1e9);
    }
    NewScene();
}

void EncodeAllByQt(benchmark::State& state) {
    const QList<QByteArray>& drawings = Drawings();
    for (auto _ : state) {
        qint64 nanoseconds = 0;
        for (const QByteArray& png : drawings) {
            const QImage image = QImage::fromData(png, "PNG");
            QElapsedTimer timer;
            timer.start();
            benchmark::DoNotOptimize(png_bytes::ByQt(image));
            nanoseconds += timer.nsecsElapsed();
        }
        state.SetIterationTime(static_cast<double>(nanoseconds) / 1e9);
    }
}

constexpr int EXPORTED = 100;
constexpr int EXPORTED_LAYERS = 3;

/// Exports frames of three layers on threes.
void Export(benchmark::State& state) {
    Drawings();
    NewScene();
    for (int layer = 0; layer < EXPORTED_LAYERS; ++layer) {
        Mel(layer == 0 ? "qmVellixNode -l -c persp" : "qmVellixLayer -add -layerState 0 persp");
        for (int frame = 0; frame < EXPORTED; frame += 3) {
            auto keyed = std::make_unique<Frame>(MTime(frame + 1, MTime::uiUnit()));
            keyed->SetPackedImage(Drawings()[frame + 100 * layer]);
            Layers().GetActiveLayer(CAMERA)->InsertFrame(keyed.release());
        }
    }
    for (auto _ : state) {
        Mel(QString("qmVellixExport -camera persp -file \"%1/frame.####.png\" -startTime 1 -endTime %2")
                .arg(g_folder->path())
                .arg(EXPORTED));
    }
    NewScene();
}

/// The same frames decoded, composed and encoded one by one, with Qt alone.
void ExportPlainly(benchmark::State& state) {
    const QList<QByteArray>& drawings = Drawings();
    for (auto _ : state) {
        for (int frame = 0; frame < EXPORTED; ++frame) {
            QImage image(1024, 1024, QImage::Format_RGBA8888);
            image.fill(Qt::transparent);
            QPainter painter(&image);
            for (int layer = 0; layer < EXPORTED_LAYERS; ++layer) {
                painter.drawImage(0, 0, QImage::fromData(drawings[frame / 3 * 3 + 100 * layer], "PNG"));
            }
            painter.end();
            image.save(g_folder->filePath(QString("plain.%1.png").arg(frame)), "PNG");
        }
    }
}

/// The demo's three layers, with all pictures packed. Returns their bytes.
QByteArray DrawDemo() {
    NewLayer();
    const QString replay("qmVellixReplay -camera persp -file \"" VELLIX_SOURCE_FOLDER "/demo/%1.json\"");
    Mel(replay.arg("background"));
    for (const char* layer : {"rough", "cleanup"}) {
        Mel("qmVellixLayer -add -layerState 0 persp");
        Mel(replay.arg(layer));
    }
    QByteArray bytes;
    for (const Layer* layer : Layers().GetLayers(CAMERA)) {
        for (int i = 0; i < layer->FrameCount(); ++i) {
            bytes += layer->GetFrame(i)->GetPackedImage();
        }
    }
    return bytes;
}

/// Exports the demo with its layers for another program.
void ExportPclx(benchmark::State& state) {
    state.counters["bytes"] = DrawDemo().size();
    for (auto _ : state) {
        Mel(QString("qmVellixExport -camera persp -layered \"%1/demo.pclx\"").arg(g_folder->path()));
    }
    NewScene();
}

/// Writes the bytes of its pictures, as safely, to one file.
void WriteDemoBytes(benchmark::State& state) {
    const QByteArray bytes = DrawDemo();
    for (auto _ : state) {
        benchmark::DoNotOptimize(WholeFile::Write(g_folder->filePath("demo.bytes"), bytes));
    }
    NewScene();
}

constexpr int IMPORTED = 200;

QString ImportedPath(bool opaque, int number) {
    return g_folder->filePath(QString(opaque ? "paper.%1.png" : "cel.%1.png").arg(number, 4, 10, QChar('0')));
}

/// Files of drawings. With `opaque` they are on paper, so that their pixels have to be packed again.
void WritePictures(bool opaque) {
    for (int i = 0; i < IMPORTED; ++i) {
        QFile file(ImportedPath(opaque, i));
        if (file.exists()) {
            return;
        }
        QByteArray png = Drawings()[i];
        if (opaque) {
            QImage paper(1024, 1024, QImage::Format_RGB32);
            paper.fill(Qt::white);
            QPainter(&paper).drawImage(0, 0, QImage::fromData(png, "PNG"));
            DrawUtil::PackPngBuffer(paper, png);
        }
        if (!file.open(QIODevice::WriteOnly) || file.write(png) != png.size()) {
            std::abort();
        }
    }
}

/// Imports the files onto a new layer.
void Import(benchmark::State& state, bool opaque) {
    WritePictures(opaque);
    for (auto _ : state) {
        state.PauseTiming();
        NewLayer();
        state.ResumeTiming();
        Mel(QString("qmVellixImport -camera persp -file \"%1/%2.####.png\"")
                .arg(g_folder->path(), opaque ? "paper" : "cel"));
    }
    NewScene();
}

/// Reads, decodes and packs the files one after the other.
void DecodeAndPack(benchmark::State& state, bool opaque) {
    WritePictures(opaque);
    for (auto _ : state) {
        for (int i = 0; i < IMPORTED; ++i) {
            QFile file(ImportedPath(opaque, i));
            file.open(QIODevice::ReadOnly);
            QImage image;
            DrawUtil::UnpackPngBuffer(file.readAll(), image);
            QByteArray packed;
            DrawUtil::PackPngBuffer(image, packed);
            benchmark::DoNotOptimize(packed);
        }
    }
}

void Start(benchmark::State& state, const QString& program, const QStringList& arguments) {
    for (auto _ : state) {
        QProcess::execute(QCoreApplication::applicationDirPath() + '/' + program, arguments);
    }
}

/// Starts the program with the plug-in, and ends it.
void StartLightbox(benchmark::State& state) {
    Start(state, "lightbox", {"-batch", "-prefs", g_folder->path(), "-command", ""});
}

void StartBareApplication(benchmark::State& state) {
    Start(state, "bare_application", {});
}

/// Resident memory of a fresh process in MB: after opening the scene, at most while it is saved, and after
/// showing every frame once.
void Memory(benchmark::State& state) {
    Drawings();
    QList<QByteArray> said;
    for (auto _ : state) {
        QProcess child;
        child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        child.start(QCoreApplication::applicationFilePath(), {"--open", ScenePath()});
        child.waitForFinished(-1);
        said = child.readAllStandardOutput().split(' ');
    }
    state.counters["opened"] = said.value(1).toDouble();
    state.counters["played"] = said.value(2).toDouble();
    state.counters["first_look"] = said.value(3).toDouble();
    state.counters["saved"] = said.value(4).toDouble();
    qint64 packed = 0;
    for (const QByteArray& png : Drawings()) {
        packed += png.size();
    }
    state.counters["png"] = static_cast<double>(packed) / 1e6;
}

QString Recording() {
    const QString own = QString::fromLocal8Bit(qgetenv("VELLIX_BENCH_RECORDING"));
    return own.isEmpty() ? QStringLiteral(VELLIX_SOURCE_FOLDER "/demo/rough.json") : own;
}

int ReplayRecording() {
    return Mel("qmVellixReplay -camera persp -file \"" + Recording() + "\"").AsInt();
}

/// Replays on a layer without frames.
void Replay(benchmark::State& state) {
    int strokes = 0;
    for (auto _ : state) {
        state.PauseTiming();
        NewLayer();
        state.ResumeTiming();
        strokes = ReplayRecording();
    }
    state.counters["strokes_per_second"] =
        benchmark::Counter(static_cast<double>(strokes), benchmark::Counter::kIsIterationInvariantRate);
}

/// Replays on frames that hold drawings.
void ReplayOver(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        NewLayer();
        ReplayRecording();
        state.ResumeTiming();
        ReplayRecording();
    }
}

double BytesAgainstQt() {
    qint64 ours = 0;
    qint64 byQt = 0;
    for (const Layer* layer : Layers().GetLayers(CAMERA)) {
        for (int i = 0; i < layer->FrameCount(); ++i) {
            ours += layer->GetFrame(i)->GetPackedImage().size();
            byQt += png_bytes::ByQt(layer->GetFrame(i)->GetImage()).size();
        }
    }
    return static_cast<double>(ours) / static_cast<double>(byQt);
}

/// The packed drawings of the demo and of the recording.
void PackedBytes(benchmark::State& state) {
    for (auto _ : state) {
        DrawDemo();
        state.counters["demo"] = BytesAgainstQt();
        NewLayer();
        ReplayRecording();
        state.counters["recording"] = BytesAgainstQt();
    }
    NewScene();
}

double ResidentMegabytes() {
    QFile status("/proc/self/statm");
    if (!status.open(QIODevice::ReadOnly)) {
        return -1;
    }
    return status.readAll().split(' ').value(1).toDouble() * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
}

/// The most memory in MB since the last call of ForgetPeak().
double PeakMegabytes() {
    QFile status("/proc/self/status");
    if (!status.open(QIODevice::ReadOnly)) {
        return -1;
    }
    const QByteArray text = status.readAll();
    return text.mid(text.indexOf("VmHWM:") + 6, 15).split('k').value(0).trimmed().toDouble() * 1024 / 1e6;
}

void ForgetPeak() {
    QFile references("/proc/self/clear_refs");
    if (references.open(QIODevice::WriteOnly)) {
        references.write("5");
    }
}

/// Runs in the child process: opens the scene and saves it, then shows every frame. Prints the time of
/// opening (s), the memory after it and after showing (MB), the time of the first look at a frame (ms), and
/// the most memory while saving (MB).
int OpenAndTell(const QString& scene) {
    QElapsedTimer timer;
    timer.start();
    lightbox::Host::Get().files().Open(scene.toStdString(), true);
    const double seconds = static_cast<double>(timer.nsecsElapsed()) / 1e9;
    const double opened = ResidentMegabytes();
    ForgetPeak();
    Mel("file -rename \"" + scene + ".copy.ma\"; file -save -type \"mayaAscii\"");
    const double saved = PeakMegabytes();
    timer.start();
    for (int frame = 1; frame <= FRAMES; ++frame) {
        Layers().OnPlaybackTimeChanged(frame, false);
        Layers().GetFlattenedImage(CAMERA);
    }
    const double firstLook = static_cast<double>(timer.nsecsElapsed()) / 1e6 / FRAMES;
    std::cout << seconds << ' ' << opened << ' ' << ResidentMegabytes() << ' ' << firstLook << ' ' << saved
              << std::endl;
    return 0;
}

BENCHMARK(DecodeAll)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(OpenSceneOnOneProcessor)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK_CAPTURE(OpenPlainScene, plain, false)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(OpenPlainScene, refused, true)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(EncodeAll)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(SaveAfterOneChange)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(StartLightbox)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(StartBareApplication)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(SaveDense, at_once, false)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(SaveDense, idle, true)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(EncodeDenseByQt)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(SaveChanged)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(1);
BENCHMARK(EncodeAllByQt)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(1);
BENCHMARK(Export)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(ExportPlainly)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);
BENCHMARK(ExportPclx)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(WriteDemoBytes)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(Import, opaque, true)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(Import, drawings, false)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(DecodeAndPack, opaque, true)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(DecodeAndPack, drawings, false)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(Memory)->Unit(benchmark::kMillisecond)->Iterations(1)->UseRealTime();
BENCHMARK(PackedBytes)->Unit(benchmark::kMillisecond)->Iterations(1)->UseRealTime();
BENCHMARK(Replay)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(ReplayOver)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    g_folder = std::make_unique<QTemporaryDir>();
    lightbox::LightboxHost host({false, g_folder->path().toStdString()});
    host.plugins().LoadBuiltin("vellix2", initializePlugin, uninitializePlugin);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "--open") {
        return OpenAndTell(arguments.value(2));
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    g_folder.reset();
    return 0;
}
