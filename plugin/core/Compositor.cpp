#include "core/Compositor.h"

#include "core/Layer.h"
#include "core/StrokePainter.h"
#include "host/Settings.h"
#include "paint/Composite.h"
#include "paint/Stroke.h"

#include <cstddef>
#include <utility>
#include <vector>

namespace vellix {

void Compositor::AddCamera(const QString& camera) {
    if (images_.find(camera) == images_.end()) { // else it needs no memory: layers are moved after this
        images_.emplace(camera, std::make_unique<ComposedImage>());
    }
}

void Compositor::RemoveCamera(const QString& camera) {
    images_.erase(camera);
    ghosts_.RemoveCamera(camera);
}

void Compositor::ExchangeImages(const QString& one, const QString& other) {
    images_.find(one)->second.swap(images_.find(other)->second);
    ghosts_.ExchangeCameras(one, other);
}

QImage* Compositor::GetImage(const QString& camera) const {
    const auto found = images_.find(camera);
    return found == images_.end() ? nullptr : &found->second->image.Image();
}

void Compositor::Rebuild(const Scene& scene) {
    const auto found = images_.find(scene.camera);
    if (found == images_.end()) {
        return;
    }
    ReadDrawings(scene);
    PictureStack stack = ghosts_.Update(scene);
    const std::size_t ghostCount = stack.size();
    const PictureStack layers = PicturesOfLayers(scene);
    stack.insert(stack.end(), layers.begin(), layers.end());
    if (scene.stroke) {
        RebuildWithStroke(found->second->image, scene, stack,
                          ghostCount + static_cast<std::size_t>(scene.strokeLayer));
    } else {
        found->second->image.Update(stack, TileMask());
    }
    found->second->flip = scene.flip;
    cache_.EndRound();
}

quint64 Compositor::ShownFlip(const QString& camera) const {
    const auto found = images_.find(camera);
    return found == images_.end() ? 0 : found->second->flip;
}

/// Decodes what the cache does not hold, several drawings at a time. A stroke that grows changes only its
/// own.
void Compositor::ReadDrawings(const Scene& scene) {
    if (scene.stroke && !scene.stroke->GetStroke()->points.isEmpty()) {
        return;
    }
    std::vector<const Frame*> frames;
    frames.reserve(static_cast<std::size_t>(scene.layers.size()));
    for (int i = 0; i < scene.layers.size(); ++i) {
        frames.push_back(scene.flip != 0 ? scene.flipped[i] : scene.layers[i]->ReadFrame(0));
    }
    SceneGhosts::AppendFrames(scene, frames);
    cache_.ReadAll(frames);
}

PictureStack Compositor::PicturesOfLayers(const Scene& scene) {
    const int otherOpacity = composite::OpacityByte(Settings::otherLayersOpacity / 100.0);
    PictureStack stack;
    for (int i = 0; i < scene.layers.size(); ++i) {
        Layer& layer = *scene.layers[i];
        stack.push_back(scene.flip != 0 ? FindFlipped(layer, scene.flipped[i]) : FindPicture(layer, 0));
        if (scene.IsDimmed(i)) {
            stack.back().opacity = otherOpacity;
        }
    }
    return stack;
}

/// The picture of a frame that is shown in place of the current one, which counts as read.
Picture Compositor::FindFlipped(Layer& layer, const Frame* frame) {
    layer.ReadFrame(0);
    Picture picture = cache_.Find(frame);
    layer.ReportDamage(frame);
    return picture;
}

Picture Compositor::FindPicture(Layer& layer, int offset) {
    const Frame* frame = layer.ReadFrame(offset);
    Picture picture = cache_.Find(frame);
    layer.ReportDamage(frame);
    return picture;
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
