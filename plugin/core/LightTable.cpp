#include "core/LightTable.h"

#include <algorithm>

namespace vellix {

void LightTable::SetMarked(LayerId layer, bool marked) {
    if (marked) {
        marked_.insert(layer);
    } else {
        marked_.erase(layer);
    }
}

bool LightTable::IsPinned(const DrawingId& drawing) const {
    return std::find(pins_.begin(), pins_.end(), drawing) != pins_.end();
}

void LightTable::SetPinned(const DrawingId& drawing, bool pinned) {
    const auto found = std::find(pins_.begin(), pins_.end(), drawing);
    if (found == pins_.end() && pinned) {
        pins_.push_back(drawing);
    } else if (found != pins_.end() && !pinned) {
        pins_.erase(found);
    }
}

bool LightTable::SetFlip(const QString& camera, LayerId layer, int time) {
    if (IsFlipped() && flip_.camera == camera && flip_.layer == layer && flip_.time == time) {
        return false;
    }
    flip_ = {++lastFlip_, camera, layer, time};
    return true;
}

} // namespace vellix
