// LayerManager: the stroke being drawn, and the composed images.
#include "core/Compositor.h"
#include "core/Frame.h"
#include "core/FrameComposer.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "core/LightTable.h"
#include "core/StrokePainter.h"
#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "paint/Composite.h"
#include "paint/PngStructure.h"
#include "paint/ScopeExit.h"
#include "paint/TilePatch.h"

#include <QColor>
#include <QImage>

#include <algorithm>
#include <new>
#include <utility>

namespace vellix {
namespace {

bool ExchangeTiles(Frame& frame, QByteArray& buffer) {
    TilePatch patch(buffer);
    const ScopeExit giveBack([&] { buffer = patch.TakeBytes(); });
    buffer.clear(); // so that the patch need not copy the bytes to change them
    return frame.Exchange(patch);
}

bool ExchangeWhole(Frame& frame, QByteArray& buffer) {
    if (!PngStructure::IsSound(buffer)) {
        return false;
    }
    const QByteArray current = frame.GetPackedImage();
    if (current.isEmpty()) {
        return false;
    }
    frame.SetPackedImage(buffer);
    buffer = current;
    return true;
}

} // namespace

bool LayerManager::CanDraw(const QString& camera) const {
    return CanDraw(GetActiveLayer(camera));
}

bool LayerManager::CanDraw(const Layer* layer) const {
    return layer != nullptr && layer->FrameExists();
}

bool LayerManager::HasActiveStroke() const {
    return stroke_->HasStroke();
}

Stroke* LayerManager::GetActiveStroke(const QString& camera, bool shape) {
    Layer* const layer = stroke_->HasStroke() ? nullptr : GetActiveLayer(camera);
    if (layer && (shape || layer->FrameExists())) {
        EndFlip(); // the stroke is drawn on the current drawing, which has to be seen
        layer->UpdateCurrentFrameIndex();
        const Frame* const frame = layer->GetCurrentFrame();
        const DrawingId drawing{layer->GetId(), frame ? frame->GetId() : FrameId::None};
        stroke_->Begin(drawing);
        PressAdditions additions = std::exchange(pressAdditions_, PressAdditions());
        if (additions.GetDrawing() == drawing) {
            SetStrokeAdditions(std::move(additions));
        }
    }
    return stroke_->GetStroke();
}

DrawingId LayerManager::GetStrokeDrawing() const {
    return stroke_->GetDrawing();
}

bool LayerManager::IsLayerOfStroke(LayerId layer) const {
    return stroke_->HasStroke() && strokeAdditions_.HasLayer() && stroke_->GetDrawing().layer == layer;
}

Frame* LayerManager::FindFrame(const DrawingId& drawing) const {
    const Layer* const layer = FindLayer(drawing.layer).layer;
    return layer ? layer->FindFrame(drawing.frame) : nullptr;
}

bool LayerManager::CommitActiveStroke(const QString& camera, QByteArray& undo) {
    const LayerPlace place = FindLayer(stroke_->GetDrawing().layer);
    if (!stroke_->HasStroke() || (place.layer && place.camera != camera)) {
        return false;
    }
    Frame* const frame = place.layer ? place.layer->FindFrame(stroke_->GetDrawing().frame) : nullptr;
    if (!frame) {
        CancelActiveStroke();
        return false;
    }
    if (!stroke_->Commit(*frame, undo)) {
        return false;
    }
    SetStrokeAdditions(PressAdditions());
    SetPlace(place.camera, true); // with the layer that was the stroke's alone
    place.layer->ForceCacheUpdate();
    QueueMasterCacheUpdate(camera);
    return true;
}

bool LayerManager::UndoStroke(const QString& camera, QByteArray& buffer) {
    const Layer* const layer = GetActiveLayer(camera);
    const Frame* const frame = layer ? layer->GetCurrentFrame() : nullptr;
    return frame != nullptr && ExchangePicture({layer->GetId(), frame->GetId()}, buffer);
}

bool LayerManager::ExchangePicture(const DrawingId& drawing, QByteArray& buffer) {
    Frame* const frame = FindFrame(drawing);
    if (!frame ||
        !(TilePatch::IsMeant(buffer) ? ExchangeTiles(*frame, buffer) : ExchangeWhole(*frame, buffer))) {
        return false;
    }
    FindLayer(drawing.layer).layer->ForceCacheUpdate();
    return true;
}

void LayerManager::CancelActiveStroke() {
    if (stroke_->HasStroke()) {
        const ChangeScope scope(*this);
        const LayerPlace place = FindLayer(stroke_->GetDrawing().layer);
        stroke_->Cancel(FindFrame(stroke_->GetDrawing()));
        if (place.layer) {
            // The flag below is cleared by the next rebuild, even one of another camera.
            QueueMasterCacheUpdate(place.camera);
        }
        PressAdditions additions = std::move(strokeAdditions_);
        SetStrokeAdditions(PressAdditions());
        additions.Discard(*this);
        Changed(DocumentChange::Pictures);
    }
    cacheUpdateRequired_ = true;
}

void LayerManager::PaintActiveStroke() {
    Frame* const frame = stroke_->HasStroke() ? FindFrame(stroke_->GetDrawing()) : nullptr;
    if (frame) {
        stroke_->Paint(*frame);
    }
}

void LayerManager::NotePress(const QString& camera, bool layerAdded, bool frameAdded, bool hadPlace) {
    pressAdditions_ = PressAdditions();
    const Layer* const layer = layerAdded || frameAdded ? GetActiveLayer(camera) : nullptr;
    if (layer) {
        const Frame* const frame = layer->GetCurrentFrame();
        const DrawingId drawing{layer->GetId(), frame ? frame->GetId() : FrameId::None};
        pressAdditions_ = PressAdditions(*this, drawing, layerAdded, frameAdded);
    }
    if (layer && layerAdded) {
        stacks_[camera].keepsPlace = hadPlace; // the new layer gave it one
    }
}

void LayerManager::LeaveLayerToStroke(const PressAdditions& undone) {
    if (stroke_->HasStroke() && stroke_->GetDrawing().layer == undone.GetDrawing().layer) {
        strokeAdditions_.TakeOver(undone, stroke_->GetDrawing());
        SetPlace(FindLayer(undone.GetDrawing().layer).camera, undone.HadPlace());
    }
}

void LayerManager::TakeBackPress() {
    std::exchange(pressAdditions_, PressAdditions()).Discard(*this);
}

/// Keeps what the press of the stroke added, and tells its layer of the frame among it.
void LayerManager::SetStrokeAdditions(PressAdditions additions) {
    for (const DrawingId& drawing : {strokeAdditions_.GetDrawing(), additions.GetDrawing()}) {
        if (Layer* const layer = FindLayer(drawing.layer).layer) {
            layer->SetProvisionalFrame(additions.GetFrame());
        }
    }
    strokeAdditions_ = std::move(additions);
}

bool LayerManager::PasteTransformImageAvailable() const {
    return stroke_->HasPasteImage();
}

QImage* LayerManager::GetFlattenedImage(const QString& camera) {
    QImage* image = compositor_->GetImage(camera);
    if (!image || !CacheUpdateRequired(camera)) {
        return image;
    }
    const LayerPlace drawn = FindLayer(stroke_->GetDrawing().layer);
    try {
        Compositor::Scene scene;
        scene.camera = camera;
        scene.lightTable = lightTable_.get();
        scene.layers = GetLayers(camera);
        scene.activeLayer = GetActiveLayerIndex(camera);
        if (scene.activeLayer >= 0) {
            playing_ = MayaUtil::IsPlaying();
            scene.ghosting = !(playing_ && Settings::disableGhostingDuringPlayback);
        }
        const QList<Frame*> flipped = FindFlippedFrames(camera);
        if (!flipped.isEmpty()) {
            scene.flip = lightTable_->GetFlip().number;
            scene.flipped = flipped;
        } else if (StrokeIsShown(drawn) && drawn.camera == camera) {
            scene.stroke = stroke_.get();
            scene.strokeLayer = drawn.index;
        }
        compositor_->Rebuild(scene);
    } catch (const std::bad_alloc&) {
        if (!shortOfMemory_) {
            Logger::Error("Out of memory: the drawing cannot be shown. Nothing of it is lost.");
        }
        shortOfMemory_ = true;
        cacheUpdateRequired_ = true; // the next refresh tries again
        return image;
    }
    shortOfMemory_ = false;
    cacheUpdateRequired_ = false;
    if (stroke_->HasStroke() && drawn.camera == camera) {
        stroke_->GetStroke()->changed = false;
    }
    MasterCacheUpdateCompleted(camera);
    return image;
}

/// Whether the layer of the stroke shows the drawing that the stroke belongs to.
bool LayerManager::StrokeIsShown(const LayerPlace& place) const {
    if (!stroke_->HasStroke() || !place.layer || !place.layer->IsVisible()) {
        return false;
    }
    const Frame* const shown = place.layer->GetCurrentFrame();
    return (shown ? shown->GetId() : FrameId::None) == stroke_->GetDrawing().frame;
}

bool LayerManager::CacheUpdateRequired(const QString& camera) {
    if (stroke_->HasStroke() && stroke_->GetStroke()->changed) {
        return true;
    }
    if (cacheUpdateRequired_ || MasterCacheUpdateRequired(camera) || FlipIsStale(camera)) {
        return true;
    }
    const LayerList& layers = FindLayers(camera);
    return std::any_of(layers.begin(), layers.end(),
                       [](const std::unique_ptr<Layer>& layer) { return layer->CacheUpdateRequired(); });
}

bool LayerManager::MasterCacheUpdateRequired(const QString& camera) const {
    return masterCacheQueue_.contains(camera);
}

void LayerManager::QueueMasterCacheUpdate(const QString& camera) {
    try {
        if (!masterCacheQueue_.contains(camera)) {
            masterCacheQueue_.append(camera);
        }
    } catch (const std::bad_alloc&) {
        cacheUpdateRequired_ = true; // a change that was made does not fail because of a picture to compose
    }
}

void LayerManager::QueueMasterCacheUpdateAll() {
    for (const auto& entry : stacks_) {
        QueueMasterCacheUpdate(entry.first);
    }
}

void LayerManager::OnGhostingChanged() {
    QueueMasterCacheUpdateAll();
    Changed(DocumentChange::Ghosting);
}

void LayerManager::MasterCacheUpdateCompleted(const QString& camera) {
    masterCacheQueue_.removeAll(camera);
}

void LayerManager::ForceCacheUpdate(const QString& camera, int index) {
    if (Layer* layer = GetLayer(camera, index)) {
        layer->ForceCacheUpdate();
    }
}

QImage LayerManager::ComposeFrame(const QString& camera, int frame, bool ghosting) const {
    const QList<Layer*> layers = GetLayers(camera);
    return layers.isEmpty()
               ? QImage()
               : ComposeLayersAt(frame, layers, GetActiveLayerIndex(camera), ghosting, *lightTable_);
}

void LayerManager::OverrideImageColor(QImage& image, const QColor& color) {
    composite::OverrideColor(image, color);
}

} // namespace vellix
