#include "commands/StrokeCommit.h"

#include "core/Frame.h"
#include "core/Layer.h"
#include "host/FrameTime.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "node/BaseNode.h"

#include <memory>

namespace vellix {

StrokeCommit::StrokeCommit(const QString& camera, int layerAdded, bool frameAdded)
    : camera_(camera)
    , addedLayer_(layerAdded)
    , frameAdded_(frameAdded) {}

bool StrokeCommit::Commit(BaseNode& node) {
    if (addedLayer_ >= 0 && node.LayerCount(camera_) == 1) {
        const QString previous = node.GetPreviousActiveCamera();
        if (!previous.isEmpty() && previous != camera_) {
            previousCamera_ = previous;
            previousActiveLayer_ = node.GetActiveLayerIndex(previous);
        }
    }
    Layer* layer = node.GetActiveLayer(camera_);
    if (layer == nullptr) {
        return false;
    }
    if (frameAdded_) {
        frameTime_ = layer->GetState() == LayerState::Static
                         ? FromWholeFrames(Settings::defaultStaticFrameTime)
                         : MayaUtil::GetPlaybackTime();
    }
    if (const Frame* frame = layer->GetCurrentFrame()) {
        paintedFrame_ = frame->GetTimeValue();
    }
    return node.CommitActiveStroke(camera_, image_);
}

bool StrokeCommit::Undo(BaseNode& node) {
    if (!ExchangeImage(node)) {
        return false;
    }
    if (frameAdded_) {
        node.RemoveFrame(camera_, frameTime_);
        if (Layer* layer = node.GetActiveLayer(camera_)) {
            layer->UpdateCurrentFrameIndex(); // the frame may be far from the playback time
        }
    }
    if (addedLayer_ >= 0) {
        node.RemoveLayer(camera_, addedLayer_);
        if (previousActiveLayer_ >= 0) {
            node.SetActiveLayer(previousCamera_, previousActiveLayer_, true);
        }
    }
    return true;
}

bool StrokeCommit::Redo(BaseNode& node) {
    if (addedLayer_ >= 0) {
        if (node.InsertLayer(camera_, addedLayer_, QString()) < 0) {
            return false;
        }
        node.SetActiveLayer(camera_, addedLayer_, true);
    }
    if (frameAdded_ && node.AddFrame(camera_, frameTime_) < 0) {
        return false;
    }
    return !image_.isEmpty() && ExchangeImage(node);
}

bool StrokeCommit::ExchangeImage(BaseNode& node) {
    Layer* layer = node.GetActiveLayer(camera_);
    if (layer == nullptr || !layer->FrameExists(paintedFrame_)) {
        return false;
    }
    layer->UpdateCurrentFrameIndex(paintedFrame_);
    const bool exchanged = node.UndoStroke(camera_, image_);
    layer->UpdateCurrentFrameIndex();
    return exchanged;
}

} // namespace vellix
