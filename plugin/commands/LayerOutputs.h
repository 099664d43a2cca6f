#pragma once

#include "core/Identity.h"
#include "exchange/ZipWriter.h"
#include "paint/ImageSequence.h"

#include <QByteArray>
#include <QImage>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace vellix {

class ExportedLayers;

/// Writes the layers of exported frames: together in files of layers, and each as a sequence of its own.
/// Every file is written whole or not at all.
class LayerOutputs {
public:
    /// What the name of a layer's file stands for in a pattern.
    static const QString LAYER;

    /// `layers` is borrowed.
    explicit LayerOutputs(ExportedLayers& layers);
    ~LayerOutputs();

    /// Files of layers: .ora or .psd.
    void AddLayered(const QString& pattern);
    /// A sequence of each visible layer; the pattern has LAYER where there are several.
    void AddLayerFiles(const QString& pattern);

    /// Why one of these frames can have no file of layers, as a sentence; empty if all can. Writes nothing.
    QString Refusal(const std::vector<int>& frames);

    /// Whether Write() needs the composed image.
    bool NeedsImage() const { return layered_ != nullptr; }
    /// Adds the next frame; the image is what its visible layers look like together. Returns the first error,
    /// or an empty string.
    QString Write(const QImage& image, int frame);

    /// The written files, in the order of frames.
    const QStringList& Files() const { return files_; }

private:
    QString WriteLayered(const QImage& image, int frame, bool isHeld);
    QString WriteLayers(int frame, bool isHeld);
    QString Keep(const QString& path, const QString& fault);

    ExportedLayers& layers_;
    std::unique_ptr<ImageSequence> layered_;
    bool isPsd_ = false;
    std::unique_ptr<ImageSequence> single_;
    QStringList names_;       // of the layers' files
    bool hasFolders_ = false; ///< those of the layers are made
    // What the last frame was, since drawings are often held.
    std::vector<FrameId> shown_;
    ZipWriter archive_;
    QByteArray document_;
    std::vector<QByteArray> pictures_;
    QStringList files_;
};

} // namespace vellix
