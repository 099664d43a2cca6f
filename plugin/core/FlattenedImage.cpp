#include "core/FlattenedImage.h"

#include "paint/Composite.h"

#include <new>

namespace vellix {

namespace {

/// One transparent image for all that are not composed yet.
const QImage& SharedTransparentImage() {
    static QImage image;
    if (image.isNull()) { // also after memory was short
        image = composite::TransparentImage();
    }
    return image;
}

} // namespace

FlattenedImage::FlattenedImage()
    : image_(SharedTransparentImage())
    , imageKey_(image_.cacheKey()) {}

void FlattenedImage::Update(const PictureStack& stack, const TileMask& alsoChanged) {
    TileMask changed =
        imageKey_ == image_.cacheKey() ? memory_.FindChanges(stack) | alsoChanged : TileMask::All();
    if (!image_.isDetached()) {
        image_ = image_.copy(); // here, where a lack of memory is told
    }
    if (image_.isNull()) {
        image_ = composite::TransparentImage();
        changed = TileMask::All();
    }
    if (image_.isNull()) {
        throw std::bad_alloc();
    }
    imageKey_ = 0; // until the image and the memory agree again
    composite::Compose(image_, changed, stack);
    memory_.Remember(stack);
    imageKey_ = image_.cacheKey();
}

} // namespace vellix
