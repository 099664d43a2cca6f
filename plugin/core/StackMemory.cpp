#include "core/StackMemory.h"

#include "paint/Composite.h"

#include <cstddef>

namespace vellix {

TileMask StackMemory::FindChanges(const PictureStack& stack) const {
    TileMask changed;
    const bool comparable = stack.size() == ingredients_.size();
    for (std::size_t i = 0; i < ingredients_.size(); ++i) {
        if (comparable && ingredients_[i].LooksLike(stack[i])) {
            if (ingredients_[i].key == stack[i].key) {
                continue;
            }
            if (ingredients_[i].drawing && stack[i].drawing) {
                changed |= PackedTiles::Differences(*ingredients_[i].drawing, *stack[i].drawing);
                continue;
            }
        }
        changed |= ingredients_[i].occupied;
        if (comparable && stack[i].Coverage()) {
            changed |= stack[i].Coverage()->occupied;
        }
    }
    return comparable ? changed : changed | composite::CoverageOf(stack).occupied;
}

void StackMemory::Remember(const PictureStack& stack) {
    ingredients_.clear();
    for (const Picture& picture : stack) {
        const TileCoverage* coverage = picture.Coverage();
        ingredients_.push_back({picture.key, picture.opacity, picture.tinted, picture.tint.rgb(),
                                coverage ? coverage->occupied : TileMask(), picture.drawing});
    }
}

void StackMemory::ForgetDrawings() {
    for (Ingredient& ingredient : ingredients_) {
        ingredient.drawing.reset();
    }
}

bool StackMemory::Ingredient::LooksLike(const Picture& picture) const {
    return opacity == picture.opacity && tinted == picture.tinted && (!tinted || tint == picture.tint.rgb());
}

} // namespace vellix
