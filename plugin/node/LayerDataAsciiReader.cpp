#include "node/LayerDataAsciiReader.h"

#include "core/Layer.h"
#include "core/LayerManager.h"
#include "core/LayerState.h"
#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "node/LayerDataParts.h"
#include "node/StoredFrames.h"

#include <maya/MArgList.h>
#include <maya/MFileIO.h>
#include <maya/MTime.h>

#include <algorithm>
#include <memory>

namespace vellix {

namespace {

// The numbers of tokens of a part without the parts in it.
constexpr unsigned int CAMERA_TOKENS = 3;
constexpr unsigned int LAYER_TOKENS = 5;

QString TextAt(const MArgList& args, unsigned int at) {
    MStatus status;
    const MString text = args.asString(at, &status);
    return status ? MayaUtil::ToQString(text) : QString();
}

template <typename Value>
bool IsAt(Value (MArgList::*read)(unsigned int, MStatus*) const, const MArgList& args, unsigned int at) {
    MStatus status;
    (args.*read)(at, &status);
    return bool(status);
}

/// The number at the token, or `otherwise`.
template <typename Value>
Value ValueAt(Value (MArgList::*read)(unsigned int, MStatus*) const, const MArgList& args, unsigned int at,
              Value otherwise) {
    MStatus status;
    const Value value = (args.*read)(at, &status);
    return status ? value : otherwise;
}

bool IsPicture(const MString& text) {
    int length = 0;
    const char* const digits = text.asUTF8(length);
    return LayerDataParts::LooksLikeHex(digits, length);
}

bool IsPictureAt(const MArgList& args, unsigned int at) {
    MStatus status;
    const MString text = args.asString(at, &status);
    return status && IsPicture(text);
}

bool IsNameAt(const MArgList& args, unsigned int at) {
    return IsAt(&MArgList::asString, args, at) && !IsPictureAt(args, at);
}

} // namespace

LayerDataAsciiReader::LayerDataAsciiReader(LayerManager& layers, const MArgList& args, unsigned int& element)
    : layers_(layers)
    , args_(args)
    , element_(element) {}

LayerDataAsciiReader::~LayerDataAsciiReader() = default;

MStatus LayerDataAsciiReader::Read() {
    QString activeCamera;
    int cameraCount = 0;
    bool isWhole = ReadHeader(activeCamera, cameraCount);
    for (int camera = 0; camera < cameraCount && isWhole; ++camera) {
        isWhole = ReadCamera();
    }
    const unsigned int rest = isWhole ? element_ : part_;
    const unsigned int stopped = element_;
    if (rest < args_.length()) {
        const bool isRead = ReadRest(rest);
        element_ = std::max(stopped, args_.length());
        if (isRead) {
            Logger::Error(
                QString("The stored drawing is damaged at value %1. What is whole after it was read.")
                    .arg(rest));
        } else if (isWhole) {
            Logger::Error(QString("%1 values after the end of the drawing could not be read.")
                              .arg(args_.length() - rest));
        }
    }
    EndCamera();
    if (!activeCamera.isEmpty()) {
        layers_.SetActiveCamera(activeCamera);
    }
    return failure_;
}

bool LayerDataAsciiReader::ReadHeader(QString& activeCamera, int& cameraCount) {
    int version = 0;
    if (Take(version) && version < LayerDataParts::VERSION) {
        Logger::Error("Invalid version");
        failure_ = MS::kFailure;
        if (args_.length() <= 1) { // written where there was no drawing
            return true;
        }
    }
    bool master = false;
    if (!Take(master)) {
        Fail("Failed to get master (%1)");
        if (element_ > args_.length()) {
            part_ = element_;
            return false;
        }
    } else if (master && !MFileIO::isReferencingFile()) {
        layers_.MakeMaster();
    }
    Take(activeCamera);
    part_ = element_ + 1;
    return Take(cameraCount) || Fail("Invalid layer count (%1)");
}

bool LayerDataAsciiReader::ReadCamera() {
    part_ = element_;
    QString camera;
    if (!Take(camera) || (IsLayerAt(part_) && !IsCameraAt(part_))) {
        return Fail("Invalid camera name (%1)");
    }
    int layerCount = 0;
    if (!Take(layerCount)) {
        return Fail("Invalid layer count (%1)");
    }
    int activeLayer = -1;
    if (!Take(activeLayer)) {
        return Fail("Invalid active layer index (%1)");
    }
    StartCamera(camera, activeLayer);
    if (layerCount == 0) {
        layers_.SetPlace(camera, true);
    }
    for (int layer = 0; layer < layerCount; ++layer) {
        if (!ReadLayer()) {
            return false;
        }
    }
    return true;
}

bool LayerDataAsciiReader::ReadLayer() {
    part_ = element_;
    QString name;
    if (!Take(name) || (IsCameraAt(part_) && !IsLayerAt(part_))) {
        return Fail("Invalid layer name (%1)");
    }
    int frameCount = 0;
    if (!Take(frameCount)) {
        return Fail("Invalid frame count (%1)");
    }
    if (frameCount < 0 && name == QLatin1String(LayerDataParts::UNKNOWN_LAYER)) {
        Logger::Warning("Skipping invalid layer");
        return true;
    }
    if (!ReadLayerHead(name)) {
        return false;
    }
    for (int frame = 0; frame < frameCount; ++frame) {
        if (!ReadFrame()) {
            return false;
        }
    }
    return true;
}

bool LayerDataAsciiReader::ReadLayerHead(const QString& name) {
    bool visible = true;
    if (!Take(visible)) {
        return Fail("Invalid layer visibility (%1)");
    }
    double opacity = 1.0;
    if (!Take(opacity)) {
        return Fail("Invalid opacity (%1)");
    }
    int state = 0;
    if (!Take(state)) {
        return Fail("Invalid layer state (%1)");
    }
    if (!IsLayerState(state)) {
        Fail("Invalid layer state (%1)"); // no failure: a later version may have more
    }
    StartLayer(name, visible, opacity, state);
    return true;
}

bool LayerDataAsciiReader::ReadFrame() {
    part_ = element_;
    if (IsFrameAt(part_)) {
        TakeFrame();
        return true;
    }
    MTime time;
    if (!Take(time)) {
        return Fail("Invalid frame time (%1)");
    }
    MString image;
    const bool isOutOfStep = IsLayerAt(part_) || IsCameraAt(part_) || IsFrameAt(part_ + 1);
    if (!Take(image) || isOutOfStep) {
        return Fail("Invalid draw data (%1)");
    }
    frames_->Add(time, QByteArray()); // which says what is missing
    return true;
}

/// Reads a frame whose picture looks like one, with or without its time.
void LayerDataAsciiReader::TakeFrame() {
    MTime time;
    bool hasTime = false;
    if (IsFrameAt(element_)) {
        hasTime = Take(time) || Fail("Invalid frame time (%1)");
    }
    MString image;
    Take(image);
    int length = 0;
    const char* const text = image.asUTF8(length);
    const QByteArray png = LayerDataParts::FromHex(text, length);
    if (hasTime) {
        frames_->Add(time, png);
    } else {
        frames_->AddWithoutTime(png);
    }
}

bool LayerDataAsciiReader::ReadRest(unsigned int at) {
    bool isRead = false;
    const unsigned int end = args_.length();
    while (at < end) {
        element_ = at;
        if (IsLayerAt(at)) {
            isRead = true;
            StartLayer(TextAt(args_, at), args_.asBool(at + 2), args_.asDouble(at + 3), args_.asInt(at + 4));
            element_ += LAYER_TOKENS;
        } else if (IsCameraAt(at)) {
            StartCamera(TextAt(args_, at), args_.asInt(at + 2));
            element_ += CAMERA_TOKENS;
        } else if (IsFrameAt(at) || IsPictureAt(args_, at)) {
            isRead = true;
            if (!frames_) {
                StartLayer(QStringLiteral("Layer"), true, 1.0, 0);
            }
            TakeFrame();
        } else {
            while (++element_ < end && !IsPartAt(element_)) {
            }
            ReadDamagedHead(at, element_);
        }
        at = element_;
    }
    return isRead;
}

void LayerDataAsciiReader::ReadDamagedHead(unsigned int at, unsigned int next) {
    const unsigned int damaged = next - at;
    const bool isBeforeLayer = next < args_.length() && IsLayerAt(next);
    const bool isBeforeFrame = next < args_.length() && !isBeforeLayer && IsFrameAt(next);
    // Of a part, one token may be missing, or be two.
    if (isBeforeLayer && damaged + 1 >= CAMERA_TOKENS && damaged <= CAMERA_TOKENS + 1) {
        StartCamera(TextAt(args_, at), ValueAt(&MArgList::asInt, args_, at + 2, -1));
    } else if (isBeforeFrame && damaged + 1 >= LAYER_TOKENS) {
        if (damaged + 1 >= CAMERA_TOKENS + LAYER_TOKENS) {
            StartCamera(TextAt(args_, at), ValueAt(&MArgList::asInt, args_, at + 2, -1));
            at = next - LAYER_TOKENS;
        }
        const bool isInStep = next - at == LAYER_TOKENS;
        const QString name = IsNameAt(args_, at) ? TextAt(args_, at) : QString();
        StartLayer(name.isEmpty() ? QStringLiteral("Layer") : name,
                   !isInStep || ValueAt(&MArgList::asBool, args_, at + 2, true),
                   isInStep ? ValueAt(&MArgList::asDouble, args_, at + 3, 1.0) : 1.0,
                   isInStep ? ValueAt(&MArgList::asInt, args_, at + 4, 0) : 0);
    }
}

/// Without layers it has nothing to read, and its look says too little.
bool LayerDataAsciiReader::IsCameraAt(unsigned int at) const {
    return IsNameAt(args_, at) && ValueAt(&MArgList::asInt, args_, at + 1, 0) > 0 &&
           IsAt(&MArgList::asInt, args_, at + 2) && IsLayerAt(at + CAMERA_TOKENS);
}

bool LayerDataAsciiReader::IsLayerAt(unsigned int at) const {
    const int frames = ValueAt(&MArgList::asInt, args_, at + 1, -1);
    return IsNameAt(args_, at) && frames >= 0 && IsAt(&MArgList::asBool, args_, at + 2) &&
           IsAt(&MArgList::asDouble, args_, at + 3) &&
           IsLayerState(ValueAt(&MArgList::asInt, args_, at + 4, -1)) &&
           (frames > 0 ? IsFrameAt(at + LAYER_TOKENS) : !IsAt(&MArgList::asDouble, args_, at));
}

bool LayerDataAsciiReader::IsFrameAt(unsigned int at) const {
    return IsPictureAt(args_, at + 1) && !IsPictureAt(args_, at);
}

bool LayerDataAsciiReader::IsPartAt(unsigned int at) const {
    return at == args_.length() || IsFrameAt(at) || IsPictureAt(args_, at) || IsLayerAt(at) || IsCameraAt(at);
}

void LayerDataAsciiReader::StartCamera(const QString& name, int activeLayer) {
    EndCamera();
    camera_ = name;
    activeLayer_ = activeLayer;
}

void LayerDataAsciiReader::EndCamera() {
    EndLayer();
    const bool isThere = failure_ || activeLayer_ < layers_.LayerCount(camera_);
    if (activeLayer_ >= 0 && isThere) {
        layers_.SetActiveLayer(camera_, activeLayer_, true);
    }
    activeLayer_ = -1;
}

void LayerDataAsciiReader::StartLayer(const QString& name, bool visible, double opacity, int state) {
    EndLayer();
    if (camera_.isEmpty()) {
        camera_ = QStringLiteral("persp");
    }
    auto created = std::make_unique<Layer>();
    created->SetName(name);
    created->SetVisible(visible);
    created->SetOpacity(static_cast<float>(opacity));
    created->SetState(ToLayerState(state));
    Layer& layer = *created;
    layers_.InsertLayer(camera_, -1, created.release());
    frames_ = std::make_unique<StoredFrames>(layer);
}

void LayerDataAsciiReader::EndLayer() {
    if (frames_) {
        frames_->Finish();
        frames_.reset();
    }
}

bool LayerDataAsciiReader::Take(bool& value) {
    value = args_.asBool(element_++, &status_);
    return status_ == MS::kSuccess;
}

bool LayerDataAsciiReader::Take(int& value) {
    value = args_.asInt(element_++, &status_);
    return status_ == MS::kSuccess;
}

bool LayerDataAsciiReader::Take(double& value) {
    value = args_.asDouble(element_++, &status_);
    return status_ == MS::kSuccess;
}

bool LayerDataAsciiReader::Take(MString& value) {
    value = args_.asString(element_++, &status_);
    return status_ == MS::kSuccess;
}

bool LayerDataAsciiReader::Take(QString& value) {
    MString text;
    const bool taken = Take(text);
    value = MayaUtil::ToQString(text);
    return taken;
}

bool LayerDataAsciiReader::Take(MTime& value) {
    value = args_.asTime(element_++, &status_);
    return status_ == MS::kSuccess;
}

bool LayerDataAsciiReader::Fail(const char* message) {
    Logger::Error(QString::fromLatin1(message).arg(element_ - 1));
    failure_ = failure_ ? status_ : failure_;
    return false;
}

} // namespace vellix
