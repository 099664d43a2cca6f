#include "core/SceneGhosts.h"

#include "core/ComposedScene.h"
#include "core/Frame.h"
#include "core/GhostPictures.h"
#include "core/Layer.h"
#include "core/LightTable.h"
#include "core/PictureCache.h"
#include "core/StrokePainter.h"
#include "host/GhostLayers.h"
#include "host/Settings.h"
#include "paint/Composite.h"
#include "paint/Stroke.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace vellix {
namespace {

/// Each takes up to 8 MB.
constexpr std::size_t MAX_SHOWN = 6;

bool ShowsGhosts(const ComposedScene& scene) {
    return scene.activeLayer >= 0 && scene.ghosting && scene.flip == 0;
}

/// Whether the ghosts are not just those of the active layer.
bool AreSeveral() {
    return Settings::ghostLayers != static_cast<int>(GhostLayers::Active);
}

bool HasGrowingStroke(const ComposedScene& scene) {
    return scene.stroke != nullptr && !scene.stroke->GetStroke()->points.isEmpty();
}

} // namespace

bool SceneGhosts::AreWanted(const Layer& layer, bool isActive, const LightTable* lightTable) {
    switch (static_cast<GhostLayers>(Settings::ghostLayers)) {
    case GhostLayers::Visible:
        return true;
    case GhostLayers::Marked:
        return lightTable && lightTable->IsMarked(layer.GetId());
    case GhostLayers::Active:
        break;
    }
    return isActive;
}

void SceneGhosts::AppendFrames(const ComposedScene& scene, std::vector<const Frame*>& frames) {
    if (!ShowsGhosts(scene)) {
        return;
    }
    for (int i = 0; i < scene.layers.size(); ++i) {
        Layer& layer = *scene.layers[i];
        if (AreWanted(layer, i == scene.activeLayer, scene.lightTable)) {
            GhostPictures(layer.FrameCount(), [&](int offset) {
                frames.push_back(layer.ReadFrame(offset));
                return Picture();
            });
        }
    }
}

PictureStack SceneGhosts::Update(const ComposedScene& scene) {
    PictureStack stack;
    if (!ShowsGhosts(scene)) {
        RemoveCamera(scene.camera);
        return stack;
    }
    AppendGhosts(scene, stack);
    AppendPins(scene, stack);
    return stack;
}

void SceneGhosts::RemoveCamera(const QString& camera) {
    if (active_.camera == camera) {
        active_ = ActiveGhosts();
    }
}

void SceneGhosts::ExchangeCameras(const QString& one, const QString& other) {
    if (active_.camera == one || active_.camera == other) {
        active_.camera = active_.camera == one ? other : one;
    }
}

void SceneGhosts::AppendGhosts(const ComposedScene& scene, PictureStack& stack) {
    const bool isOn = Settings::ghostPrev || Settings::ghostNext;
    const bool areSeveral = isOn && AreSeveral();
    if (!areSeveral) {
        shown_.clear();
    }
    if (!isOn || areSeveral) {
        RemoveCamera(scene.camera);
    }
    if (areSeveral) {
        AppendSeveral(scene, stack);
    } else if (isOn) {
        AppendActive(scene, stack);
    }
}

/// The active layer's ghosts, rebuilt unless a stroke is growing on the same frame.
void SceneGhosts::AppendActive(const ComposedScene& scene, PictureStack& stack) {
    Layer& layer = *scene.layers[scene.activeLayer];
    const bool same = active_.camera == scene.camera && active_.layer == layer.GetId() &&
                      active_.frameIndex == layer.GetCurrentFrameIndex();
    if (!same || !HasGrowingStroke(scene)) {
        active_ = ActiveGhosts(); // which remain if memory is short
        active_.pictures = GhostsOf(layer, scene.lightTable);
        active_.camera = scene.camera;
        active_.layer = layer.GetId();
        active_.frameIndex = layer.GetCurrentFrameIndex();
    }
    stack.insert(stack.end(), active_.pictures.begin(), active_.pictures.end());
}

/// The ghosts of each layer lie over those of the layers below it, and all of them under the layers.
void SceneGhosts::AppendSeveral(const ComposedScene& scene, PictureStack& stack) {
    PictureStack ghosts;
    for (Layer* layer : scene.layers) {
        if (AreWanted(*layer, false, scene.lightTable)) {
            const PictureStack own = GhostsOf(*layer, scene.lightTable);
            ghosts.insert(ghosts.end(), own.begin(), own.end());
        }
    }
    bool isNew = false;
    ShownGhosts& shown = FindShown(ghosts, isNew);
    if (isNew) {
        stack.insert(stack.end(), ghosts.begin(), ghosts.end());
        return;
    }
    if (!shown.isMerged) {
        shown.merged.Update(ghosts);
        shown.merged.ForgetDrawings();
        shown.isMerged = true;
    }
    stack.push_back(shown.merged.AsPicture());
}

/// Those that were shown, or, if these were not, some that were not shown for long in their place.
SceneGhosts::ShownGhosts& SceneGhosts::FindShown(const PictureStack& ghosts, bool& isNew) {
    auto found = std::find_if(shown_.begin(), shown_.end(), [&ghosts](const ShownGhosts& shown) {
        return shown.memory.FindChanges(ghosts).IsEmpty();
    });
    isNew = found == shown_.end();
    if (isNew) {
        found = shown_.size() < MAX_SHOWN ? shown_.emplace(shown_.end()) : std::prev(shown_.end());
        found->isMerged = false;
        found->memory.Remember(ghosts);
        found->memory.ForgetDrawings();
    }
    shown_.splice(shown_.begin(), shown_, found);
    return *found;
}

/// A drawing that is shown, or whose layer is hidden, is not shown as a pin.
void SceneGhosts::AppendPins(const ComposedScene& scene, PictureStack& stack) {
    if (!scene.lightTable) {
        return;
    }
    for (const DrawingId& pin : scene.lightTable->GetPins()) {
        const auto found = std::find_if(scene.layers.begin(), scene.layers.end(),
                                        [&pin](const Layer* layer) { return layer->GetId() == pin.layer; });
        const Layer* const layer = found == scene.layers.end() ? nullptr : *found;
        const Frame* const frame = layer && layer->IsVisible() ? layer->FindFrame(pin.frame) : nullptr;
        if (!frame || frame == layer->GetCurrentFrame()) {
            continue;
        }
        Picture picture = cache_.Find(frame);
        layer->ReportDamage(frame);
        picture.opacity = composite::OpacityByte(NEAREST_GHOST_OPACITY);
        picture.tinted = true;
        picture.tint = Settings::pinnedColor;
        stack.push_back(picture);
    }
}

/// The layer's ghosts, without the drawings that are pinned.
PictureStack SceneGhosts::GhostsOf(Layer& layer, const LightTable* lightTable) {
    return GhostPictures(layer.FrameCount(), [&](int offset) {
        const Frame* const frame = layer.ReadFrame(offset);
        if (frame && lightTable && lightTable->IsPinned({layer.GetId(), frame->GetId()})) {
            return Picture();
        }
        Picture picture = cache_.Find(frame);
        layer.ReportDamage(frame);
        return picture;
    });
}

} // namespace vellix
