// LayerManager: the light table, which changes what is seen and never the drawing.
#include "core/Compositor.h"
#include "core/Frame.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "core/LightTable.h"

#include <algorithm>

namespace vellix {
namespace {

void AppendTimes(const Layer& layer, QList<int>& times) {
    QList<int> own;
    layer.GetFrameTimes(own);
    times += own;
}

/// The index of the time so many steps from the last one that is not after `now`; an end if that is passed.
int IndexOf(const QList<int>& times, int now, int steps) {
    const auto later = std::upper_bound(times.begin(), times.end(), now);
    const qint64 index = static_cast<qint64>(later - times.begin()) - 1 + steps;
    return static_cast<int>(qBound<qint64>(0, index, times.size() - 1));
}

} // namespace

const LightTable& LayerManager::GetLightTable() const {
    return *lightTable_;
}

void LayerManager::SetLayerMarked(LayerId layer, bool marked) {
    lightTable_->SetMarked(layer, marked);
    OnGhostingChanged();
}

void LayerManager::SetPinned(const DrawingId& drawing, bool pinned) {
    lightTable_->SetPinned(drawing, pinned);
    OnGhostingChanged();
}

void LayerManager::UnpinAll() {
    lightTable_->UnpinAll();
    OnGhostingChanged();
}

/// The layers that a flip shows at another time: those that have drawings and change with the time.
QList<const Layer*> LayerManager::FindFlippedLayers(const QString& camera, bool allLayers) const {
    QList<const Layer*> layers;
    for (const Layer* layer : GetLayers(camera)) {
        const bool isMeant =
            allLayers ? layer->GetState() != LayerState::Static : layer == GetActiveLayer(camera);
        if (isMeant && layer->IsVisible() && layer->FrameCount() > 0) {
            layers.append(layer);
        }
    }
    return layers;
}

bool LayerManager::Flip(const QString& camera, int steps, bool allLayers) {
    QList<int> times;
    QList<int> current; // of the drawings that are shown now
    for (const Layer* layer : FindFlippedLayers(camera, allLayers)) {
        AppendTimes(*layer, times);
        if (const Frame* const frame = layer->GetCurrentFrame()) {
            current.append(frame->GetTimeValue());
        }
    }
    if (times.isEmpty()) {
        return false;
    }
    std::sort(times.begin(), times.end());
    times.erase(std::unique(times.begin(), times.end()), times.end());
    // Before the first key the first drawing is the next one, and there is none before it.
    const bool isBefore = current.isEmpty();
    const int now = isBefore ? times.first() - 1 : *std::max_element(current.begin(), current.end());
    const int time = isBefore && steps <= 0 ? now : times[IndexOf(times, now, steps)];
    const LayerId layer = allLayers ? LayerId::None : GetActiveLayer(camera)->GetId();
    if (lightTable_->SetFlip(camera, layer, time)) {
        Changed(DocumentChange::Flip);
    }
    return true;
}

void LayerManager::EndFlip() {
    if (lightTable_->IsFlipped()) {
        lightTable_->EndFlip();
        Changed(DocumentChange::Flip);
    }
}

/// The frames to show in place of the current ones while the camera's drawings are flipped, one for each
/// layer and null for none. Empty if they are not.
QList<Frame*> LayerManager::FindFlippedFrames(const QString& camera) const {
    const LightTable::Flip& flip = lightTable_->GetFlip();
    QList<Frame*> frames;
    if (flip.number == 0 || flip.camera != camera) {
        return frames;
    }
    for (const Layer* layer : GetLayers(camera)) {
        const bool isFlipped = flip.layer == LayerId::None || flip.layer == layer->GetId();
        Frame* const frame =
            isFlipped ? layer->GetFrame(layer->FindFrameIndex(flip.time)) : layer->GetCurrentFrame();
        frames.append(layer->IsVisible() ? frame : nullptr);
    }
    return frames;
}

/// Whether the camera's composed image shows a flip that has ended, or none yet where one has begun.
bool LayerManager::FlipIsStale(const QString& camera) const {
    const LightTable::Flip& flip = lightTable_->GetFlip();
    return compositor_->ShownFlip(camera) != (flip.camera == camera ? flip.number : 0);
}

} // namespace vellix
