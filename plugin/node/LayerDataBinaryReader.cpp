#include "node/LayerDataBinaryReader.h"

#include "core/Layer.h"
#include "core/LayerManager.h"
#include "host/FrameTime.h"
#include "node/LayerDataFormat.h"

#include <maya/MFileIO.h>

#include <istream>
#include <memory>

namespace vellix {

LayerDataBinaryReader::LayerDataBinaryReader(LayerManager& layers, std::istream& in, unsigned int length)
    : layers_(layers)
    , in_(in)
    , remaining_(length)
    , loader_(DrawingLoader::Report::Nothing) {}

void LayerDataBinaryReader::Read() {
    ReadValue<qint32>(); // every version reads alike
    if (ReadValue<quint8>() != 0 && !MFileIO::isReferencingFile()) {
        layers_.MakeMaster();
    }
    const QString activeCamera = ReadString();
    const auto cameraCount = ReadValue<qint32>();
    for (qint32 camera = 0; camera < cameraCount && !ended_; ++camera) {
        ReadCamera();
    }
    if (!activeCamera.isEmpty()) {
        layers_.SetActiveCamera(activeCamera);
    }
}

void LayerDataBinaryReader::ReadCamera() {
    const QString camera = ReadString();
    const auto layerCount = ReadValue<qint32>();
    const auto activeLayer = ReadValue<qint32>();
    if (ended_) {
        return;
    }
    for (qint32 layer = 0; layer < layerCount && !ended_; ++layer) {
        ReadLayer(camera);
    }
    loader_.Finish();
    if (activeLayer >= 0) {
        layers_.SetActiveLayer(camera, activeLayer, true);
    }
}

void LayerDataBinaryReader::ReadLayer(const QString& camera) {
    const QString name = ReadString();
    const auto frameCount = ReadValue<qint32>();
    const bool visible = ReadValue<quint8>() != 0;
    const auto opacity = ReadValue<float>();
    const auto state = ReadValue<qint32>();
    if (ended_) {
        return;
    }
    auto created = std::make_unique<Layer>();
    Layer& layer = *created;
    layer.SetName(name);
    layer.SetVisible(visible);
    layer.SetOpacity(opacity);
    layer.SetState(ToLayerState(state));
    layers_.InsertLayer(camera, -1, created.release());

    for (qint32 frame = 0; frame < frameCount; ++frame) {
        const auto time = ReadValue<qint32>();
        const QByteArray image = ReadBytes();
        if (ended_) {
            return;
        }
        loader_.AddBytes(layer, frame, FromWholeFrames(time), image);
    }
}

template <typename Value>
Value LayerDataBinaryReader::ReadValue() {
    Value value = 0;
    return Fill(reinterpret_cast<char*>(&value), sizeof(value)) ? value : Value(0);
}

QByteArray LayerDataBinaryReader::ReadBytes() {
    constexpr qint64 BLOCK = 64 * 1024;
    // A damaged count may be anything, so the bytes are taken in blocks that grow with what has come already.
    qint64 missing = ReadValue<qint32>();
    QByteArray bytes;
    while (missing > 0 && !ended_) {
        const qint64 block = qMin(qMin(missing, remaining_), qMax<qint64>(BLOCK, bytes.size()));
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
