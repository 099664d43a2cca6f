#include "core/Compositor.h"

#include "core/GhostPictures.h"
#include "core/Layer.h"
#include "core/StrokePainter.h"
#include "host/Settings.h"

#include <utility>

namespace vellix {

void Compositor::AddCamera(const QString& camera) {
    if (images_.find(camera) == images_.end()) { // else it needs no memory: layers are moved after this
        images_.emplace(camera, std::make_unique<FlattenedImage>());
    }
}

void Compositor::RemoveCamera(const QString& camera) {
    images_.erase(camera);
    if (ghosts_.camera == camera) {
        ghosts_ = Ghosts();
    }
}

void Compositor::RenameCamera(const QString& from, const QString& to) {
    const auto found = images_.find(from);
    if (found == images_.end() || from == to) {
        return;
    }
    images_[to].swap(found->second);
    images_.erase(found);
    if (ghosts_.camera == to) {
        ghosts_ = Ghosts();
    } else if (ghosts_.camera == from) {
        ghosts_.camera = to;
    }
}

QImage* Compositor::GetImage(const QString& camera) const {
    const auto found = images_.find(camera);
    return found == images_.end() ? nullptr : &found->second->Image();
}

void Compositor::Rebuild(const Scene& scene) {
    const auto found = images_.find(scene.camera);
    if (found == images_.end()) {
        return;
    }
    PictureStack stack = UpdateGhosts(scene);
    const std::size_t ghostCount = stack.size();
    for (Layer* layer : scene.layers) {
        stack.push_back(FindPicture(*layer, 0));
    }
    if (scene.stroke) {
        RebuildWithStroke(*found->second, scene, stack,
                          ghostCount + static_cast<std::size_t>(scene.strokeLayer));
    } else {
        found->second->Update(stack, TileMask());
    }
    cache_.EndRound();
}

Picture Compositor::FindPicture(Layer& layer, int offset) {
    const Frame* frame = layer.ReadFrame(offset);
    Picture picture = cache_.Find(frame);
    layer.ReportDamage(frame);
    return picture;
}

/// Returns the active layer's ghosts, rebuilt unless a stroke is growing on the same frame.
PictureStack Compositor::UpdateGhosts(const Scene& scene) {
    if (scene.activeLayer < 0 || !scene.ghosting || !(Settings::ghostPrev || Settings::ghostNext)) {
        if (ghosts_.camera == scene.camera) {
            ghosts_ = Ghosts();
        }
        return PictureStack();
    }
    Layer& layer = *scene.layers[scene.activeLayer];
    const bool same = ghosts_.camera == scene.camera && ghosts_.layer == layer.GetId() &&
                      ghosts_.frameIndex == layer.GetCurrentFrameIndex();
    const bool strokeGrows = scene.stroke != nullptr && !scene.stroke->GetStroke()->points.isEmpty();
    if (!same || !strokeGrows) {
        ghosts_ = Ghosts(); // which remain if memory is short
        ghosts_.pictures = GhostPictures(layer.FrameCount(),
                                         [this, &layer](int offset) { return FindPicture(layer, offset); });
        ghosts_.camera = scene.camera;
        ghosts_.layer = layer.GetId();
        ghosts_.frameIndex = layer.GetCurrentFrameIndex();
    }
    return ghosts_.pictures;
}

/// Merges the layers under the one drawn on, and those over it, only once. A refresh then costs the same
/// however many layers there are.
void Compositor::RebuildWithStroke(FlattenedImage& image, const Scene& scene, const PictureStack& stack,
                                   std::size_t drawnPicture) {
    if (!below_) {
        below_ = std::make_unique<MergedPictures>();
        above_ = std::make_unique<MergedPictures>();
    }
    const auto drawing = stack.begin() + std::ptrdiff_t(drawnPicture);
    below_->Update(PictureStack(stack.begin(), drawing));
    above_->Update(PictureStack(drawing + 1, stack.end()));
    PictureStack merged;
    merged.push_back(below_->AsPicture());
    TileMask changed;
    scene.stroke->AppendTo(merged, *drawing, scene.layers[scene.strokeLayer]->ReadFrame(0), changed);
    merged.push_back(above_->AsPicture());
    image.Update(merged, changed);
}

} // namespace vellix
