#include "core/FlattenedImage.h"

#include "paint/Composite.h"

namespace vellix {

FlattenedImage::FlattenedImage()
    : image_(Composite::TransparentImage())
    , imageKey_(image_.cacheKey()) {}

void FlattenedImage::Update(const PictureStack& stack, const TileMask& alsoChanged) {
    const TileMask changed =
        imageKey_ == image_.cacheKey() ? memory_.FindChanges(stack) | alsoChanged : TileMask::All();
    Composite::Compose(image_, changed, stack);
    imageKey_ = image_.cacheKey();
    memory_.Remember(stack);
}

} // namespace vellix
