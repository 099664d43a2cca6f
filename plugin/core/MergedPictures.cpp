#include "core/MergedPictures.h"

#include "paint/Composite.h"

namespace vellix {

void MergedPictures::Update(const PictureStack& stack) {
    const TileMask changed = memory_.FindChanges(stack);
    if (key_ == 0 || !changed.IsEmpty()) {
        composite::Compose(sums_, changed, stack);
        key_ = Picture::NewKey();
        memory_.Remember(stack);
    }
}

Picture MergedPictures::AsPicture() const {
    Picture picture;
    picture.merged = &sums_;
    picture.key = key_;
    return picture;
}

} // namespace vellix
