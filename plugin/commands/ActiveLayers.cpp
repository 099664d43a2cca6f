#include "commands/ActiveLayers.h"

#include "core/LayerManager.h"
#include "node/BaseNode.h"

namespace vellix {

void ActiveLayers::Remember(const BaseNode& node, const QList<QString>& cameras) {
    m_camera = node.GetActiveCamera();
    m_index = node.GetActiveLayerIndex(m_camera);
    m_others.clear();
    for (const QString& camera : cameras) {
        if (camera != m_camera) {
            m_others.append(qMakePair(camera, node.GetActiveLayerIndex(camera)));
        }
    }
}

void ActiveLayers::Restore(BaseNode& node) const {
    for (const auto& other : m_others) {
        node.SetActiveLayer(other.first, other.second, false);
    }
    if (!m_camera.isEmpty()) {
        node.SetActiveLayer(m_camera, m_index, true);
    } else if (const std::shared_ptr<LayerManager> layers = node.GetLayerManager()) {
        layers->SetActiveCamera(m_camera);
    }
}

} // namespace vellix
