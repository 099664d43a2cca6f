#pragma once

namespace vellix {

/// Width and height of every layer image, in pixels.
constexpr int IMAGE_WIDTH = 1024;

/// Widest and tallest PNG that is decoded at all, in pixels; anything larger counts as undecodable.
constexpr int MAX_PNG_SIDE = 8192;

} // namespace vellix
