#include "commands/ImportCollector.h"

#include "core/Frame.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "exchange/LayeredDrawing.h"
#include "exchange/MovieReader.h"
#include "exchange/OpenRasterReader.h"
#include "exchange/PclxReader.h"
#include "exchange/PictureBatch.h"
#include "exchange/PictureFiles.h"
#include "host/FrameTime.h"
#include "host/MayaUtil.h"
#include "paint/ImageSize.h"
#include "paint/PngStructure.h"

#include <QFileInfo>
#include <QImage>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <map>
#include <utility>

namespace vellix {

namespace {

QString NameOf(const QString& path) {
    return QFileInfo(path).fileName();
}

enum class FileKind { Pictures, OpenRaster, Pencil2d };

FileKind KindOf(const QString& path) {
    const QString suffix = QFileInfo(path).suffix().toLower();
    return suffix == QLatin1String("ora")    ? FileKind::OpenRaster
           : suffix == QLatin1String("pclx") ? FileKind::Pencil2d
                                             : FileKind::Pictures;
}

qint64 SizeOf(const std::vector<PictureFile>& files) {
    qint64 size = 0;
    for (const PictureFile& file : files) {
        size += QFileInfo(file.path).size();
    }
    return size;
}

} // namespace

ImportCollector::ImportCollector(const Options& options, Allowance allowance, Progress progress)
    : options_(options)
    , allowance_(std::move(allowance))
    , progress_(std::move(progress)) {}

bool ImportCollector::Refuse(const QString& reason) {
    return RefuseFile(what_, reason);
}

bool ImportCollector::RefuseFile(const QString& path, const QString& reason) {
    fault_ = QStringLiteral("\"%1\": %2").arg(path, reason);
    return false;
}

IncomingLayer ImportCollector::NewLayer(const QString& name) const {
    IncomingLayer layer;
    layer.camera = options_.camera;
    layer.name = name;
    layer.state = options_.hasState ? options_.state : LayerState::Animated;
    return layer;
}

bool ImportCollector::ReadFiles(const QStringList& patterns) {
    PictureFiles found;
    QString reason;
    for (const QString& pattern : patterns) {
        what_ = pattern;
        if (!found.Add(pattern, PictureFileReader::Suffixes, reason)) {
            return Refuse(reason);
        }
    }
    found.Sort();
    const std::vector<PictureFile>& files = found.Files();
    const FileKind kind = KindOf(files.front().path);
    for (const PictureFile& file : files) {
        if (KindOf(file.path) != kind || (kind == FileKind::Pencil2d && files.size() > 1)) {
            return RefuseFile(file.path, QStringLiteral("such files come in one at a time"));
        }
    }
    if (kind == FileKind::Pencil2d) {
        return ReadPencil2d(files.front().path) && CheckChosenLayer();
    }
    std::vector<int> times;
    if (!TimesOf(files, times)) {
        return false;
    }
    if (kind == FileKind::OpenRaster) {
        return ReadOpenRaster(files, times) && CheckChosenLayer();
    }
    return ReadPictures(files, times, options_.layerName.isEmpty() ? found.Stem() : options_.layerName);
}

/// The time of each file.
bool ImportCollector::TimesOf(const std::vector<PictureFile>& files, std::vector<int>& times) {
    std::map<int, QString> taken;
    qint64 next = options_.hasStart ? options_.start : options_.now;
    for (const PictureFile& file : files) {
        const bool isNumbered = file.hasNumber && !options_.hasStart;
        if (!isNumbered && !options_.hasStart && files.size() > 1) {
            return RefuseFile(file.path,
                              QStringLiteral("there is no number in the name for its time; give the times "
                                             "with -startTime and -hold"));
        }
        const qint64 time = isNumbered ? file.number : next;
        next += options_.hold;
        if (!IsWholeFrame(time)) {
            return RefuseFile(file.path, QStringLiteral("time %1 is out of range").arg(time));
        }
        const auto added = taken.emplace(static_cast<int>(time), file.path);
        if (!added.second) {
            return RefuseFile(
                file.path,
                QStringLiteral("\"%1\" has the number %2 too").arg(NameOf(added.first->second)).arg(time));
        }
        times.push_back(static_cast<int>(time));
    }
    return true;
}

bool ImportCollector::ReadPictures(const std::vector<PictureFile>& files, const std::vector<int>& times,
                                   const QString& name) {
    QString reason;
    if (!allowance_(static_cast<qint64>(files.size()), SizeOf(files), reason)) {
        return Refuse(reason);
    }
    IncomingLayer layer = NewLayer(name);
    layer.isReference = layer.state == LayerState::Locked;
    std::vector<QString> faults(files.size());
    PictureBatch batch;
    std::size_t done = 0;
    for (std::size_t i = 0; i < files.size(); ++i) {
        QByteArray& png = layer.pictures[times[i]];
        batch.Add(PictureFileReader::PixelCount(files[i].path),
                  [this, &file = files[i], &png, &fault = faults[i]] {
                      PictureFileReader::Read(file.path, options_.fit, png, fault);
                  });
        if (!batch.IsFull() && i + 1 < files.size()) {
            continue;
        }
        batch.Run();
        for (; done <= i; ++done) {
            if (!faults[done].isEmpty()) {
                return RefuseFile(files[done].path, faults[done]);
            }
        }
        if (!progress_(static_cast<int>(done), static_cast<int>(files.size()))) {
            return Refuse(QStringLiteral("interrupted after %1 pictures").arg(done));
        }
    }
    layers_.push_back(std::move(layer));
    return true;
}

bool ImportCollector::ReadMovie(const QString& path, int every) {
    what_ = path;
    const QString stem = QFileInfo(path).completeBaseName();
    IncomingLayer layer = NewLayer(options_.layerName.isEmpty() ? stem : options_.layerName);
    layer.isReference = layer.state == LayerState::Locked;
    // Nobody knows how many there are.
    const auto goesOn = [this, &layer] {
        const int count = static_cast<int>(layer.pictures.size());
        return progress_(count, count + 1);
    };
    MovieReader movie(path, options_.rate, every, goesOn);
    qint64 time = options_.hasStart ? options_.start : options_.now;
    qint64 bytes = 0;
    std::vector<const QByteArray*> packing;
    PictureBatch batch;
    const auto pack = [&] {
        batch.Run();
        for (const QByteArray* png : packing) {
            bytes += png->size();
        }
        packing.clear();
    };
    QString reason;
    for (QImage image; movie.Next(image); time += every) {
        if (!IsWholeFrame(time)) {
            return Refuse(QStringLiteral("time %1 is out of range").arg(time));
        }
        if (!allowance_(static_cast<qint64>(layer.pictures.size()) + 1, bytes, reason)) {
            return Refuse(reason);
        }
        QByteArray& png = layer.pictures[static_cast<int>(time)];
        packing.push_back(&png);
        batch.Add(qint64(image.width()) * image.height(),
                  [this, image, &png] { png = options_.fit.For(image.size()).Place(image, QPoint()); });
        if (batch.IsFull()) {
            pack();
            if (!goesOn()) {
                return Refuse(QStringLiteral("interrupted after %1 pictures").arg(layer.pictures.size()));
            }
        }
    }
    if (!movie.Fault().isEmpty()) {
        return Refuse(movie.Fault());
    }
    pack();
    if (!allowance_(static_cast<qint64>(layer.pictures.size()), bytes, reason)) {
        return Refuse(reason);
    }
    Warn(path, movie.Warnings());
    layers_.push_back(std::move(layer));
    return true;
}

// --- layered files ----------------------------------------------------------------------------------------

bool ImportCollector::ReadOpenRaster(const std::vector<PictureFile>& files, const std::vector<int>& times) {
    QString reason;
    if (!allowance_(static_cast<qint64>(files.size()), SizeOf(files), reason)) {
        return Refuse(reason);
    }
    all_ = static_cast<int>(files.size());
    for (std::size_t i = 0; i < files.size(); ++i) {
        OpenRasterReader reader(files[i].path);
        if (!ReadLayers(files[i].path, reader, times[i], true)) {
            return false;
        }
        ++done_;
    }
    return true;
}

bool ImportCollector::ReadPencil2d(const QString& path) {
    PclxReader reader(path);
    if (!reader.Fault().isEmpty()) {
        return RefuseFile(path, reader.Fault());
    }
    QString reason;
    if (!allowance_(reader.Drawing().PictureCount(), reader.ByteCount(), reason)) {
        return Refuse(reason);
    }
    if (std::abs(reader.Drawing().rate - options_.rate) > 0.01) {
        Warn(path, {QStringLiteral("It has %1 frames per second, the scene %2. Frames keep their numbers.")
                        .arg(reader.Drawing().rate)
                        .arg(options_.rate)});
    }
    all_ = reader.Drawing().PictureCount();
    constexpr int first = 1; // number of the first frame there
    return ReadLayers(path, reader, options_.hasStart ? options_.start - first : 0, false);
}

/// Adds to `taken`, which has the layers for those of the file so far, the layer that takes the pictures of
/// the next: that of the same name from the files before, or a new one above the one before.
void ImportCollector::FindLayerFor(const PictureLayer& layer, bool hasEveryTime, std::vector<int>& taken) {
    for (std::size_t i = 0; i < layers_.size(); ++i) {
        const bool isTaken = std::find(taken.begin(), taken.end(), static_cast<int>(i)) != taken.end();
        if (layers_[i].name == layer.name && !isTaken) {
            taken.push_back(static_cast<int>(i));
            return;
        }
    }
    const int at = taken.empty() ? 0 : taken.back() + 1;
    for (int& index : taken) {
        index += index >= at ? 1 : 0;
    }
    taken.push_back(at);
    IncomingLayer added = NewLayer(layer.name);
    added.isVisible = layer.isVisible;
    added.hasEveryTime = hasEveryTime;
    layers_.insert(layers_.begin() + at, std::move(added));
}

/// Pictures of a layered file that are read but not packed yet.
struct ImportCollector::Awaited {
    PictureBatch batch;
    std::vector<const QByteArray*> pngs;
    std::vector<QString> sources; ///< the members that they are from
};

bool ImportCollector::ReadLayers(const QString& path, LayeredReader& reader, int offset, bool hasEveryTime) {
    if (!reader.Fault().isEmpty()) {
        return RefuseFile(path, reader.Fault());
    }
    std::vector<const PictureLayer*> wanted;
    std::vector<int> taken;
    for (const PictureLayer& layer : reader.Drawing().layers) {
        if (options_.layerName.isEmpty() || layer.name == options_.layerName) {
            FindLayerFor(layer, hasEveryTime, taken);
            wanted.push_back(&layer);
        }
    }
    Awaited awaited;
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        IncomingLayer& incoming = layers_[static_cast<std::size_t>(taken[i])];
        if (!ReadLayer(path, reader, *wanted[i], incoming, offset, awaited)) {
            return false;
        }
    }
    if (!Pack(path, awaited, !hasEveryTime)) {
        return false;
    }
    Warn(path, reader.Warnings());
    return true;
}

/// Reads the pictures of a layer; those that are packed later are added to `awaited`.
bool ImportCollector::ReadLayer(const QString& path, LayeredReader& reader, const PictureLayer& layer,
                                IncomingLayer& incoming, int offset, Awaited& awaited) {
    const QSize canvas = reader.Drawing().size;
    const CanvasFit fit = options_.fit.For(canvas);
    for (const LayeredPicture& picture : layer.pictures) {
        const qint64 time = static_cast<qint64>(picture.frame) + offset;
        if (!IsWholeFrame(time)) {
            return RefuseFile(path, QStringLiteral("time %1 is out of range").arg(time));
        }
        QByteArray bytes;
        if (!reader.Read(picture, bytes)) {
            return RefuseFile(path, reader.Fault());
        }
        QByteArray& png = incoming.pictures[static_cast<int>(time)];
        const double opacity = layer.opacity * picture.opacity;
        const PngStructure::Header header = PngStructure::HeaderOf(bytes);
        const qint64 pixels = qint64(header.width) * header.height;
        awaited.pngs.push_back(&png);
        awaited.sources.push_back(picture.source);
        awaited.batch.Add(std::max(pixels, qint64(canvas.width()) * canvas.height()),
                          [fit, bytes, opacity, position = picture.position, &png] {
                              png =
                                  bytes.isEmpty() ? CanvasFit::Blank() : fit.Place(bytes, position, opacity);
                          });
        if (awaited.batch.IsFull() && !Pack(path, awaited, !incoming.hasEveryTime)) {
            return false;
        }
    }
    return true;
}

/// Packs the pictures that wait. With `tells`, each counts for the progress.
bool ImportCollector::Pack(const QString& path, Awaited& awaited, bool tells) {
    awaited.batch.Run();
    for (std::size_t i = 0; i < awaited.pngs.size(); ++i) {
        if (awaited.pngs[i]->isEmpty()) {
            return RefuseFile(path, QStringLiteral("its picture \"%1\" is damaged").arg(awaited.sources[i]));
        }
    }
    done_ += tells ? static_cast<int>(awaited.pngs.size()) : 0;
    awaited.pngs.clear();
    awaited.sources.clear();
    return progress_(done_, all_) || Refuse(QStringLiteral("interrupted after %1 pictures").arg(done_));
}

bool ImportCollector::CheckChosenLayer() {
    return !layers_.empty() ||
           Refuse(options_.layerName.isEmpty()
                      ? QStringLiteral("there are no layers with pictures in it")
                      : QStringLiteral("there is no layer \"%1\" in it").arg(options_.layerName));
}

void ImportCollector::Warn(const QString& path, const QStringList& warnings) {
    for (const QString& warning : warnings) {
        const QString text = QStringLiteral("\"%1\": %2").arg(NameOf(path), warning);
        if (!warnings_.contains(text)) {
            warnings_.append(text);
        }
    }
}

// --- other drawings ---------------------------------------------------------------------------------------

bool ImportCollector::ReadDrawing(const QString& what, const LayerManager& drawing, const QString& from,
                                  const std::function<QString(const QString& camera)>& nameOf) {
    what_ = what;
    QStringList cameras;
    QStringList names;
    for (const QString& camera : drawing.GetCameras()) {
        if (drawing.LayerCount(camera) > 0) {
            cameras.append(camera);
            names.append(nameOf(camera));
        }
    }
    if (cameras.isEmpty()) {
        return Refuse(QStringLiteral("there are no layers in it"));
    }
    if (!from.isEmpty() || (!options_.camera.isEmpty() && cameras.size() > 1)) {
        const int chosen = names.indexOf(from.isEmpty() ? options_.camera : from);
        if (chosen < 0) {
            return Refuse(
                QStringLiteral("it has layers of the cameras %1; name one of these with -fromCamera")
                    .arg(names.join(QStringLiteral(", "))));
        }
        cameras = QStringList(cameras[chosen]);
        names = QStringList(names[chosen]);
    }
    for (int i = 0; i < cameras.size(); ++i) {
        const QString target = options_.camera.isEmpty() ? names[i] : options_.camera;
        if (!MayaUtil::CameraExists(target)) {
            return Refuse(
                QStringLiteral("the camera \"%1\" is not in this scene; name with -camera the one that "
                               "takes its layers")
                    .arg(target));
        }
        if (!ReadCamera(drawing, cameras[i], target)) {
            return false;
        }
    }
    return CheckChosenLayer();
}

bool ImportCollector::ReadCamera(const LayerManager& drawing, const QString& camera, const QString& target) {
    qint64 count = 0;
    for (const Layer* layer : drawing.GetLayers(camera)) {
        count += layer->FrameCount();
    }
    QString reason;
    if (!allowance_(count, 0, reason)) {
        return Refuse(reason);
    }
    const QSize square(IMAGE_WIDTH, IMAGE_WIDTH);
    const CanvasFit fit(CanvasFit::Mode::Square, square, 1.0, options_.fit.strength);
    for (const Layer* layer : drawing.GetLayers(camera)) {
        if (!options_.layerName.isEmpty() && layer->GetName() != options_.layerName) {
            continue;
        }
        IncomingLayer incoming = NewLayer(layer->GetName());
        incoming.camera = target;
        incoming.joins = false;
        incoming.isVisible = layer->IsVisible();
        incoming.opacity = layer->GetOpacity();
        incoming.state = options_.hasState ? options_.state : layer->GetState();
        int moved = 0;
        for (int i = 0; i < layer->FrameCount(); ++i) {
            const Frame& frame = *layer->GetFrame(i);
            const QByteArray png = frame.GetPackedImage();
            const QByteArray placed = options_.fit.strength < 1.0 ? fit.Place(png, QPoint()) : png;
            if (placed.isEmpty()) {
                return Refuse(QStringLiteral("the picture of layer \"%1\" at frame %2 cannot be read")
                                  .arg(layer->GetName())
                                  .arg(frame.GetTimeValue()));
            }
            // A change of the time unit may have put several on one whole frame.
            int time = frame.GetTimeValue();
            while (incoming.pictures.count(time) > 0) {
                ++time;
            }
            moved += time == frame.GetTimeValue() ? 0 : 1;
            incoming.pictures[time] = placed;
        }
        if (moved > 0) {
            Warn(what_, {QStringLiteral("%1 drawings of the layer \"%2\" stood on the whole frame of another "
                                        "and come to the next free one.")
                             .arg(moved)
                             .arg(layer->GetName())});
        }
        layers_.push_back(std::move(incoming));
    }
    return true;
}

} // namespace vellix
