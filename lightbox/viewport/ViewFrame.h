#pragma once

#include "openmaya/DrawList.h"
#include "viewport/DrawnScene.h"

#include <QRect>

#include <cstdint>
#include <vector>

namespace lightbox {

/// What one frame of a view is drawn from: the scene, and what lies over it.
class ViewFrame {
public:
    ViewFrame(DrawnScene scene, DrawList overlay, double pixelRatio);

    const DrawnScene& Scene() const { return scene_; }
    const DrawList& Overlay() const { return overlay_; }
    /// Pixels of the screen to one of the view.
    double PixelRatio() const { return pixelRatio_; }
    /// The whole picture, in pixels of the screen.
    QRect Area() const;

    /// Where its picture is another than that of an earlier frame, or a little more, in pixels of the screen
    /// from the bottom left with y upward. Narrow when nothing but pixels of textures have changed, as while
    /// a stroke is drawn; empty when nothing has; else everything.
    QRect ChangedSince(const ViewFrame& earlier) const;

private:
    QRect OnScreen(const DrawItem& item, const QRect& texels) const;

    DrawnScene scene_;
    DrawList overlay_;
    double pixelRatio_;
    /// Of the overlay's textures when the frame was made; 0 for an item without one.
    std::vector<std::uint64_t> revisions_;
};

} // namespace lightbox
