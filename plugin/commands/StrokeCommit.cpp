#include "commands/StrokeCommit.h"

#include "core/LayerManager.h"
#include "host/Logger.h"
#include "node/BaseNode.h"

#include <memory>

namespace vellix {

namespace {

bool DropForLackOfMemory(LayerManager& layers) {
    layers.CancelActiveStroke();
    Logger::Error("The stroke was dropped: out of memory. Close what is not needed and draw it again.");
    return false;
}

} // namespace

StrokeCommit::StrokeCommit(const QString& camera, bool layerAdded, bool frameAdded)
    : camera_(camera)
    , layerAdded_(layerAdded)
    , frameAdded_(frameAdded) {}

bool StrokeCommit::Commit(BaseNode& node) {
    const std::shared_ptr<LayerManager> layers = node.GetLayerManager();
    if (!layers || !layers->HasActiveStroke()) {
        return false;
    }
    drawing_ = layers->GetStrokeDrawing();
    const LayerPlace place = layers->FindLayer(drawing_.layer);
    if (place.layer && place.camera != camera_) {
        return false;
    }
    if (!node.MayCommitStroke()) {
        layers->CancelActiveStroke();
        return false;
    }
    additions_ = PressAdditions(*layers, drawing_, layerAdded_, frameAdded_);
    if (layers->GetStrokeAdditions().GetPreviousLayer() != LayerId::None) {
        additions_.SetPreviousLayer(layers->GetStrokeAdditions().GetPreviousLayer());
    }
    return layers->CommitActiveStroke(camera_, image_) || DropForLackOfMemory(*layers);
}

bool StrokeCommit::Undo(BaseNode& node) {
    const std::shared_ptr<LayerManager> layers = node.GetLayerManager();
    if (layers) {
        const LayerManager::ChangeScope scope(*layers);
        if (layers->ExchangePicture(drawing_, image_)) {
            if (additions_.TakeOut(*layers)) {
                return true;
            }
            layers->ExchangePicture(drawing_, image_);
        }
    }
    Logger::Error("The stroke cannot be undone: its drawing is gone.");
    return false;
}

bool StrokeCommit::Redo(BaseNode& node) {
    const std::shared_ptr<LayerManager> layers = node.GetLayerManager();
    if (layers) {
        const LayerManager::ChangeScope scope(*layers);
        if (additions_.PutBack(*layers)) {
            if (layers->ExchangePicture(drawing_, image_)) {
                return true;
            }
            additions_.TakeOut(*layers);
        }
    }
    Logger::Error("The stroke cannot be redone: its drawing is gone, or another one has taken its place.");
    return false;
}

} // namespace vellix
