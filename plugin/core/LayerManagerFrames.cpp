// LayerManager: the frames of a camera's active layer, and time.
#include "core/Compositor.h"
#include "core/Frame.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "host/MayaUtil.h"

#include <maya/MTime.h>

namespace vellix {

int LayerManager::CountCoveredFrames() const {
    int count = 0;
    for (const auto& entry : stacks_) {
        for (const auto& layer : entry.second.layers) {
            for (int i = 1; i < layer->FrameCount(); ++i) {
                count += layer->GetFrame(i - 1)->GetTimeValue() == layer->GetFrame(i)->GetTimeValue();
            }
        }
    }
    return count;
}

int LayerManager::AddFrame(const QString& camera) {
    Layer* layer = GetActiveLayer(camera);
    return layer ? layer->AddFrame() : -1;
}

int LayerManager::AddFrame(const QString& camera, const MTime& time) {
    Layer* layer = GetActiveLayer(camera);
    return layer ? layer->AddFrame(time) : -1;
}

int LayerManager::InsertFrame(const QString& camera, Frame* frame) {
    std::unique_ptr<Frame> owned(frame);
    Layer* layer = GetActiveLayer(camera);
    return layer ? layer->InsertFrame(owned.release()) : -1;
}

std::unique_ptr<Frame> LayerManager::RemoveFrame(const QString& camera) {
    Layer* layer = GetActiveLayer(camera);
    return layer ? layer->RemoveFrame() : nullptr;
}

std::unique_ptr<Frame> LayerManager::RemoveFrame(const QString& camera, const MTime& time) {
    Layer* layer = GetActiveLayer(camera);
    return layer ? layer->RemoveFrame(time) : nullptr;
}

Frame* LayerManager::GetPreviousFrame(const QString& camera, bool wrap) const {
    const Layer* layer = GetActiveLayer(camera);
    return layer ? layer->GetPreviousFrame(wrap) : nullptr;
}

Frame* LayerManager::GetNextFrame(const QString& camera, bool wrap) const {
    const Layer* layer = GetActiveLayer(camera);
    return layer ? layer->GetNextFrame(wrap) : nullptr;
}

std::unique_ptr<Frame> LayerManager::GetFrameCopy(const QString& camera, const MTime& time) const {
    const Layer* layer = GetActiveLayer(camera);
    return layer ? layer->GetFrameCopy(time) : nullptr;
}

bool LayerManager::FrameExists(const QString& camera) const {
    const Layer* layer = GetActiveLayer(camera);
    return layer != nullptr && layer->FrameExists();
}

bool LayerManager::FrameExists(const QString& camera, const MTime& time) const {
    const Layer* layer = GetActiveLayer(camera);
    return layer != nullptr && layer->FrameExists(time);
}

void LayerManager::GetFrameTimes(const QString& camera, QList<int>& times) const {
    times.clear();
    if (const Layer* layer = GetActiveLayer(camera)) {
        layer->GetFrameTimes(times);
    }
}

void LayerManager::SetFrameTimes(const QString& camera, const QList<int>& times) {
    if (Layer* layer = GetActiveLayer(camera)) {
        layer->SetFrameTimes(times);
    }
}

void LayerManager::SetFrame(int frame) {
    frame_ = frame;
}

int LayerManager::GetFrame() const {
    return frame_;
}

void LayerManager::OnPlaybackTimeChanged(int frame, bool keepActive) {
    EndFlip();
    SetFrame(frame);
    const Layer* kept = keepActive ? GetActiveLayer(activeCamera_) : nullptr;
    for (const auto& entry : stacks_) {
        for (const auto& layer : entry.second.layers) {
            if (layer.get() != kept) {
                layer->UpdateCurrentFrameIndex(frame);
            }
        }
    }
    const bool playing = MayaUtil::IsPlaying();
    if (playing != playing_) {
        playing_ = playing;
        if (playing) {
            QueueMasterCacheUpdate(activeCamera_);
        }
    }
}

std::vector<FrameId> LayerManager::GetShownFrames(const QString& camera, int frame) const {
    std::vector<FrameId> shown;
    for (const auto& layer : FindLayers(camera)) {
        if (layer->IsVisible()) {
            const Frame* found = layer->GetFrame(layer->FindFrameIndex(frame));
            shown.push_back(found == nullptr ? FrameId::None : found->GetId());
        }
    }
    return shown;
}

bool LayerManager::ReadAhead(const QString& camera, int frame) {
    for (const auto& layer : FindLayers(camera)) {
        if (layer->IsVisible() && compositor_->ReadAhead(layer->GetFrame(layer->FindFrameIndex(frame)))) {
            return true;
        }
    }
    return false;
}

} // namespace vellix
