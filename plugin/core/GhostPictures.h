#pragma once

#include "paint/Picture.h"

#include <functional>

namespace vellix {

/// The onion skin that the user's settings ask for: the previous drawings of a layer and over them the next
/// ones, nearer keys over farther ones, faded, in the override colours if those are on. `pictureAt` gives the
/// drawing so many keys away from the current one (negative: before it); none is farther than `keyCount`.
PictureStack GhostPictures(int keyCount, const std::function<Picture(int offset)>& pictureAt);

} // namespace vellix
