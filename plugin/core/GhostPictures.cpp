#include "core/GhostPictures.h"

#include "host/Settings.h"
#include "paint/Composite.h"

#include <QColor>

#include <algorithm>

namespace vellix {
namespace {

/// Opacity (0..1) of the nearest ghost. The others fade evenly towards 0.
constexpr double NEAREST_OPACITY = 0.4;

} // namespace

PictureStack GhostPictures(int keyCount, const std::function<Picture(int offset)>& pictureAt) {
    PictureStack stack;
    const auto append = [&](int count, int direction, const QColor& tint) {
        for (int k = std::min(count, keyCount); k >= 1; --k) {
            Picture picture = pictureAt(direction * k);
            picture.opacity = composite::OpacityByte(NEAREST_OPACITY - (k - 1) * (NEAREST_OPACITY / count));
            picture.tinted = Settings::ghostColorOverride;
            picture.tint = tint;
            stack.push_back(picture);
        }
    };
    if (Settings::ghostPrev) {
        append(Settings::ghostPrevCount, -1, Settings::ghostColorOverridePrev);
    }
    if (Settings::ghostNext) {
        append(Settings::ghostNextCount, 1, Settings::ghostColorOverrideNext);
    }
    return stack;
}

} // namespace vellix
