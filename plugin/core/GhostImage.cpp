#include "core/GhostImage.h"

#include "host/Settings.h"

#include <algorithm>

namespace vellix {
namespace {

/// How strongly the nearest ghost is painted; the others fade evenly towards 0.
constexpr double NEAREST_OPACITY = 0.4;

PictureStack GhostStack(int count, int keyCount, int direction,
                        const std::function<Picture(int offset)>& pictureAt) {
    PictureStack stack;
    for (int k = std::min(count, keyCount); k >= 1; --k) {
        Picture picture = pictureAt(direction * k);
        picture.opacity = Composite::OpacityByte(NEAREST_OPACITY - (k - 1) * (NEAREST_OPACITY / count));
        stack.push_back(picture);
    }
    return stack;
}

} // namespace

GhostRecipe GhostRecipe::FromSettings(int keyCount, const std::function<Picture(int offset)>& pictureAt) {
    GhostRecipe recipe;
    if (Settings::ghostPrev) {
        recipe.previous = GhostStack(Settings::ghostPrevCount, keyCount, -1, pictureAt);
    }
    if (Settings::ghostNext) {
        recipe.next = GhostStack(Settings::ghostNextCount, keyCount, 1, pictureAt);
    }
    recipe.overrideColor = Settings::ghostColorOverride;
    recipe.previousColor = Settings::ghostColorOverridePrev;
    recipe.nextColor = Settings::ghostColorOverrideNext;
    return recipe;
}

void GhostImage::Update(const GhostRecipe& recipe) {
    Ingredients ingredients = IngredientsOf(recipe);
    if (!m_ghosts.isNull() && ingredients == m_ingredients) {
        return;
    }
    if (m_ghosts.isNull()) {
        m_previous = Composite::TransparentImage(QImage::Format_RGBA8888_Premultiplied);
        m_ghosts = Composite::TransparentImage(QImage::Format_RGBA8888_Premultiplied);
    }
    m_ingredients = std::move(ingredients);
    Compose(m_previous, m_previousOccupied, recipe.previous,
            recipe.overrideColor ? &recipe.previousColor : nullptr);
    Compose(m_ghosts, m_coverage.occupied, recipe.next, recipe.overrideColor ? &recipe.nextColor : nullptr);
    Composite::DestinationOver(m_ghosts, m_previous, m_previousOccupied);
    m_coverage.occupied |= m_previousOccupied;
}

Picture GhostImage::AsPicture() const {
    Picture picture;
    picture.image = &m_ghosts;
    picture.coverage = &m_coverage;
    picture.premultiplied = true;
    picture.key = m_ghosts.cacheKey();
    return picture;
}

GhostImage::Ingredients GhostImage::IngredientsOf(const GhostRecipe& recipe) {
    Ingredients ingredients;
    for (const Picture& picture : recipe.previous) {
        ingredients.push_back({picture.key, picture.opacity});
    }
    // A key of its own parts the two lists; the colours follow.
    ingredients.push_back({-1, recipe.overrideColor ? 1 : 0});
    for (const Picture& picture : recipe.next) {
        ingredients.push_back({picture.key, picture.opacity});
    }
    if (recipe.overrideColor) {
        ingredients.push_back({qint64(recipe.previousColor.rgb()), 0});
        ingredients.push_back({qint64(recipe.nextColor.rgb()), 0});
    }
    return ingredients;
}

void GhostImage::Compose(QImage& image, TileMask& occupied, const PictureStack& stack, const QColor* color) {
    const TileMask now = Composite::CoverageOf(stack).occupied;
    Composite::ComposePremultiplied(image, occupied | now, stack);
    occupied = now;
    if (color != nullptr) {
        Composite::OverrideColorPremultiplied(image, occupied, *color);
    }
}

} // namespace vellix
