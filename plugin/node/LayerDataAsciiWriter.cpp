#include "node/LayerDataAsciiWriter.h"

#include "core/Frame.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "host/MayaUtil.h"
#include "node/LayerDataParts.h"

#include <QStringList>

#include <algorithm>
#include <ostream>

namespace vellix {

namespace {

const char* const NEXT_LINE = "\n\t\t";

} // namespace

LayerDataAsciiWriter::LayerDataAsciiWriter(const LayerManager& layers, std::ostream& out)
    : layers_(layers)
    , out_(out) {}

bool LayerDataAsciiWriter::Write() {
    const QStringList cameras = layers_.GetCameras();
    out_ << +LayerDataParts::VERSION << ' ' << (layers_.IsMaster() ? 1 : 0) << ' ';
    WriteString(layers_.GetActiveCamera());
    out_ << ' ' << cameras.size() << NEXT_LINE;
    for (const QString& camera : cameras) {
        WriteCamera(camera);
    }
    return isWhole_;
}

void LayerDataAsciiWriter::WriteCamera(const QString& camera) {
    const int count = layers_.LayerCount(camera);
    WriteString(camera);
    out_ << ' ' << count << ' ' << layers_.GetActiveLayerIndex(camera) << NEXT_LINE;
    for (int index = 0; index < count; ++index) {
        WriteLayer(layers_.GetLayer(camera, index));
    }
}

void LayerDataAsciiWriter::WriteLayer(const Layer* layer) {
    if (!layer) {
        WriteString(QLatin1String(LayerDataParts::UNKNOWN_LAYER));
        out_ << " -1 ";
        return;
    }
    WriteString(layer->GetName());
    out_ << ' ' << layer->FrameCount() << ' ' << (layer->IsVisible() ? 1 : 0) << ' '
         << static_cast<double>(layer->GetOpacity()) << ' ' << static_cast<int>(layer->GetState());
    for (int index = 0; index < layer->FrameCount(); ++index) {
        out_ << NEXT_LINE;
        WriteFrame(*layer, layer->GetFrame(index));
    }
    out_ << NEXT_LINE;
}

void LayerDataAsciiWriter::WriteFrame(const Layer& layer, const Frame* frame) {
    if (!frame) {
        out_ << "-1 \"\"";
        return;
    }
    const QByteArray image = frame->GetPackedImage();
    if (image.isEmpty()) {
        isWhole_ = false;
        LayerDataParts::ReportNotEncoded(layer, *frame);
    }
    out_ << frame->GetTime() << " \"";
    WriteHex(image);
    out_ << '"';
}

void LayerDataAsciiWriter::WriteHex(const QByteArray& bytes) {
    constexpr int block = 4096; // bytes at a time, so that the text of a picture is not in memory too
    for (int at = 0; at < bytes.size(); at += block) {
        const int count = std::min(block, bytes.size() - at);
        char text[2 * block];
        LayerDataParts::ToHex(reinterpret_cast<const uchar*>(bytes.constData()) + at, count, text);
        out_.write(text, 2 * count);
    }
}

void LayerDataAsciiWriter::WriteString(const QString& text) {
    const QByteArray bytes = MayaUtil::EscapeString(text).toUtf8();
    out_ << '"';
    out_.write(bytes.constData(), bytes.size());
    out_ << '"';
}

} // namespace vellix
