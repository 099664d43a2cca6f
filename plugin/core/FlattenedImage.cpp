#include "core/FlattenedImage.h"

#include "paint/Composite.h"

namespace vellix {

FlattenedImage::FlattenedImage()
    : m_image(Composite::TransparentImage())
    , m_imageKey(m_image.cacheKey()) {}

void FlattenedImage::Update(const PictureStack& stack, const TileMask& alsoChanged) {
    const TileMask changed =
        m_imageKey == m_image.cacheKey() ? m_memory.FindChanges(stack) | alsoChanged : TileMask::All();
    Composite::Compose(m_image, changed, stack);
    m_imageKey = m_image.cacheKey();
    m_memory.Remember(stack);
}

} // namespace vellix
