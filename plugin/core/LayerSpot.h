#pragma once

#include "core/CameraHandle.h"
#include "core/Identity.h"

#include <QString>

#include <vector>

namespace vellix {

class LayerManager;

/// A place in a camera's stack: right above some layer. It is found again after other layers came and went,
/// and after the camera was renamed.
class LayerSpot {
public:
    LayerSpot() = default;
    /// The place where the layer is now.
    LayerSpot(const LayerManager& layers, LayerId layer);

    QString GetCamera() const { return camera_.Name(); }
    /// The index of a layer that is put there, `camera` being the name of GetCamera(): above the nearest
    /// layer that is still there of those that were below. `moved` is a layer of the stack that is moved
    /// there, or None. Needs no memory.
    int GetIndex(const LayerManager& layers, const QString& camera, LayerId moved = LayerId::None) const;

private:
    CameraHandle camera_;
    std::vector<LayerId> below_; ///< the nearest first
};

} // namespace vellix
