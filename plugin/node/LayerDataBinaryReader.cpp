#include "node/LayerDataBinaryReader.h"

#include "core/Layer.h"
#include "core/LayerManager.h"
#include "core/LayerState.h"
#include "host/FrameTime.h"
#include "host/Logger.h"
#include "node/LayerDataParts.h"
#include "node/StoredFrames.h"
#include "paint/PngStructure.h"

#include <maya/MFileIO.h>

#include <cstring>
#include <istream>
#include <memory>

namespace vellix {

namespace {

// The bytes of a part without its name and the parts in it.
constexpr int NAME_BYTES = 4;    ///< the length of a name
constexpr int CAMERA_BYTES = 12; ///< that, the number of layers, the active one
constexpr int LAYER_BYTES = 17;  ///< that, the number of drawings, visibility, opacity, state
constexpr int FRAME_BYTES = 8;   ///< the time, the length of the picture
// How a PNG file begins and ends.
const QByteArray SIGNATURE = QByteArrayLiteral("\x89PNG\r\n\x1a\n");
const QByteArray LAST_CHUNK = QByteArrayLiteral("IEND\xae\x42\x60\x82");

template <typename Value>
Value NumberAt(const QByteArray& bytes, int at) {
    Value value = 0;
    std::memcpy(&value, bytes.constData() + at, sizeof value);
    return value;
}

/// A text ends with its first zero, if it has one.
QString TextOf(const char* bytes, int count) {
    return QString::fromUtf8(bytes, static_cast<int>(qstrnlen(bytes, static_cast<uint>(count))));
}

} // namespace

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
    NoteWhole();
    qint32 read = 0;
    while (!ended_ && read < cameraCount && ReadCamera()) {
        ++read;
    }
    const bool isRead = (ended_ || remaining_ > 0) && ReadRest();
    if (!activeCamera.isEmpty()) {
        layers_.SetActiveCamera(activeCamera);
    }
    if (isRead) {
        Logger::Error("The stored drawing is damaged. What is whole after the damage was read.");
    } else if (ended_ && cameraCount == 0) {
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
    camera_ = camera;
    if (layerCount == 0) {
        layers_.SetPlace(camera, true);
    }
    qint32 read = 0;
    while (!ended_ && read < layerCount && ReadLayer()) {
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

bool LayerDataBinaryReader::ReadLayer() {
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
    AddLayer(name, visible, opacity, state);
    ReadFrames(frameCount);
    return true;
}

void LayerDataBinaryReader::AddLayer(const QString& name, bool visible, float opacity, qint32 state) {
    auto created = std::make_unique<Layer>();
    created->SetName(name);
    created->SetVisible(visible);
    created->SetOpacity(opacity);
    created->SetState(ToLayerState(state));
    layer_ = created.get();
    layers_.InsertLayer(camera_, -1, created.release());
}

void LayerDataBinaryReader::ReadFrames(qint32 count) {
    StoredFrames frames(*layer_);
    for (qint32 frame = 0; frame < count; ++frame) {
        const auto time = ReadValue<qint32>();
        const QByteArray image = ReadBytes();
        if (ended_) {
            ReportLoss("Layer " + layer_->GetName(), count - frame, count, "drawings");
            return;
        }
        // A length that is too large has taken bytes of what comes next.
        if (frames.Add(FromWholeFrames(time), image) && image.endsWith(LAST_CHUNK)) {
            NoteWhole();
        }
    }
}

void LayerDataBinaryReader::NoteWhole() {
    if (!ended_) {
        whole_ = in_.tellg();
        remainingAfterWhole_ = remaining_;
    }
}

bool LayerDataBinaryReader::ReadRest() {
    in_.clear();
    if (whole_ == std::streampos(-1) || !in_.seekg(whole_)) {
        return false;
    }
    QByteArray rest(static_cast<int>(remainingAfterWhole_), Qt::Uninitialized);
    in_.read(rest.data(), rest.size());
    rest.truncate(static_cast<int>(in_.gcount()));
    bool isRead = false;
    int end = 0; // of the picture before
    for (int at = rest.indexOf(SIGNATURE, FRAME_BYTES); at >= 0; at = rest.indexOf(SIGNATURE, at + 1)) {
        const int pictureEnd = rest.indexOf(LAST_CHUNK, at) + LAST_CHUNK.size();
        const QByteArray png = rest.mid(at, pictureEnd - at);
        if (at - FRAME_BYTES < end || pictureEnd < at || !PngStructure::IsSound(png)) {
            continue;
        }
        ReadHeads(rest.mid(end, at - FRAME_BYTES - end));
        StoredFrames(*layer_).Add(FromWholeFrames(NumberAt<qint32>(rest, at - FRAME_BYTES)), png);
        end = pictureEnd;
        isRead = true;
    }
    return isRead;
}

void LayerDataBinaryReader::ReadHeads(const QByteArray& bytes) {
    int at = 0;
    while (bytes.size() - at >= LAYER_BYTES) {
        const qint64 name = NumberAt<qint32>(bytes, at);
        const qint64 left = bytes.size() - at - name;
        if (name < 0 || left < CAMERA_BYTES) {
            break;
        }
        const int next = at + static_cast<int>(name) + NAME_BYTES;
        const QString text = TextOf(bytes.constData() + at + NAME_BYTES, static_cast<int>(name));
        if (left >= LAYER_BYTES && uchar(bytes[next + 4]) <= 1 &&
            IsLayerState(NumberAt<qint32>(bytes, next + 9))) {
            AddLayer(text, bytes[next + 4] != 0, NumberAt<float>(bytes, next + 5),
                     NumberAt<qint32>(bytes, next + 9));
            at = next + LAYER_BYTES - NAME_BYTES;
        } else {
            camera_ = text;
            layer_ = nullptr;
            at = next + CAMERA_BYTES - NAME_BYTES;
        }
    }
    if (!layer_ || bytes.size() - at >= LAYER_BYTES) {
        camera_ = camera_.isEmpty() ? QStringLiteral("persp") : camera_;
        AddLayer(QStringLiteral("Layer"), true, 1.0f, 0);
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
    return TextOf(bytes.constData(), bytes.size());
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
