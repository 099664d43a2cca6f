#pragma once

#include "commands/LayerIntake.h"
#include "core/LayerState.h"
#include "exchange/PictureFileReader.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace vellix {

class LayerManager;
class LayeredReader;
struct LayeredPicture;
struct PictureFile;
struct PictureLayer;

/// Reads the files of an import into layers with finished pictures. Changes nothing but itself. Each function
/// returns false, with a sentence that names the file in Fault(), if one file cannot be read.
class ImportCollector {
public:
    struct Options {
        QString
            camera; ///< that takes the layers; for another drawing it may be empty: those of the same names
        QString layerName; ///< the layer of pictures, else named as the files; the only one of layered files
        PictureFit fit;
        bool hasState = false; ///< else new layers are animated
        LayerState state = LayerState::Animated;
        bool hasStart = false;
        int start = 0;      ///< whole frames
        int hold = 1;       ///< frames from one picture to the next, if hasStart
        double rate = 24.0; ///< of the scene, frames per second
        int now = 0;        ///< the current time, for what has no other
    };
    /// Asked before pictures are read, with how many there are and how many bytes of files. Returns false,
    /// with a sentence, for too many.
    using Allowance = std::function<bool(qint64 pictures, qint64 bytes, QString& refusal)>;
    /// Told as pictures are done, on the thread of the caller; returns false if the user has interrupted.
    using Progress = std::function<bool(int done, int all)>;

    ImportCollector(const Options& options, Allowance allowance, Progress progress);

    /// Numbered pictures, OpenRaster files or one Pencil2D file; see PictureFiles.
    bool ReadFiles(const QStringList& patterns);

    /// Every `every`th frame of a movie at the scene's rate, onto one layer, each at its frame of the scene.
    bool ReadMovie(const QString& path, int every);

    /// The layers of another drawing with their frames, each as a new layer. `from` is the camera that has
    /// them there; empty for all cameras if none takes them all. `nameOf` tells what a camera of that drawing
    /// is called.
    bool ReadDrawing(const QString& what, const LayerManager& drawing, const QString& from,
                     const std::function<QString(const QString& camera)>& nameOf);

    /// The layers, from the bottom up.
    std::vector<IncomingLayer>& Layers() { return layers_; }
    const QString& Fault() const { return fault_; }
    /// What was not brought in, in sentences.
    const QStringList& Warnings() const { return warnings_; }

private:
    /// For reasons that lie in no single file.
    bool Refuse(const QString& reason);
    bool RefuseFile(const QString& path, const QString& reason);
    bool TimesOf(const std::vector<PictureFile>& files, std::vector<int>& times);
    bool ReadPictures(const std::vector<PictureFile>& files, const std::vector<int>& times,
                      const QString& name);
    bool ReadOpenRaster(const std::vector<PictureFile>& files, const std::vector<int>& times);
    bool ReadPencil2d(const QString& path);
    bool ReadLayers(const QString& path, LayeredReader& reader, int offset, bool hasEveryTime);
    void FindLayerFor(const PictureLayer& layer, bool hasEveryTime, std::vector<int>& taken);
    struct Awaited;
    bool ReadLayer(const QString& path, LayeredReader& reader, const PictureLayer& layer,
                   IncomingLayer& incoming, int offset, Awaited& awaited);
    bool Pack(const QString& path, Awaited& awaited, bool tells);
    bool CheckChosenLayer();
    void Warn(const QString& path, const QStringList& warnings);
    bool ReadCamera(const LayerManager& drawing, const QString& camera, const QString& target);
    IncomingLayer NewLayer(const QString& name) const;

    Options options_;
    Allowance allowance_;
    Progress progress_;
    QString what_; ///< that is imported, as given
    std::vector<IncomingLayer> layers_;
    QString fault_;
    QStringList warnings_;
    int done_ = 0; ///< pictures of layered files
    int all_ = 0;
};

} // namespace vellix
