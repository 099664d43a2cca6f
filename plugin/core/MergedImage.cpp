#include "core/MergedImage.h"

#include <cstddef>

namespace vellix {

MergedImage::MergedImage(QImage::Format format)
    : m_image(Composite::TransparentImage(format))
    , m_imageKey(m_image.cacheKey()) {}

void MergedImage::Update(const PictureStack& stack, const TileMask& alsoChanged) {
    const TileMask changed = FindChanges(stack) | alsoChanged;
    if (m_image.format() == QImage::Format_RGBA8888) {
        Composite::ComposeStraight(m_image, changed, stack);
    } else {
        Composite::ComposePremultiplied(m_image, changed, stack);
    }
    Remember(stack);
}

Picture MergedImage::AsPicture() const {
    Picture picture;
    picture.image = &m_image;
    picture.coverage = &m_coverage;
    picture.premultiplied = m_image.format() == QImage::Format_RGBA8888_Premultiplied;
    picture.key = m_imageKey;
    return picture;
}

TileMask MergedImage::FindChanges(const PictureStack& stack) const {
    if (m_imageKey != m_image.cacheKey()) {
        return TileMask::All();
    }
    TileMask changed;
    if (stack.size() != m_ingredients.size()) {
        changed = m_coverage.occupied | Composite::CoverageOf(stack).occupied;
    } else {
        for (std::size_t i = 0; i < stack.size(); ++i) {
            if (stack[i].key != m_ingredients[i].key || stack[i].opacity != m_ingredients[i].opacity) {
                changed |= m_ingredients[i].occupied;
                if (stack[i].image != nullptr) {
                    changed |= stack[i].coverage->occupied;
                }
            }
        }
    }
    return changed;
}

void MergedImage::Remember(const PictureStack& stack) {
    m_imageKey = m_image.cacheKey();
    m_coverage = Composite::CoverageOf(stack);
    m_ingredients.clear();
    for (const Picture& picture : stack) {
        m_ingredients.push_back({picture.key, picture.opacity,
                                 picture.image == nullptr ? TileMask() : picture.coverage->occupied});
    }
}

} // namespace vellix
