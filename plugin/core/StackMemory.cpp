#include "core/StackMemory.h"

#include "paint/Composite.h"

#include <cstddef>

namespace vellix {

TileMask StackMemory::FindChanges(const PictureStack& stack) const {
    TileMask changed;
    const bool comparable = stack.size() == m_ingredients.size();
    for (std::size_t i = 0; i < m_ingredients.size(); ++i) {
        if (comparable && m_ingredients[i].Matches(stack[i])) {
            continue;
        }
        changed |= m_ingredients[i].occupied;
        if (comparable && stack[i].Coverage() != nullptr) {
            changed |= stack[i].Coverage()->occupied;
        }
    }
    return comparable ? changed : changed | Composite::CoverageOf(stack).occupied;
}

void StackMemory::Remember(const PictureStack& stack) {
    m_ingredients.clear();
    for (const Picture& picture : stack) {
        const TileCoverage* coverage = picture.Coverage();
        m_ingredients.push_back({picture.key, picture.opacity, picture.tinted, picture.tint.rgb(),
                                 coverage == nullptr ? TileMask() : coverage->occupied});
    }
}

bool StackMemory::Ingredient::Matches(const Picture& picture) const {
    return key == picture.key && opacity == picture.opacity && tinted == picture.tinted &&
           (!tinted || tint == picture.tint.rgb());
}

} // namespace vellix
