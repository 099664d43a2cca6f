#include "node/LayerDataAsciiReader.h"

#include "core/Layer.h"
#include "core/LayerManager.h"
#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "node/LayerDataFormat.h"
#include "node/StoredFrames.h"

#include <maya/MArgList.h>
#include <maya/MFileIO.h>
#include <maya/MTime.h>

#include <memory>

namespace vellix {

LayerDataAsciiReader::LayerDataAsciiReader(LayerManager& layers, const MArgList& args, unsigned int& element)
    : layers_(layers)
    , args_(args)
    , element_(element) {}

MStatus LayerDataAsciiReader::Read() {
    QString activeCamera;
    int cameraCount = 0;
    if (!ReadHeader(activeCamera, cameraCount)) {
        return status_;
    }
    for (int camera = 0; camera < cameraCount; ++camera) {
        if (!ReadCamera()) {
            return status_;
        }
    }
    if (!activeCamera.isEmpty()) {
        layers_.SetActiveCamera(activeCamera);
    }
    if (element_ < args_.length()) {
        Logger::Error(QString("%1 values after the end of the drawing could not be read.")
                          .arg(args_.length() - element_));
    }
    return MS::kSuccess;
}

bool LayerDataAsciiReader::ReadHeader(QString& activeCamera, int& cameraCount) {
    int version = 0;
    if (Take(version) && version < LayerDataFormat::VERSION) {
        Logger::Error("Invalid version");
        status_ = MS::kFailure;
        return false;
    }
    bool master = false;
    if (!Take(master)) {
        return Fail("Failed to get master (%1)");
    }
    if (master && !MFileIO::isReferencingFile()) {
        layers_.MakeMaster();
    }
    Take(activeCamera);
    return Take(cameraCount) || Fail("Invalid layer count (%1)");
}

bool LayerDataAsciiReader::ReadCamera() {
    QString camera;
    if (!Take(camera)) {
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
    for (int layer = 0; layer < layerCount; ++layer) {
        if (!ReadLayer(camera)) {
            return false;
        }
    }
    if (activeLayer >= 0) {
        layers_.SetActiveLayer(camera, activeLayer, true);
    }
    return true;
}

bool LayerDataAsciiReader::ReadLayer(const QString& camera) {
    QString name;
    if (!Take(name)) {
        return Fail("Invalid layer name (%1)");
    }
    int frameCount = 0;
    if (!Take(frameCount)) {
        return Fail("Invalid frame count (%1)");
    }
    if (frameCount < 0 && name == QLatin1String(LayerDataFormat::UNKNOWN_LAYER)) {
        Logger::Warning("Skipping invalid layer");
        return true;
    }
    auto created = std::make_unique<Layer>();
    created->SetName(name);
    if (!ReadLayerHeader(*created)) {
        return false;
    }
    Layer& layer = *created;
    layers_.InsertLayer(camera, -1, created.release());
    StoredFrames frames(layer);
    for (int frame = 0; frame < frameCount; ++frame) {
        if (!ReadFrame(frames, frame)) {
            return false;
        }
    }
    return true;
}

bool LayerDataAsciiReader::ReadLayerHeader(Layer& layer) {
    bool visible = true;
    if (!Take(visible)) {
        return Fail("Invalid layer visibility (%1)");
    }
    double opacity = 1.0;
    if (!Take(opacity)) {
        return Fail("Invalid opacity (%1)");
    }
    int state = 0;
    // An unknown state that is a readable number ends reading as a success: the rest may come from a later
    // version.
    if (!Take(state) || !IsLayerState(state)) {
        return Fail("Invalid layer state (%1)");
    }
    layer.SetVisible(visible);
    layer.SetOpacity(static_cast<float>(opacity));
    layer.SetState(static_cast<LayerState>(state));
    return true;
}

bool LayerDataAsciiReader::ReadFrame(StoredFrames& frames, int index) {
    MTime time;
    if (!Take(time)) {
        return Fail("Invalid frame time (%1)");
    }
    MString image;
    if (!Take(image)) {
        return Fail("Invalid draw data (%1)");
    }
    int length = 0;
    const char* text = image.asUTF8(length);
    frames.Add(index, time, LayerDataFormat::FromHex(text, length));
    return true;
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
    return false;
}

} // namespace vellix
