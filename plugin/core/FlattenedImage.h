#pragma once

#include "core/StackMemory.h"

#include <QImage>

namespace vellix {

/// The composed image of a camera. An update composes only the tiles in which the stack differs from the last
/// one.
class FlattenedImage {
public:
    /// Starts as a transparent layer image.
    FlattenedImage();

    QImage& Image() { return image_; }
    /// Composes the stack into the image. `alsoChanged`: tiles that changed although their pictures kept
    /// their keys. Composes everything if someone else wrote into the image since the last update. Throws
    /// std::bad_alloc when memory is short; the next update then composes everything.
    void Update(const PictureStack& stack, const TileMask& alsoChanged);

private:
    QImage image_;
    qint64 imageKey_; ///< QImage::cacheKey after the last update; differs once someone else writes
    StackMemory memory_;
};

} // namespace vellix
