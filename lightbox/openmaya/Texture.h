#pragma once

#include <QImage>
#include <QRect>

#include <array>
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

    /// Notes that these pixels have changed.
    void Changed(const QRect& area) {
        ++revision;
        changes_[revision % changes_.size()] = area;
    }
    /// The pixels that have changed since that revision, or more; all of them when it is too long ago.
    QRect ChangedSince(std::uint64_t earlier) const {
        if (earlier > revision || revision - earlier > changes_.size()) {
            return image.rect();
        }
        QRect area;
        for (std::uint64_t each = earlier + 1; each <= revision; ++each) {
            area |= changes_[each % changes_.size()];
        }
        return area;
    }

private:
    /// Of the last revisions.
    std::array<QRect, 16> changes_;
};

} // namespace lightbox
