#include "commands/LayerSpot.h"

#include "core/Layer.h"
#include "core/LayerManager.h"
#include "node/BaseNode.h"

namespace vellix {

LayerSpot::LayerSpot(const BaseNode& node, LayerId layer) {
    const LayerPlace place = node.FindLayer(layer);
    camera_ = CameraHandle(place.camera);
    for (int index = place.index - 1; index >= 0; --index) {
        below_.push_back(node.GetLayer(place.camera, index)->GetId());
    }
}

int LayerSpot::GetIndex(const BaseNode& node, LayerId moved) const {
    const QString camera = GetCamera();
    int index = 0;
    for (const LayerId id : below_) {
        const LayerPlace place = node.FindLayer(id);
        if (place.layer && place.camera == camera && id != moved) {
            index = place.index + 1;
            break;
        }
    }
    const LayerPlace self = node.FindLayer(moved);
    const bool leavesGapBelow = self.layer && self.camera == camera && self.index < index;
    return leavesGapBelow ? index - 1 : index;
}

} // namespace vellix
