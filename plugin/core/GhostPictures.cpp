#include "core/GhostPictures.h"

#include "host/Settings.h"
#include "paint/Composite.h"

#include <QColor>

#include <algorithm>

namespace vellix {
PictureStack GhostPictures(int keyCount, const std::function<Picture(int offset)>& pictureAt) {
    PictureStack stack;
    const auto append = [&](int count, int direction, const QColor& tint) {
        for (int k = std::min(count, keyCount); k >= 1; --k) {
            Picture picture = pictureAt(direction * k);
            picture.opacity =
                composite::OpacityByte(NEAREST_GHOST_OPACITY - (k - 1) * (NEAREST_GHOST_OPACITY / count));
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
