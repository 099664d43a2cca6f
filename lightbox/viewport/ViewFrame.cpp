#include "viewport/ViewFrame.h"

#include "openmaya/Texture.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace lightbox {

namespace {

/// A margin in screen pixels around a changed area, for rounding errors.
constexpr int MARGIN = 2;

} // namespace

ViewFrame::ViewFrame(DrawnScene scene, DrawList overlay, double pixelRatio)
    : scene_(std::move(scene))
    , overlay_(std::move(overlay))
    , pixelRatio_(pixelRatio) {
    revisions_.reserve(overlay_.size());
    for (const DrawItem& item : overlay_) {
        revisions_.push_back(item.texture ? item.texture->revision : 0);
    }
}

QRect ViewFrame::Area() const {
    return {0, 0, static_cast<int>(std::lround(scene_.view.Width() * pixelRatio_)),
            static_cast<int>(std::lround(scene_.view.Height() * pixelRatio_))};
}

QRect ViewFrame::ChangedSince(const ViewFrame& earlier) const {
    if (pixelRatio_ != earlier.pixelRatio_ || overlay_ != earlier.overlay_ || !(scene_ == earlier.scene_)) {
        return Area();
    }
    QRect changed;
    for (std::size_t i = 0; i < overlay_.size(); ++i) {
        if (revisions_[i] != earlier.revisions_[i]) {
            const QRect texels = overlay_[i].texture->ChangedSince(earlier.revisions_[i]);
            changed |= OnScreen(overlay_[i], texels);
        }
    }
    return changed & Area();
}

/// A rectangle around the screen pixels that the given texels of the item's texture affect.
QRect ViewFrame::OnScreen(const DrawItem& item, const QRect& texels) const {
    const QSizeF size = item.texture->image.size();
    const double across = 2.0 * item.halfWidth * pixelRatio_ / size.width();
    const double along = 2.0 * item.halfHeight * pixelRatio_ / size.height();
    if (texels.isEmpty() || across <= 0.0 || along <= 0.0) {
        return {};
    }
    // Filtering mixes a texel with its neighbours. In a shrunk texture these are texels of a mipmap level,
    // each up to twice as large as a screen pixel.
    const double reach = 2.0 * std::max(1.0, 2.0 / std::min(across, along));
    const QRectF seen = QRectF(texels).adjusted(-reach, -reach, reach, reach);
    const QPointF center = item.position * pixelRatio_;
    const QPointF right(item.up.y(), -item.up.x());
    QRectF bounds;
    for (const QPointF& corner : {seen.topLeft(), seen.topRight(), seen.bottomLeft(), seen.bottomRight()}) {
        // Texture rows go down, screen y goes up.
        const QPointF at = center + right * ((corner.x() - size.width() * 0.5) * across) +
                           item.up * ((size.height() * 0.5 - corner.y()) * along);
        bounds |= QRectF(at - QPointF(MARGIN, MARGIN), QSizeF(2 * MARGIN, 2 * MARGIN));
    }
    return bounds.toAlignedRect();
}

} // namespace lightbox
