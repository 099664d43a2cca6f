#include "commands/StrokeCommit.h"

#include "core/LayerManager.h"
#include "host/Logger.h"
#include "node/BaseNode.h"
#include "paint/ScopeExit.h"
#include "paint/TilePatch.h"

#include <memory>
#include <utility>

namespace vellix {

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
    // A script may commit the stroke of a press without saying what the press added.
    const PressAdditions& noted = layers->GetStrokeAdditions();
    additions_ = PressAdditions(*layers, drawing_, layerAdded_ || noted.HasLayer(),
                                frameAdded_ || noted.GetFrame() != FrameId::None);
    additions_.Complete(noted, layers->KeepsPlace(place.camera));
    QByteArray tiles;
    if (!layers->CommitActiveStroke(camera_, tiles)) {
        layers->CancelActiveStroke();
        Logger::Error("The stroke was dropped: the picture that it began on cannot be decoded.");
        return false;
    }
    tiles_.Keep(tiles);
    isDone_ = true;
    return true;
}

bool StrokeCommit::CommitNext(BaseNode& node) {
    const std::shared_ptr<LayerManager> layers = node.GetLayerManager();
    QByteArray next;
    if (!layers || !node.MayCommitStroke() || !layers->CommitActiveStroke(camera_, next)) {
        return false;
    }
    bool joined = false;
    const ScopeExit takeBack([&] {
        if (!joined) {
            layers->ExchangePicture(drawing_, next);
        }
    });
    QByteArray tiles = tiles_.Take();
    const ScopeExit keep([&] { tiles_.Keep(tiles); });
    TilePatch all = TilePatch::Unchecked(tiles);
    const ScopeExit giveBack([&] { tiles = all.TakeBytes(); });
    tiles.clear(); // so that the patch need not copy the bytes to change them
    joined = all.Append(TilePatch::Unchecked(next));
    return joined;
}

bool StrokeCommit::Exchange(LayerManager& layers) {
    QByteArray tiles = tiles_.Take();
    const ScopeExit keep([&] { tiles_.Keep(tiles); });
    return layers.ExchangePicture(drawing_, tiles);
}

bool StrokeCommit::Undo(BaseNode& node) {
    if (!isDone_) {
        return true; // it could not be redone
    }
    const std::shared_ptr<LayerManager> layers = node.GetLayerManager();
    if (layers) {
        const LayerManager::ChangeScope scope(*layers);
        if (Exchange(*layers)) {
            const ScopeExit exchangeAgain([&] {
                if (isDone_) { // also for lack of memory
                    Exchange(*layers);
                }
            });
            isDone_ = !additions_.TakeOut(*layers);
        }
    }
    if (isDone_) {
        Logger::Error("The stroke cannot be undone: its drawing is gone.");
    }
    return !isDone_;
}

bool StrokeCommit::Redo(BaseNode& node) {
    if (isDone_) {
        return true; // it could not be undone
    }
    const std::shared_ptr<LayerManager> layers = node.GetLayerManager();
    if (layers) {
        const LayerManager::ChangeScope scope(*layers);
        if (additions_.PutBack(*layers)) {
            const ScopeExit takeOut([&] {
                if (!isDone_) { // also for lack of memory
                    additions_.TakeOut(*layers);
                }
            });
            isDone_ = Exchange(*layers);
        }
    }
    if (!isDone_) {
        Logger::Error(
            "The stroke cannot be redone: its drawing is gone, or another one has taken its place.");
    }
    return isDone_;
}

} // namespace vellix
