#include "commands/ActiveLayers.h"

#include "core/Layer.h"
#include "core/LayerManager.h"
#include "node/BaseNode.h"

#include <memory>

namespace vellix {

namespace {

LayerId GetActiveLayer(const BaseNode& node, const QString& camera) {
    const Layer* const layer = node.GetActiveLayer(camera);
    return layer ? layer->GetId() : LayerId::None;
}

/// Returns false if the layer is not on the camera any more.
bool Activate(BaseNode& node, const QString& camera, LayerId layer, bool makeCameraActive) {
    if (layer == LayerId::None) {
        return node.SetActiveLayer(camera, -1, makeCameraActive);
    }
    const LayerPlace place = node.FindLayer(layer);
    return place.layer && place.camera == camera &&
           node.SetActiveLayer(camera, place.index, makeCameraActive);
}

} // namespace

void ActiveLayers::Remember(const BaseNode& node, const QList<QString>& cameras) {
    const QString active = node.GetActiveCamera();
    active_.camera = CameraHandle(active);
    active_.layer = GetActiveLayer(node, active);
    others_.clear();
    for (const QString& camera : cameras) {
        if (camera != active) {
            others_.push_back({CameraHandle(camera), GetActiveLayer(node, camera)});
        }
    }
}

void ActiveLayers::Restore(BaseNode& node) const {
    for (const Active& other : others_) {
        Activate(node, other.camera.Name(), other.layer, false);
    }
    const QString active = active_.camera.Name();
    if (active.isEmpty() || !Activate(node, active, active_.layer, true)) {
        if (const std::shared_ptr<LayerManager> layers = node.GetLayerManager()) {
            layers->SetActiveCamera(active);
        }
    }
}

} // namespace vellix
