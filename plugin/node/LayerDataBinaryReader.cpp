#include "node/LayerDataBinaryReader.h"

#include "core/Layer.h"
#include "core/LayerManager.h"
#include "core/LayerState.h"
#include "host/FrameTime.h"
#include "host/Logger.h"
#include "node/LayerDataFormat.h"
#include "node/StoredFrames.h"

#include <maya/MFileIO.h>

#include <istream>
#include <memory>

namespace vellix {

LayerDataBinaryReader::LayerDataBinaryReader(LayerManager& layers, std::istream& in, unsigned int length)
    : layers_(layers)
    , in_(in)
    , remaining_(length) {}

void LayerDataBinaryReader::Read() {
    ReadValue<qint32>(); // the version, which makes no difference to reading
    if (ReadValue<quint8>() != 0 && !MFileIO::isReferencingFile()) {
        layers_.MakeMaster();
    }
    const QString activeCamera = ReadString();
    const auto cameraCount = ReadValue<qint32>();
    qint32 read = 0;
    while (!ended_ && read < cameraCount && ReadCamera()) {
        ++read;
    }
    if (!activeCamera.isEmpty()) {
        layers_.SetActiveCamera(activeCamera);
    }
    if (ended_ && cameraCount == 0) {
        Logger::Error("The stored drawing is cut short before its first camera.");
    } else if (ended_) {
        ReportLoss("It", cameraCount - read, cameraCount, "cameras");
    } else if (remaining_ > 0) {
        Logger::Error(QString("%1 bytes after the end of the drawing could not be read.").arg(remaining_));
    }
}

bool LayerDataBinaryReader::ReadCamera() {
    const QString camera = ReadString();
    const auto layerCount = ReadValue<qint32>();
    const auto activeLayer = ReadValue<qint32>();
    if (ended_) {
        return false;
    }
    qint32 read = 0;
    while (!ended_ && read < layerCount && ReadLayer(camera)) {
        ++read;
    }
    if (ended_) {
        ReportLoss("Camera " + camera, layerCount - read, layerCount, "layers");
    }
    if (activeLayer >= 0) {
        layers_.SetActiveLayer(camera, activeLayer, true);
    }
    return true;
}

bool LayerDataBinaryReader::ReadLayer(const QString& camera) {
    const QString name = ReadString();
    const auto frameCount = ReadValue<qint32>();
    const bool visible = ReadValue<quint8>() != 0;
    const auto opacity = ReadValue<float>();
    const auto state = ReadValue<qint32>();
    if (ended_) {
        return false;
    }
    if (!IsLayerState(state)) {
        Logger::Error(QString("Layer %1 has the unknown state %2, and is read as an animated one.")
                          .arg(name, QString::number(state)));
    }
    auto created = std::make_unique<Layer>();
    Layer& layer = *created;
    layer.SetName(name);
    layer.SetVisible(visible);
    layer.SetOpacity(opacity);
    layer.SetState(ToLayerState(state));
    layers_.InsertLayer(camera, -1, created.release());
    ReadFrames(layer, frameCount);
    return true;
}

void LayerDataBinaryReader::ReadFrames(Layer& layer, qint32 count) {
    StoredFrames frames(layer);
    for (qint32 frame = 0; frame < count; ++frame) {
        const auto time = ReadValue<qint32>();
        const QByteArray image = ReadBytes();
        if (ended_) {
            ReportLoss("Layer " + layer.GetName(), count - frame, count, "drawings");
            return;
        }
        frames.Add(FromWholeFrames(time), image);
    }
}

void LayerDataBinaryReader::ReportLoss(const QString& owner, qint32 lost, qint32 count, const char* what) {
    if (lost > 0) {
        Logger::Error("The stored drawing is cut short. " + owner + " lost " + QString::number(lost) +
                      " of " + QString::number(count) + ' ' + QLatin1String(what) + '.');
    }
}

template <typename Value>
Value LayerDataBinaryReader::ReadValue() {
    Value value = 0;
    return Fill(reinterpret_cast<char*>(&value), sizeof(value)) ? value : Value(0);
}

QByteArray LayerDataBinaryReader::ReadBytes() {
    constexpr qint64 firstBlock = 64 * 1024;
    // A damaged count can have any value, so the bytes are read in blocks that grow with the amount read so
    // far.
    qint64 missing = ReadValue<qint32>();
    QByteArray bytes;
    while (missing > 0 && !ended_) {
        const qint64 block = qMin(qMin(missing, remaining_), qMax<qint64>(firstBlock, bytes.size()));
        const int filled = bytes.size();
        bytes.resize(static_cast<int>(filled + block));
        if (block == 0 || !Fill(bytes.data() + filled, block)) {
            ended_ = true;
        }
        missing -= block;
    }
    return ended_ ? QByteArray() : bytes;
}

QString LayerDataBinaryReader::ReadString() {
    const QByteArray bytes = ReadBytes();
    return QString::fromUtf8(bytes.constData(), static_cast<int>(qstrnlen(bytes.constData(), bytes.size())));
}

bool LayerDataBinaryReader::Fill(char* bytes, qint64 count) {
    if (!ended_ && count <= remaining_ && in_.read(bytes, count)) {
        remaining_ -= count;
        return true;
    }
    ended_ = true;
    return false;
}

} // namespace vellix
