#pragma once

#include "paint/Composite.h"

#include <QColor>
#include <QImage>

#include <functional>
#include <vector>

namespace vellix {

/// What the onion skin is made of: neighbouring drawings of one layer with the opacities they are seen at,
/// and the colours that may stand in for their own.
struct GhostRecipe {
    PictureStack previous; ///< farthest key first
    PictureStack next;     ///< farthest key first
    bool overrideColor = false;
    QColor previousColor;
    QColor nextColor;

    /// The ghosts that the user's settings ask for. `pictureAt` gives the picture so many keys away from the
    /// current one (negative: before it); there are none farther than `keyCount`.
    static GhostRecipe FromSettings(int keyCount, const std::function<Picture(int offset)>& pictureAt);
};

/// The onion skin: previous drawings under next ones, faded, premultiplied. Composed anew only when its
/// recipe changes.
class GhostImage {
public:
    void Update(const GhostRecipe& recipe);
    /// Valid until the next update.
    Picture AsPicture() const;

private:
    struct Ingredient {
        qint64 key;
        int opacity;

        bool operator==(const Ingredient& other) const {
            return key == other.key && opacity == other.opacity;
        }
    };
    using Ingredients = std::vector<Ingredient>;

    static Ingredients IngredientsOf(const GhostRecipe& recipe);
    void Compose(QImage& image, TileMask& occupied, const PictureStack& stack, const QColor* color);

    QImage m_previous;
    TileMask m_previousOccupied;
    QImage m_ghosts;
    TileCoverage m_coverage;
    Ingredients m_ingredients;
};

} // namespace vellix
