#include "core/LayerSpot.h"

#include "core/Layer.h"
#include "core/LayerManager.h"

namespace vellix {

LayerSpot::LayerSpot(const LayerManager& layers, LayerId layer) {
    const LayerPlace place = layers.FindLayer(layer);
    camera_ = CameraHandle(place.camera);
    for (int index = place.index - 1; index >= 0; --index) {
        below_.push_back(layers.GetLayer(place.camera, index)->GetId());
    }
}

int LayerSpot::GetIndex(const LayerManager& layers, const QString& camera, LayerId moved) const {
    int index = 0;
    for (const LayerId id : below_) {
        const LayerPlace place = layers.FindLayer(id);
        if (place.layer && place.camera == camera && id != moved) {
            index = place.index + 1;
            break;
        }
    }
    const LayerPlace self = layers.FindLayer(moved);
    const bool leavesGapBelow = self.layer && self.camera == camera && self.index < index;
    return leavesGapBelow ? index - 1 : index;
}

} // namespace vellix
