#include "node/LayerDataBinaryWriter.h"

#include "core/Frame.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "node/LayerDataParts.h"

#include <QStringList>

#include <ostream>

namespace vellix {

LayerDataBinaryWriter::LayerDataBinaryWriter(const LayerManager& layers, std::ostream& out)
    : layers_(layers)
    , out_(out) {}

bool LayerDataBinaryWriter::Write() {
    const QStringList cameras = layers_.GetCameras();
    WriteValue<qint32>(LayerDataParts::VERSION);
    WriteValue<quint8>(layers_.IsMaster() ? 1 : 0);
    WriteBytes(layers_.GetActiveCamera().toUtf8());
    WriteValue<qint32>(cameras.size());
    for (const QString& camera : cameras) {
        const int count = layers_.LayerCount(camera);
        WriteBytes(camera.toUtf8());
        WriteValue<qint32>(count);
        WriteValue<qint32>(layers_.GetActiveLayerIndex(camera));
        for (int index = 0; index < count; ++index) {
            if (const Layer* layer = layers_.GetLayer(camera, index)) {
                WriteLayer(*layer);
            }
        }
    }
    return isWhole_;
}

void LayerDataBinaryWriter::WriteLayer(const Layer& layer) {
    WriteBytes(layer.GetName().toUtf8());
    WriteValue<qint32>(layer.FrameCount());
    WriteValue<quint8>(layer.IsVisible() ? 1 : 0);
    WriteValue<float>(layer.GetOpacity());
    WriteValue<qint32>(static_cast<qint32>(layer.GetState()));
    for (int index = 0; index < layer.FrameCount(); ++index) {
        if (const Frame* frame = layer.GetFrame(index)) {
            WriteFrame(layer, *frame);
        }
    }
}

void LayerDataBinaryWriter::WriteFrame(const Layer& layer, const Frame& frame) {
    const QByteArray image = frame.GetPackedImage();
    if (image.isEmpty()) {
        isWhole_ = false;
        LayerDataParts::ReportNotEncoded(layer, frame);
    }
    WriteValue<qint32>(frame.GetTimeValue());
    WriteBytes(image); // also without bytes: readers count on the record
}

void LayerDataBinaryWriter::WriteBytes(const QByteArray& bytes) {
    WriteValue<qint32>(bytes.size());
    out_.write(bytes.constData(), bytes.size());
}

template <typename Value>
void LayerDataBinaryWriter::WriteValue(Value value) {
    out_.write(reinterpret_cast<const char*>(&value), sizeof(value));
}

} // namespace vellix
