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
    : m_layers(layers)
    , m_in(in)
    , m_remaining(length)
    , m_loader(DrawingLoader::Report::Nothing) {}

void LayerDataBinaryReader::Read() {
    ReadValue<qint32>(); // the version, which makes no difference to reading
    if (ReadValue<quint8>() != 0 && !MFileIO::isReferencingFile()) {
        m_layers.MakeMaster();
    }
    const QString activeCamera = ReadString();
    const auto cameraCount = ReadValue<qint32>();
    for (qint32 camera = 0; camera < cameraCount && !m_ended; ++camera) {
        ReadCamera();
    }
    if (!activeCamera.isEmpty()) {
        m_layers.SetActiveCamera(activeCamera);
    }
}

void LayerDataBinaryReader::ReadCamera() {
    const QString camera = ReadString();
    const auto layerCount = ReadValue<qint32>();
    const auto activeLayer = ReadValue<qint32>();
    if (m_ended) {
        return;
    }
    for (qint32 layer = 0; layer < layerCount && !m_ended; ++layer) {
        ReadLayer(camera);
    }
    m_loader.Finish();
    if (activeLayer >= 0) {
        m_layers.SetActiveLayer(camera, activeLayer, true);
    }
}

void LayerDataBinaryReader::ReadLayer(const QString& camera) {
    const QString name = ReadString();
    const auto frameCount = ReadValue<qint32>();
    const bool visible = ReadValue<quint8>() != 0;
    const auto opacity = ReadValue<float>();
    const auto state = ReadValue<qint32>();
    if (m_ended) {
        return;
    }
    auto created = std::make_unique<Layer>();
    Layer& layer = *created;
    layer.SetName(name);
    layer.SetVisible(visible);
    layer.SetOpacity(opacity);
    layer.SetState(ToLayerState(state));
    m_layers.InsertLayer(camera, -1, created.release());

    for (qint32 frame = 0; frame < frameCount; ++frame) {
        const auto time = ReadValue<qint32>();
        const QByteArray image = ReadBytes();
        if (m_ended) {
            return;
        }
        m_loader.AddBytes(layer, frame, FromWholeFrames(time), image);
    }
}

template <typename Value>
Value LayerDataBinaryReader::ReadValue() {
    Value value = 0;
    return Fill(reinterpret_cast<char*>(&value), sizeof(value)) ? value : Value(0);
}

QByteArray LayerDataBinaryReader::ReadBytes() {
    constexpr qint64 BLOCK = 64 * 1024;
    // A damaged count can have any value, so the bytes are read in blocks that grow with the amount read so
    // far.
    qint64 missing = ReadValue<qint32>();
    QByteArray bytes;
    while (missing > 0 && !m_ended) {
        const qint64 block = qMin(qMin(missing, m_remaining), qMax<qint64>(BLOCK, bytes.size()));
        const int filled = bytes.size();
        bytes.resize(static_cast<int>(filled + block));
        if (block == 0 || !Fill(bytes.data() + filled, block)) {
            m_ended = true;
        }
        missing -= block;
    }
    return m_ended ? QByteArray() : bytes;
}

QString LayerDataBinaryReader::ReadString() {
    const QByteArray bytes = ReadBytes();
    return QString::fromUtf8(bytes.constData(), static_cast<int>(qstrnlen(bytes.constData(), bytes.size())));
}

bool LayerDataBinaryReader::Fill(char* bytes, qint64 count) {
    if (!m_ended && count <= m_remaining && m_in.read(bytes, count)) {
        m_remaining -= count;
        return true;
    }
    m_ended = true;
    return false;
}

} // namespace vellix
