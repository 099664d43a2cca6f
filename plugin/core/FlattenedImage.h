#pragma once

#include "core/StackMemory.h"

#include <QImage>

namespace vellix {

/// The composed image of a camera. An update composes only the tiles in which the stack differs from the one
/// before.
class FlattenedImage {
public:
    /// A transparent layer image.
    FlattenedImage();

    QImage& Image() { return image_; }
    /// `alsoChanged`: tiles that changed although the pictures kept their keys.
    void Update(const PictureStack& stack, const TileMask& alsoChanged);

private:
    QImage image_;
    qint64 imageKey_; ///< after the last update; a different one tells that someone wrote into the image
    StackMemory memory_;
};

} // namespace vellix
