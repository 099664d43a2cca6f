#include "core/MergedPictures.h"

#include "paint/Composite.h"

namespace vellix {

void MergedPictures::Update(const PictureStack& stack) {
    const TileMask changed = key_ != 0 ? memory_.FindChanges(stack) : TileMask::All();
    if (!changed.IsEmpty()) {
        key_ = 0; // until the sums and the memory agree again
        composite::Compose(sums_, changed, stack);
        memory_.Remember(stack);
        key_ = Picture::NewKey();
    }
}

Picture MergedPictures::AsPicture() const {
    Picture picture;
    picture.merged = &sums_;
    picture.key = key_;
    return picture;
}

} // namespace vellix
