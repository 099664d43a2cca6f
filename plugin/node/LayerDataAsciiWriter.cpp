#include "node/LayerDataAsciiWriter.h"

#include "core/Frame.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "host/MayaUtil.h"
#include "node/LayerDataFormat.h"

#include <ostream>

namespace vellix {

namespace {

const char* const NEXT_LINE = "\n\t\t";

} // namespace

LayerDataAsciiWriter::LayerDataAsciiWriter(const LayerManager& layers, std::ostream& out)
    : m_layers(layers)
    , m_out(out) {}

void LayerDataAsciiWriter::Write() {
    const QStringList cameras = m_layers.GetCameras();
    m_out << +LayerDataFormat::VERSION << ' ' << (m_layers.IsMaster() ? 1 : 0) << ' ';
    WriteString(m_layers.GetActiveCamera());
    m_out << ' ' << cameras.size() << NEXT_LINE;
    for (const QString& camera : cameras) {
        WriteCamera(camera);
    }
}

void LayerDataAsciiWriter::WriteCamera(const QString& camera) {
    const int count = m_layers.LayerCount(camera);
    WriteString(camera);
    m_out << ' ' << count << ' ' << m_layers.GetActiveLayerIndex(camera) << NEXT_LINE;
    for (int index = 0; index < count; ++index) {
        WriteLayer(m_layers.GetLayer(camera, index));
    }
}

void LayerDataAsciiWriter::WriteLayer(const Layer* layer) {
    if (layer == nullptr) {
        WriteString(QLatin1String(LayerDataFormat::UNKNOWN_LAYER));
        m_out << " -1 ";
        return;
    }
    WriteString(layer->GetName());
    m_out << ' ' << layer->FrameCount() << ' ' << (layer->IsVisible() ? 1 : 0) << ' '
          << static_cast<double>(layer->GetOpacity()) << ' ' << static_cast<int>(layer->GetState());
    for (int index = 0; index < layer->FrameCount(); ++index) {
        m_out << NEXT_LINE;
        WriteFrame(layer->GetFrame(index));
    }
    m_out << NEXT_LINE;
}

void LayerDataAsciiWriter::WriteFrame(const Frame* frame) {
    if (frame == nullptr) {
        m_out << "-1 \"\"";
        return;
    }
    const QByteArray image = frame->GetPackedImage().toHex();
    m_out << frame->GetTime() << " \"";
    m_out.write(image.constData(), image.size());
    m_out << '"';
}

void LayerDataAsciiWriter::WriteString(const QString& text) {
    const QByteArray bytes = MayaUtil::EscapeString(text).toUtf8();
    m_out << '"';
    m_out.write(bytes.constData(), bytes.size());
    m_out << '"';
}

} // namespace vellix
