// BaseNode: whether the user may draw or change the active layer now, and the reasons why not.

#include "core/Frame.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "core/LayerState.h"
#include "host/FrameTime.h"
#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "host/panels/DialogManager.h"
#include "node/BaseNode.h"
#include "node/CameraRenames.h"

#include <maya/MTime.h>

#include <new>

namespace vellix {

bool BaseNode::PrepareForDraw(const QString& camera, int& layerIndex, bool& frameAdded) {
    const std::shared_ptr<LayerManager> layers = GetLayerManager();
    if (camera.isEmpty() || !layers) {
        return false;
    }
    CameraRenames::FollowLate();
    const bool hadPlace = layers->HasPlace(camera);
    bool layerAdded = false;
    if (layers->LayerCount(camera) == 0) {
        layerAdded = AddMissingLayer(*layers, camera, layerIndex);
        if (!layerAdded) {
            return false;
        }
    }
    frameAdded = false;
    bool isReady = false;
    const auto note = [&] {
        layers->NotePress(camera, layerAdded, frameAdded, hadPlace);
        if (!isReady) {
            layers->TakeBackPress();
            layerIndex = layerAdded ? -1 : layerIndex;
            frameAdded = false;
        }
    };
    try {
        isReady = MayChangeActiveLayer(camera) &&
                  (layers->FrameExists(camera) ? MayChangeActivePicture(camera)
                                               : AddMissingFrame(*layers, camera, frameAdded)) &&
                  layers->CanDraw(camera);
    } catch (...) {
        note();
        throw;
    }
    note();
    return isReady;
}

bool BaseNode::MayCommitStroke() const {
    const std::shared_ptr<LayerManager> layers = GetLayerManager();
    if (!layers || !layers->HasActiveStroke()) {
        return false;
    }
    const DrawingId drawing = layers->GetStrokeDrawing();
    const Layer* const layer = layers->FindLayer(drawing.layer).layer;
    if (!layer || (drawing.frame != FrameId::None && !layer->FindFrame(drawing.frame))) {
        ReportStrokeLost();
        return false;
    }
    QString reason;
    if (drawing.frame == FrameId::None) {
        reason = QStringLiteral("the layer \"%1\" has no drawing at this time.");
    } else if (!layer->IsVisible()) {
        reason = QStringLiteral("the layer \"%1\" is not visible.");
    } else if (layer->GetState() == LayerState::Locked) {
        reason = QStringLiteral("the layer \"%1\" is locked.");
    }
    if (!reason.isEmpty()) {
        Logger::Error("The stroke was dropped: " + reason.arg(layer->GetName()));
    }
    return reason.isEmpty();
}

void BaseNode::ReportStrokeLost() {
    Logger::Error("The stroke was dropped: the drawing it began on is gone.");
}

bool BaseNode::MayChangeActivePicture(const QString& camera) const {
    const Layer* active = GetActiveLayer(camera);
    Frame* frame = active ? active->GetCurrentFrame() : nullptr;
    QString reason;
    try {
        if (!frame || frame->Unpack()) {
            return true;
        }
        reason =
            "The picture of layer %1 at frame %2 cannot be decoded, and drawing on it would lose it. Draw "
            "at another frame, or delete this one first.";
    } catch (const std::bad_alloc&) {
        reason =
            "Out of memory: the picture of layer %1 at frame %2 cannot be drawn on now. It is not changed.";
    }
    Logger::Error(reason.arg(active->GetName(), QString::number(frame->GetTimeValue())));
    return false;
}

bool BaseNode::MayChangeActiveLayer(const QString& camera) const {
    const Layer* active = GetActiveLayer(camera);
    if (!active) {
        Logger::Error("An active layer does not exist.");
        return false;
    }
    if (!active->IsVisible()) {
        Logger::Error("Active layer is not visible.");
        return false;
    }
    if (active->GetState() == LayerState::Locked) {
        Logger::Error("Active layer is locked.");
        return false;
    }
    return true;
}

bool BaseNode::AddMissingLayer(LayerManager& layers, const QString& camera, int& layerIndex) {
    if (!MayaUtil::CameraExists(camera)) { // the active camera may have been deleted
        Logger::Error(QString("Camera does not exist: %1").arg(camera));
        return false;
    }
    if (!Settings::automaticallyAddFirstLayer) {
        Logger::Error("A layer does not exist for the current camera");
        return false;
    }
    if (Settings::alwaysDisplayNewLayerDialog) {
        DialogManager::ShowNewLayerDialog();
        return false;
    }
    layerIndex = layers.InsertLayer(camera, 0, QString());
    return layerIndex >= 0;
}

bool BaseNode::AddMissingFrame(LayerManager& layers, const QString& camera, bool& frameAdded) {
    MTime time = MayaUtil::GetPlaybackTime();
    if (layers.GetActiveLayer(camera)->GetState() == LayerState::Static) {
        const MTime staticTime = FromWholeFrames(Settings::defaultStaticFrameTime);
        if (!Settings::insertDefaultStaticFrame || staticTime > time) {
            Logger::Error("Static layer: A frame is required at or before the current time.");
            return false;
        }
        time = staticTime;
    }
    frameAdded = layers.AddFrame(camera, time) >= 0;
    if (!frameAdded) {
        Logger::Error("A frame cannot be added at the current time.");
    }
    return frameAdded;
}

} // namespace vellix
