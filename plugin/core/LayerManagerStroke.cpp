// LayerManager: the stroke being drawn, and the composed images.
#include "core/Compositor.h"
#include "core/Frame.h"
#include "core/FrameComposer.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "core/StrokePainter.h"
#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "paint/Composite.h"
#include "paint/PngStructure.h"

#include <algorithm>
#include <new>

namespace vellix {

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
    if (!stroke_->HasStroke()) {
        const Layer* layer = GetActiveLayer(camera);
        if (layer != nullptr && (shape || layer->FrameExists())) {
            stroke_->Begin(camera);
        }
    }
    return stroke_->GetStroke();
}

bool LayerManager::CommitActiveStroke(const QString& camera, QByteArray& undo) {
    return CommitStroke(camera, &undo);
}

bool LayerManager::CommitActiveStroke(const QString& camera) {
    return CommitStroke(camera, nullptr);
}

bool LayerManager::CommitStroke(const QString& camera, QByteArray* undo) {
    if (!stroke_->HasStroke()) {
        return false;
    }
    const QString strokeCamera = stroke_->GetCamera();
    Layer* layer = GetActiveLayer(camera);
    Frame* drawing = layer == nullptr ? nullptr : layer->GetCurrentFrame();
    if (drawing == nullptr) {
        if (camera == strokeCamera) {
            CancelActiveStroke(); // there is no frame left to paint it into
        }
        return false;
    }
    if (!stroke_->Commit(*drawing, undo)) {
        return false;
    }
    layer->ForceCacheUpdate();
    QueueMasterCacheUpdate(strokeCamera);
    return true;
}

bool LayerManager::UndoStroke(const QString& camera, QByteArray& buffer) {
    Layer* layer = GetActiveLayer(camera);
    Frame* drawing = layer == nullptr ? nullptr : layer->GetCurrentFrame();
    if (drawing == nullptr || !PngStructure::IsSound(buffer)) {
        return false;
    }
    const QByteArray current = drawing->GetPackedImage();
    if (current.isEmpty()) {
        return false;
    }
    drawing->SetPackedImage(buffer);
    layer->ForceCacheUpdate();
    buffer = current;
    return true;
}

void LayerManager::CancelActiveStroke() {
    if (stroke_->HasStroke()) {
        const QString camera = stroke_->GetCamera();
        Layer* layer = GetActiveLayer(camera);
        stroke_->Cancel(layer == nullptr ? nullptr : layer->GetCurrentFrame());
        // The flag below is cleared by the next rebuild, even one of another camera.
        QueueMasterCacheUpdate(camera);
        Changed(DocumentChange::Pictures);
    }
    cacheUpdateRequired_ = true;
}

bool LayerManager::PasteTransformImageAvailable() const {
    return stroke_->HasPasteImage();
}

QImage* LayerManager::GetFlattenedImage(const QString& camera) {
    QImage* image = compositor_->GetImage(camera);
    if (image == nullptr || !CacheUpdateRequired(camera)) {
        return image;
    }
    Compositor::Scene scene;
    scene.camera = camera;
    scene.layers = GetLayers(camera);
    scene.activeLayer = GetActiveLayerIndex(camera);
    if (scene.activeLayer >= 0) {
        playing_ = MayaUtil::IsPlaying();
        scene.ghosting = !(playing_ && Settings::disableGhostingDuringPlayback);
    }
    if (stroke_->HasStroke() && stroke_->GetCamera() == camera) {
        scene.stroke = stroke_.get();
    }
    try {
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
    if (scene.stroke != nullptr) {
        stroke_->GetStroke()->changed = false;
    }
    MasterCacheUpdateCompleted(camera);
    return image;
}

bool LayerManager::CacheUpdateRequired(const QString& camera) {
    if (stroke_->HasStroke() && stroke_->GetStroke()->changed) {
        return true;
    }
    if (cacheUpdateRequired_ || MasterCacheUpdateRequired(camera)) {
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
    if (!masterCacheQueue_.contains(camera)) {
        masterCacheQueue_.append(camera);
    }
}

void LayerManager::QueueMasterCacheUpdateAll() {
    for (const auto& entry : layers_) {
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
    return layers.isEmpty() ? QImage()
                            : ComposeLayersAt(frame, layers, GetActiveLayerIndex(camera), ghosting);
}

void LayerManager::OverrideImageColor(QImage& image, const QColor& color) {
    Composite::OverrideColor(image, color);
}

} // namespace vellix
