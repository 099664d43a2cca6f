#include "plugin/node/LayerDataText.h"

#include "core/Frame.h"
#include "core/Layer.h"
#include "node/BaseNodeLayerData.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QImage>
#include <QImageWriter>
#include <QPainter>

#include <sstream>

namespace vellix {

std::vector<std::string> Tokens(const std::string& text) {
    std::vector<std::string> tokens;
    for (size_t at = 0; at < text.size();) {
        if (std::isspace(static_cast<unsigned char>(text[at])) != 0) {
            ++at;
            continue;
        }
        std::string token;
        if (text[at] == '"') {
            for (++at; at < text.size() && text[at] != '"'; ++at) {
                if (text[at] == '\\' && at + 1 < text.size()) {
                    ++at;
                    token += text[at] == 'n' ? '\n' : text[at] == 'r' ? '\r' : text[at];
                } else {
                    token += text[at];
                }
            }
            ++at;
        } else {
            while (at < text.size() && std::isspace(static_cast<unsigned char>(text[at])) == 0) {
                token += text[at++];
            }
        }
        tokens.push_back(token);
    }
    return tokens;
}

MArgList ToArguments(const std::vector<std::string>& tokens) {
    MArgList arguments;
    for (const std::string& token : tokens) {
        arguments.addArg(MString(token.data(), static_cast<int>(token.size())));
    }
    return arguments;
}

std::string WriteAscii(BaseNodeLayerData& data) {
    std::ostringstream out;
    data.writeASCII(out);
    return out.str();
}

std::string WriteBinary(BaseNodeLayerData& data) {
    std::ostringstream out;
    data.writeBinary(out);
    return out.str();
}

ReadResult ReadAscii(const std::vector<std::string>& tokens) {
    BaseNodeLayerData data;
    unsigned element = 0;
    const MStatus status = data.readASCII(ToArguments(tokens), element);
    return {data.GetLayerManager(), status, element};
}

ReadResult ReadBinary(const std::string& bytes) {
    BaseNodeLayerData data;
    std::istringstream in(bytes);
    const MStatus status = data.readBinary(in, static_cast<unsigned>(bytes.size()));
    return {data.GetLayerManager(), status, 0};
}

QByteArray Png(int width, int height, const QColor& color, int compression) {
    QImage image(width, height, QImage::Format_RGBA8888);
    image.fill(Qt::transparent);
    QPainter(&image).fillRect(0, 0, (width + 1) / 2, (height + 1) / 2, color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "PNG");
    writer.setCompression(compression);
    writer.write(image);
    return bytes;
}

namespace {

void AddFrame(Layer& layer, int time, const QByteArray& png) {
    auto frame = std::make_unique<Frame>(MTime(time, MTime::uiUnit()));
    frame->SetPackedImage(png);
    layer.InsertFrame(frame.release());
}

void AddLayer(LayerManager& layers, const QString& camera, const QString& name, const QList<int>& times) {
    layers.InsertLayer(camera, -1, name);
    Layer* layer = layers.GetLayer(camera, layers.LayerCount(camera) - 1);
    for (const int time : times) {
        AddFrame(*layer, time, Png(1024, 1024, QColor(time & 255, 2 * name.size(), 99, 200)));
    }
}

} // namespace

void FillDrawing(LayerManager& layers) {
    AddLayer(layers, QStringLiteral("persp"), QStringLiteral("Rough"), {1, 5, 12});
    AddLayer(layers, QStringLiteral("persp"), QStringLiteral("Clean up"), {-3, 5});
    AddLayer(layers, QStringLiteral("persp"), QStringLiteral("Set"), {-999});
    AddLayer(layers, QStringLiteral("top"), QStringLiteral("Notes"), {});
    layers.SetLayerVisible(QStringLiteral("persp"), 0, false);
    layers.SetLayerOpacity(QStringLiteral("persp"), 1, 0.25f);
    layers.SetLayerState(QStringLiteral("persp"), 1, LayerState::Locked);
    layers.SetLayerState(QStringLiteral("persp"), 2, LayerState::Static);
    layers.SetActiveLayer(QStringLiteral("persp"), 1, true);
}

void FillSmallDrawing(LayerManager& layers) {
    const QByteArray png = Png(1024, 1024, Qt::transparent);
    AddLayer(layers, QStringLiteral("persp"), QStringLiteral("Rough"), {});
    AddLayer(layers, QStringLiteral("persp"), QStringLiteral("Set"), {});
    AddLayer(layers, QStringLiteral("top"), QStringLiteral("Notes"), {});
    AddFrame(*layers.GetLayer(QStringLiteral("persp"), 0), 1, png);
    AddFrame(*layers.GetLayer(QStringLiteral("top"), 0), 7, png);
}

std::string Describe(LayerManager& layers) {
    std::ostringstream out;
    out << "master " << layers.IsMaster() << " active " << layers.GetActiveCamera().toStdString() << '\n';
    for (const QString& camera : layers.GetCameras()) {
        out << camera.toStdString() << " active layer " << layers.GetActiveLayerIndex(camera) << '\n';
        for (Layer* layer : layers.GetLayers(camera)) {
            out << "  " << layer->GetName().toStdString() << ' ' << layer->IsVisible() << ' '
                << layer->GetOpacity() << ' ' << int(layer->GetState()) << ':';
            for (int index = 0; index < layer->FrameCount(); ++index) {
                const Frame* frame = layer->GetFrame(index);
                const QImage image = frame->PeekImage();
                QCryptographicHash hash(QCryptographicHash::Md5);
                hash.addData(reinterpret_cast<const char*>(image.constBits()), int(image.sizeInBytes()));
                out << ' ' << frame->GetTimeValue() << '=' << image.width() << 'x' << image.height() << '/'
                    << image.format() << '/' << hash.result().toHex().left(8).toStdString();
            }
            out << '\n';
        }
    }
    return out.str();
}

} // namespace vellix
