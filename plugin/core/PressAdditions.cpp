#include "core/PressAdditions.h"

#include "core/Frame.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "paint/PackedTiles.h"
#include "paint/ScopeExit.h"

#include <utility>

namespace vellix {

namespace {

/// A picture that does not decode is not blank.
bool IsBlank(const Frame& frame) {
    const PackedTiles tiles = frame.PeekTiles();
    return frame.GetPictureKey() == 0 || (!frame.IsDamaged() && tiles.Coverage().occupied.IsEmpty());
}

} // namespace

PressAdditions::PressAdditions() = default;
PressAdditions::PressAdditions(PressAdditions&& other) noexcept = default;
PressAdditions& PressAdditions::operator=(PressAdditions&& other) noexcept = default;
PressAdditions::~PressAdditions() = default;

PressAdditions::PressAdditions(const LayerManager& layers, const DrawingId& drawing, bool layerAdded,
                               bool frameAdded)
    : drawing_(drawing)
    , layerAdded_(layerAdded)
    , frameAdded_(frameAdded) {
    camera_ = layers.FindLayer(drawing.layer).camera;
    if (layerAdded && layers.LayerCount(camera_) == 1) {
        const QString previous = layers.GetPreviousActiveCamera();
        const Layer* const active = previous == camera_ ? nullptr : layers.GetActiveLayer(previous);
        previousLayer_ = active ? active->GetId() : LayerId::None;
    }
}

void PressAdditions::Complete(const PressAdditions& noted, bool hadPlace) {
    hadPlace_ = noted.layerAdded_ && hadPlace;
    if (noted.previousLayer_ != LayerId::None) {
        previousLayer_ = noted.previousLayer_;
    }
}

bool PressAdditions::TakeOut(LayerManager& layers) {
    if (!layerAdded_ && !frameAdded_) {
        return true;
    }
    const LayerPlace place = layers.FindLayer(drawing_.layer);
    if (!place.layer) {
        return false;
    }
    const Frame* const frame = place.layer->FindFrame(drawing_.frame);
    // A picture was there before the press, whatever a script said.
    const bool isOld = frame && !IsBlank(*frame);
    // What came to the layer since the press stays, and the layer with it.
    const bool hasOthers = place.layer->FrameCount() > (frame ? 1 : 0);
    if (layerAdded_) {
        RememberPlace(layers); // before anything changes: it needs memory
    }
    if (!layerAdded_ || hasOthers || isOld) {
        if (frame && frameAdded_ && !isOld) {
            frame_ = place.layer->RemoveFrame(drawing_.frame);
        }
        if (layerAdded_ && frame) {
            layers.LeaveLayerToStroke(*this);
        }
        return frame != nullptr;
    }
    const LayerManager::ChangeScope scope(layers);
    taken_->layer = TakeLayer(layers);
    layers.SetPlace(place.camera, hadPlace_);
    return true;
}

void PressAdditions::TakeOver(const PressAdditions& undone, const DrawingId& drawing) {
    drawing_ = drawing;
    layerAdded_ = true;
    previousLayer_ = undone.previousLayer_;
    camera_ = undone.camera_;
    taken_ = undone.taken_;
}

void PressAdditions::RememberPlace(const LayerManager& layers) {
    if (!taken_) {
        taken_ = std::make_shared<TakenLayer>();
    }
    taken_->activeCamera = CameraHandle(layers.GetActiveCamera());
    taken_->spot = LayerSpot(layers, drawing_.layer);
}

/// Takes the added layer out.
std::unique_ptr<Layer> PressAdditions::TakeLayer(LayerManager& layers) const {
    const LayerManager::ChangeScope scope(layers);
    const LayerPlace place = layers.FindLayer(drawing_.layer);
    std::unique_ptr<Layer> taken = layers.RemoveLayer(place.camera, place.index);
    GoBackFrom(layers, place.camera);
    return taken;
}

/// After the added layer has left the camera: makes the camera active again that was so before the press,
/// unless the user has left that of the press. Its active layer stays: the press has not changed it.
void PressAdditions::GoBackFrom(LayerManager& layers, const QString& camera) const {
    const LayerPlace previous = layers.FindLayer(previousLayer_);
    if (previous.layer && layers.GetActiveCamera() == camera) {
        const int active = layers.GetActiveLayerIndex(previous.camera);
        layers.SetActiveLayer(previous.camera, active >= 0 ? active : previous.index, true);
    }
}

bool PressAdditions::PutBack(LayerManager& layers) {
    Layer* const taken = taken_ ? taken_->layer.get() : nullptr;
    if (frame_) {
        Layer* const layer = taken ? taken : layers.FindLayer(drawing_.layer).layer;
        if (!layer || layer->FrameExists(frame_->GetTimeValue())) {
            return false;
        }
        FrameList frames(1);
        frames[0] = std::move(frame_);
        const ScopeExit kept([&] { frame_ = frames.empty() ? nullptr : std::move(frames[0]); });
        layer->PutFrames(frames);
    }
    if (taken) {
        const LayerManager::ChangeScope scope(layers);
        const QString camera = taken_->spot.GetCamera();
        const QString activeCamera = taken_->activeCamera.Name();
        // Active again if it was.
        layers.InsertLayer(camera, taken_->spot.GetIndex(layers, camera), taken_->layer);
        layers.SetActiveCamera(activeCamera);
    }
    return true;
}

void PressAdditions::Discard(LayerManager& layers) {
    const LayerManager::ChangeScope scope(layers);
    const LayerPlace place = layers.FindLayer(drawing_.layer);
    if (!place.layer) {
        if (layerAdded_ && layers.LayerCount(camera_) == 0) {
            GoBackFrom(layers, camera_);
        }
        return;
    }
    const Frame* const frame = frameAdded_ ? place.layer->FindFrame(drawing_.frame) : nullptr;
    if (frame && IsBlank(*frame)) {
        place.layer->RemoveFrame(drawing_.frame);
    }
    if (layerAdded_ && place.layer->FrameCount() > 0) {
        layers.SetPlace(place.camera, true);
    } else if (layerAdded_) {
        if (taken_) { // over from a step that was undone
            RememberPlace(layers);
            taken_->layer = TakeLayer(layers);
        } else {
            TakeLayer(layers); // needs no memory
        }
    }
}

void PressAdditions::FollowCamera(const QString& from, const QString& to) {
    if (camera_ == from) {
        camera_ = to;
    }
}

} // namespace vellix
