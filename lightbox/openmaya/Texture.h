#pragma once

#include <QImage>
#include <QRect>

#include <array>
#include <cstdint>
#include <string>

namespace lightbox {

/// A plug-in's texture: its pixels in main memory, until a view's renderer uploads them. The renderer keeps a
/// copy for each OpenGL context and compares revisions to update it in place.
struct Texture {
    std::string name;
    /// Format_RGBA8888 with straight alpha.
    QImage image;
    bool hasMipmaps = false;
    /// Increases with every change of the pixels.
    std::uint64_t revision = 0;

    /// Records a change of the pixels in `area`.
    void Changed(const QRect& area) {
        ++revision;
        changes_[revision % changes_.size()] = area;
    }
    /// The area changed since a revision, or a larger one; the whole image when that is too long ago.
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
    /// The changed areas of the last revisions.
    std::array<QRect, 16> changes_;
};

} // namespace lightbox
