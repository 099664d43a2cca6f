#pragma once

#include "paint/Picture.h"

#include <functional>

namespace vellix {

/// Opacity (0..1) of the nearest ghost. The others fade evenly towards 0.
constexpr double NEAREST_GHOST_OPACITY = 0.4;

/// Builds the onion skin that the user's settings ask for: a layer's previous drawings and, over them, the
/// next ones. Nearer keys lie over farther ones and are more opaque. The override colours tint them if they
/// are on. `pictureAt` returns the drawing `offset` keys from the current one (negative: before it) and is
/// never asked beyond `keyCount`.
PictureStack GhostPictures(int keyCount, const std::function<Picture(int offset)>& pictureAt);

} // namespace vellix
