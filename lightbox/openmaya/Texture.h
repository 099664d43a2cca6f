#pragma once

#include <QImage>

#include <cstdint>
#include <string>

namespace lightbox {

/// A texture of a plug-in: its pixels on this side, until the renderer of a view brings them to the card. The
/// renderer keeps its own copy for each OpenGL context, and knows by the revision when to update it in place.
struct Texture {
    std::string name;
    /// Format_RGBA8888 with straight alpha.
    QImage image;
    bool hasMipmaps = false;
    /// Rises with every change of the pixels.
    std::uint64_t revision = 0;
};

} // namespace lightbox
