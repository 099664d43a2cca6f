#include "core/FrameComposer.h"

#include "core/Frame.h"
#include "core/GhostPictures.h"
#include "core/Layer.h"
#include "core/SceneGhosts.h"
#include "paint/Composite.h"

#include <memory>

namespace vellix {
namespace {

Picture PictureOf(const Layer& layer, int index) {
    Picture picture;
    if (const Frame* frame = layer.GetFrame(index)) {
        picture.drawing = std::make_shared<PackedTiles>(frame->PeekTiles());
        layer.ReportDamage(frame);
    }
    return picture;
}

} // namespace

QImage ComposeLayersAt(int frame, const QList<Layer*>& layers, int activeLayer, bool ghosting,
                       const LightTable& lightTable) {
    PictureStack stack;
    const bool hasGhosts =
        ghosting && activeLayer >= 0 && activeLayer < layers.size() && layers[activeLayer]->IsVisible();
    for (int i = 0; hasGhosts && i < layers.size(); ++i) {
        const Layer& layer = *layers[i];
        if (layer.IsVisible() && SceneGhosts::AreWanted(layer, i == activeLayer, &lightTable)) {
            const int current = layer.FindFrameIndex(frame);
            const PictureStack ghosts = GhostPictures(
                layer.FrameCount(), [&](int offset) { return PictureOf(layer, current + offset); });
            stack.insert(stack.end(), ghosts.begin(), ghosts.end());
        }
    }
    for (const Layer* layer : layers) {
        if (layer->IsVisible()) {
            stack.push_back(PictureOf(*layer, layer->FindFrameIndex(frame)));
        }
    }
    QImage image = composite::TransparentImage();
    composite::Compose(image, composite::CoverageOf(stack).occupied, stack);
    return image;
}

} // namespace vellix
