#include "commands/LayerOutputs.h"

#include "commands/ExportedLayers.h"
#include "exchange/LayerFileNames.h"
#include "exchange/LayeredDrawing.h"
#include "exchange/OpenRasterWriter.h"
#include "exchange/PsdWriter.h"
#include "paint/WholeFile.h"

#include <QDir>
#include <QFileInfo>

#include <cstddef>
#include <utility>

namespace vellix {

const QString LayerOutputs::LAYER = QStringLiteral("{layer}");

LayerOutputs::LayerOutputs(ExportedLayers& layers)
    : layers_(layers) {}
LayerOutputs::~LayerOutputs() = default;

void LayerOutputs::AddLayered(const QString& pattern) {
    layered_ = std::make_unique<ImageSequence>(pattern);
    isPsd_ = pattern.endsWith(QLatin1String(".psd"), Qt::CaseInsensitive);
}

void LayerOutputs::AddLayerFiles(const QString& pattern) {
    single_ = std::make_unique<ImageSequence>(pattern);
    names_ = LayerFileNames(layers_.VisibleNames());
}

QString LayerOutputs::Refusal(const std::vector<int>& frames) {
    if (!layered_ || layers_.AreSmall(isPsd_ ? PsdWriter::MAX_BYTES : ZipWriter::MAX_BYTES)) {
        return QString();
    }
    std::vector<FrameId> checked;
    for (const int frame : frames) {
        std::vector<FrameId> shown = layers_.ShownAt(frame);
        if (frame != frames.front() && shown == checked) {
            continue;
        }
        checked = std::move(shown);
        const LayeredDrawing drawing = layers_.At(frame);
        const QString refusal = isPsd_ ? PsdWriter::Refusal(drawing) : OpenRasterWriter::Refusal(drawing);
        if (!refusal.isEmpty()) {
            return QString("\"%1\" cannot be written: %2. Nothing was written.")
                .arg(layered_->GetPath(frame), refusal);
        }
    }
    return QString();
}

QString LayerOutputs::Write(const QImage& image, int frame) {
    std::vector<FrameId> shown = layers_.ShownAt(frame);
    const bool isHeld = !files_.isEmpty() && shown == shown_;
    shown_ = std::move(shown);
    QString fault;
    if (layered_) {
        fault = WriteLayered(image, frame, isHeld);
    }
    return single_ && fault.isEmpty() ? WriteLayers(frame, isHeld) : fault;
}

QString LayerOutputs::WriteLayered(const QImage& image, int frame, bool isHeld) {
    const QString path = layered_->GetPath(frame);
    if (!isPsd_) {
        if (!isHeld) {
            archive_ = OpenRasterWriter::Archive(layers_.At(frame), image);
        }
        return Keep(path, archive_.Write(path));
    }
    if (!isHeld) {
        document_ = PsdWriter::Encode(layers_.At(frame), image);
    }
    return Keep(path, document_.isEmpty() ? PsdWriter::Refusal(layers_.At(frame))
                                          : WholeFile::Write(path, document_));
}

QString LayerOutputs::WriteLayers(int frame, bool isHeld) {
    if (!isHeld) {
        pictures_ = layers_.VisibleAt(frame);
    }
    // The number first: a layer's name may have the sign for it.
    const QString numbered = single_->GetPath(frame);
    for (std::size_t i = 0; i < pictures_.size(); ++i) {
        QString path = numbered;
        path.replace(LAYER, names_.at(int(i)));
        if (!hasFolders_) { // a layer may have one; if it cannot be made, neither can the file
            QDir().mkpath(QFileInfo(path).absolutePath());
        }
        QString fault = Keep(path, WholeFile::Write(path, pictures_[i]));
        if (!fault.isEmpty()) {
            return fault;
        }
    }
    hasFolders_ = true; // one that vanishes takes files along, and is no success
    return QString();
}

QString LayerOutputs::Keep(const QString& path, const QString& fault) {
    if (fault.isEmpty()) {
        files_.append(path);
        return QString();
    }
    return QString("\"%1\" cannot be written: %2.").arg(path, fault);
}

} // namespace vellix
