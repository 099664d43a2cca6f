#include "core/MergedPictures.h"

#include "paint/Composite.h"

namespace vellix {

void MergedPictures::Update(const PictureStack& stack) {
    const TileMask changed = m_memory.FindChanges(stack);
    if (m_key == 0 || !changed.IsEmpty()) {
        Composite::Compose(m_sums, changed, stack);
        m_key = Picture::NewKey();
        m_memory.Remember(stack);
    }
}

Picture MergedPictures::AsPicture() const {
    Picture picture;
    picture.merged = &m_sums;
    picture.key = m_key;
    return picture;
}

} // namespace vellix
