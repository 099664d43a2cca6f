#pragma once

#include "core/Frame.h"
#include "core/Identity.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "core/LightTable.h"
#include "node/BaseNode.h"

#include <memory>

namespace vellix {

/// What pins and marks act on: the layer that is active in the master's active camera, and the frame that it
/// shows. For use at once.
struct ActiveDrawing {
    std::shared_ptr<LayerManager> layers; ///< null without a drawing node
    const Layer* layer = nullptr;
    const Frame* frame = nullptr;

    ActiveDrawing() {
        const BaseNode* const node = BaseNode::GetMaster();
        layers = node ? node->GetLayerManager() : nullptr;
        layer = layers ? layers->GetActiveLayer(layers->GetActiveCamera()) : nullptr;
        frame = layer ? layer->GetCurrentFrame() : nullptr;
    }
    /// Call with a frame only.
    DrawingId GetId() const { return {layer->GetId(), frame->GetId()}; }
    bool IsMarked() const { return layer && layers->GetLightTable().IsMarked(layer->GetId()); }
    bool IsPinned() const { return frame && layers->GetLightTable().IsPinned(GetId()); }
    bool HasPins() const { return layers && !layers->GetLightTable().GetPins().empty(); }
};

} // namespace vellix
