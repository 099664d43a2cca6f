#pragma once

#include "openmaya/DrawList.h"
#include "viewport/DrawnScene.h"

#include <QRect>

#include <cstdint>
#include <vector>

namespace lightbox {

/// The content of one frame of a view: the scene, and the overlay over it.
class ViewFrame {
public:
    ViewFrame(DrawnScene scene, DrawList overlay, double pixelRatio);

    const DrawnScene& Scene() const { return scene_; }
    const DrawList& Overlay() const { return overlay_; }
    /// Screen pixels per view pixel.
    double PixelRatio() const { return pixelRatio_; }
    /// The rectangle of the whole frame, in screen pixels.
    QRect Area() const;

    /// A rectangle around all differences from an earlier frame, in screen pixels from the bottom left, y
    /// upward. It is narrow when only texture pixels changed, as during a stroke; empty when nothing changed;
    /// otherwise the whole frame.
    QRect ChangedSince(const ViewFrame& earlier) const;

private:
    QRect OnScreen(const DrawItem& item, const QRect& texels) const;

    DrawnScene scene_;
    DrawList overlay_;
    double pixelRatio_;
    /// The revision of each overlay item's texture when the frame was made; 0 for an item without a texture.
    std::vector<std::uint64_t> revisions_;
};

} // namespace lightbox
