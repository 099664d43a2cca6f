#include "commands/ActiveLayers.h"

#include "core/LayerManager.h"
#include "node/BaseNode.h"

namespace vellix {

void ActiveLayers::Remember(const BaseNode& node, const QList<QString>& cameras) {
    camera_ = node.GetActiveCamera();
    index_ = node.GetActiveLayerIndex(camera_);
    others_.clear();
    for (const QString& camera : cameras) {
        if (camera != camera_) {
            others_.append(qMakePair(camera, node.GetActiveLayerIndex(camera)));
        }
    }
}

void ActiveLayers::Restore(BaseNode& node) const {
    for (const auto& other : others_) {
        node.SetActiveLayer(other.first, other.second, false);
    }
    if (!camera_.isEmpty()) {
        node.SetActiveLayer(camera_, index_, true);
    } else if (const std::shared_ptr<LayerManager> layers = node.GetLayerManager()) {
        layers->SetActiveCamera(camera_);
    }
}

} // namespace vellix
