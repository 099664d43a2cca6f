#include "commands/ActiveLayers.h"

#include "core/Layer.h"
#include "core/LayerManager.h"
#include "host/Guarded.h"
#include "node/BaseNode.h"

#include <memory>

namespace vellix {

ActiveLayers::Active ActiveLayers::Find(const BaseNode& node, const QString& camera) {
    const Layer* const layer = node.GetActiveLayer(camera);
    const std::shared_ptr<LayerManager> layers = node.GetLayerManager();
    return {CameraHandle(camera), layer ? layer->GetId() : LayerId::None, node.LayerCount(camera) > 0,
            layers && layers->KeepsPlace(camera)};
}

void ActiveLayers::RestorePlace(const BaseNode& node, const Active& active) {
    const std::shared_ptr<LayerManager> layers = node.GetLayerManager();
    if (layers && !active.hadPlace) {
        layers->SetPlace(active.camera.Name(), false);
    }
}

/// Returns false if the layer is not on the camera any more, or if there was none.
bool ActiveLayers::Activate(BaseNode& node, const Active& active, bool makeCameraActive) {
    const QString camera = active.camera.Name();
    if (active.layer == LayerId::None) {
        return active.hadLayers && node.SetActiveLayer(camera, -1, makeCameraActive);
    }
    const LayerPlace place = node.FindLayer(active.layer);
    return place.layer && place.camera == camera &&
           node.SetActiveLayer(camera, place.index, makeCameraActive);
}

void ActiveLayers::Remember(const BaseNode& node, const QList<QString>& cameras) {
    const QString active = node.GetActiveCamera();
    active_ = Find(node, active);
    others_.clear();
    for (const QString& camera : cameras) {
        if (camera != active) {
            others_.push_back(Find(node, camera));
        }
    }
}

ActiveLayers ActiveLayers::Now(const BaseNode& node) const {
    QList<QString> cameras = {active_.camera.Name()};
    for (const Active& other : others_) {
        cameras.append(other.camera.Name());
    }
    ActiveLayers now;
    now.Remember(node, cameras);
    return now;
}

void ActiveLayers::Restore(BaseNode& node) const noexcept {
    RunGuarded("Activating the layers", [&] {
        for (const Active& other : others_) {
            RestorePlace(node, other);
            Activate(node, other, false);
        }
        RestorePlace(node, active_);
        const QString active = active_.camera.Name();
        if (active.isEmpty() || !Activate(node, active_, true)) {
            if (const std::shared_ptr<LayerManager> layers = node.GetLayerManager()) {
                layers->SetActiveCamera(active);
            }
        }
    });
}

} // namespace vellix
