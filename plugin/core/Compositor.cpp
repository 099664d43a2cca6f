#include "core/Compositor.h"

#include "core/Frame.h"
#include "core/Layer.h"
#include "core/StrokePainter.h"
#include "host/Settings.h"

namespace vellix {
namespace {

/// The picture of the frame so many keys from the current one. Reading it clears the layer's flag.
Picture PictureOf(Layer& layer, int offset) {
    Picture picture;
    QImage* image = layer.GetImage(offset);
    if (!image->isNull()) {
        picture.image = image;
        picture.coverage = &layer.GetFrame(layer.GetCurrentFrameIndex() + offset)->GetCoverage();
        picture.key = image->cacheKey();
    }
    return picture;
}

} // namespace

void Compositor::AddCamera(const QString& camera) {
    m_images[camera].reset(new MergedImage(QImage::Format_RGBA8888));
}

void Compositor::RemoveCamera(const QString& camera) {
    m_images.erase(camera);
    if (m_ghostOwner.camera == camera) {
        m_ghostOwner = GhostOwner();
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
    PictureStack stack;
    stack.push_back(Ghosts(scene));
    for (Layer* layer : scene.layers) {
        stack.push_back(PictureOf(*layer, 0));
    }
    if (scene.stroke != nullptr && scene.activeLayer >= 0) {
        RebuildWithStroke(*found->second, scene, stack);
    } else {
        found->second->Update(stack);
    }
}

/// The ghosts of the active layer. A stroke that is under way keeps those of the rebuild before it.
Picture Compositor::Ghosts(const Scene& scene) {
    if (scene.activeLayer < 0 || !scene.ghosting || !(Settings::ghostPrev || Settings::ghostNext)) {
        if (m_ghostOwner.camera == scene.camera) {
            m_ghostOwner = GhostOwner();
        }
        return Picture();
    }
    Layer& layer = *scene.layers[scene.activeLayer];
    const GhostOwner owner{scene.camera, &layer, layer.GetCurrentFrameIndex()};
    const bool strokeGrows = scene.stroke != nullptr && !scene.stroke->GetStroke()->points.isEmpty();
    if (!strokeGrows || !(m_ghostOwner == owner)) {
        m_ghosts.Update(GhostRecipe::FromSettings(layer.FrameCount(),
                                                  [&layer](int offset) { return PictureOf(layer, offset); }));
        m_ghostOwner = owner;
    }
    return m_ghosts.AsPicture();
}

/// What lies under and over the layer that is drawn on is merged once; then each refresh costs the same
/// however many layers there are.
void Compositor::RebuildWithStroke(MergedImage& image, const Scene& scene, const PictureStack& stack) {
    if (m_below == nullptr) {
        m_below.reset(new MergedImage(QImage::Format_RGBA8888_Premultiplied));
        m_above.reset(new MergedImage(QImage::Format_RGBA8888_Premultiplied));
    }
    const auto drawnOn = stack.begin() + 1 + scene.activeLayer;
    m_below->Update(PictureStack(stack.begin(), drawnOn));
    m_above->Update(PictureStack(drawnOn + 1, stack.end()));
    TileMask changed;
    PictureStack merged;
    merged.push_back(m_below->AsPicture());
    scene.stroke->AppendTo(merged, *drawnOn, changed);
    merged.push_back(m_above->AsPicture());
    image.Update(merged, changed);
}

} // namespace vellix
