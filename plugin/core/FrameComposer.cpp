#include "core/FrameComposer.h"

#include "core/Frame.h"
#include "core/GhostImage.h"
#include "core/Layer.h"
#include "paint/Composite.h"

#include <deque>

namespace vellix {
namespace {

/// Pictures that live as long as this does, so that packed frames need not be unpacked where they are.
class Pictures {
public:
    Picture Of(const Frame* frame) {
        Picture picture;
        const QImage image = frame == nullptr ? QImage() : frame->PeekImage();
        if (!image.isNull()) {
            m_entries.push_back({image, TileCoverage::Of(image)});
            picture.image = &m_entries.back().image;
            picture.coverage = &m_entries.back().coverage;
            picture.key = image.cacheKey();
        }
        return picture;
    }

private:
    struct Entry {
        QImage image;
        TileCoverage coverage;
    };

    std::deque<Entry> m_entries;
};

} // namespace

QImage ComposeLayersAt(int frame, const QList<Layer*>& layers, int activeLayer, bool ghosting) {
    Pictures pictures;
    GhostImage ghosts;
    PictureStack stack;
    if (ghosting && activeLayer >= 0 && activeLayer < layers.size() && layers[activeLayer]->IsVisible()) {
        const Layer& layer = *layers[activeLayer];
        const int current = layer.FindFrameIndex(frame);
        ghosts.Update(GhostRecipe::FromSettings(
            layer.FrameCount(), [&](int offset) { return pictures.Of(layer.GetFrame(current + offset)); }));
        stack.push_back(ghosts.AsPicture());
    }
    for (const Layer* layer : layers) {
        if (layer->IsVisible()) {
            stack.push_back(pictures.Of(layer->GetFrame(layer->FindFrameIndex(frame))));
        }
    }
    QImage image = Composite::TransparentImage();
    Composite::ComposeStraight(image, Composite::CoverageOf(stack).occupied, stack);
    return image;
}

} // namespace vellix
