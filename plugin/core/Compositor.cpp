#include "core/Compositor.h"

#include "core/GhostPictures.h"
#include "core/Layer.h"
#include "core/StrokePainter.h"
#include "host/Settings.h"

namespace vellix {

void Compositor::AddCamera(const QString& camera) {
    m_images[camera] = std::make_unique<FlattenedImage>();
}

void Compositor::RemoveCamera(const QString& camera) {
    m_images.erase(camera);
    if (m_ghosts.camera == camera) {
        m_ghosts = Ghosts();
    }
}

QImage* Compositor::GetImage(const QString& camera) const {
    const auto found = m_images.find(camera);
    return found == m_images.end() ? nullptr : &found->second->Image();
}

void Compositor::Rebuild(const Scene& scene) {
    const auto found = m_images.find(scene.camera);
    if (found == m_images.end()) {
        return;
    }
    PictureStack stack = UpdateGhosts(scene);
    const std::size_t ghostCount = stack.size();
    for (Layer* layer : scene.layers) {
        stack.push_back(m_cache.Find(layer->ReadFrame(0)));
    }
    if (scene.stroke != nullptr && scene.activeLayer >= 0) {
        RebuildWithStroke(*found->second, scene, stack, ghostCount + std::size_t(scene.activeLayer));
    } else {
        found->second->Update(stack, TileMask());
    }
    m_cache.EndRound();
}

/// Returns the active layer's ghosts, rebuilt unless a stroke is growing on the same frame.
PictureStack Compositor::UpdateGhosts(const Scene& scene) {
    if (scene.activeLayer < 0 || !scene.ghosting || !(Settings::ghostPrev || Settings::ghostNext)) {
        if (m_ghosts.camera == scene.camera) {
            m_ghosts = Ghosts();
        }
        return PictureStack();
    }
    Layer& layer = *scene.layers[scene.activeLayer];
    const bool same = m_ghosts.camera == scene.camera && m_ghosts.layer == &layer &&
                      m_ghosts.frameIndex == layer.GetCurrentFrameIndex();
    const bool strokeGrows = scene.stroke != nullptr && !scene.stroke->GetStroke()->points.isEmpty();
    if (!same || !strokeGrows) {
        m_ghosts.camera = scene.camera;
        m_ghosts.layer = &layer;
        m_ghosts.frameIndex = layer.GetCurrentFrameIndex();
        m_ghosts.pictures = GhostPictures(
            layer.FrameCount(), [this, &layer](int offset) { return m_cache.Find(layer.ReadFrame(offset)); });
    }
    return m_ghosts.pictures;
}

/// Merges the layers under the active one, and those over it, only once. A refresh then costs the same
/// however many layers there are.
void Compositor::RebuildWithStroke(FlattenedImage& image, const Scene& scene, const PictureStack& stack,
                                   std::size_t activePicture) {
    if (m_below == nullptr) {
        m_below = std::make_unique<MergedPictures>();
        m_above = std::make_unique<MergedPictures>();
    }
    const auto drawing = stack.begin() + std::ptrdiff_t(activePicture);
    m_below->Update(PictureStack(stack.begin(), drawing));
    m_above->Update(PictureStack(drawing + 1, stack.end()));
    PictureStack merged;
    merged.push_back(m_below->AsPicture());
    TileMask changed;
    scene.stroke->AppendTo(merged, *drawing, scene.layers[scene.activeLayer]->ReadFrame(0), changed);
    merged.push_back(m_above->AsPicture());
    image.Update(merged, changed);
}

} // namespace vellix
