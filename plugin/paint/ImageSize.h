#pragma once

namespace vellix {

/// Width and height of every layer image, in pixels.
constexpr int IMAGE_WIDTH = 1024;

/// Largest side of a PNG that is decoded, in pixels. Anything larger counts as undecodable.
constexpr int MAX_PNG_SIDE = 8192;

} // namespace vellix
