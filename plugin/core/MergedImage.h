#pragma once

#include "paint/Composite.h"
#include "paint/TileMask.h"

#include <QImage>

#include <vector>

namespace vellix {

/// A stack of pictures merged into one 1024 x 1024 image. It remembers what it was merged from, and composes
/// only the tiles in which the next stack differs.
class MergedImage {
public:
    /// Format_RGBA8888 for straight alpha, or Format_RGBA8888_Premultiplied. The image is transparent.
    explicit MergedImage(QImage::Format format);

    /// Brings the image up to date with the stack. `alsoChanged`: tiles that changed although a picture kept
    /// its key.
    void Update(const PictureStack& stack, const TileMask& alsoChanged = TileMask());

    QImage& Image() { return m_image; }
    /// The image as part of another stack; valid until the next update.
    Picture AsPicture() const;

private:
    struct Ingredient {
        qint64 key;
        int opacity;
        TileMask occupied;
    };

    TileMask FindChanges(const PictureStack& stack) const;
    void Remember(const PictureStack& stack);

    QImage m_image;
    qint64 m_imageKey = 0; ///< the image's cacheKey after the last update: nobody else has written into it
    TileCoverage m_coverage;
    std::vector<Ingredient> m_ingredients;
};

} // namespace vellix
