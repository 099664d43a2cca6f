#pragma once

#include "paint/Picture.h"
#include "paint/TileMask.h"

#include <QColor>

#include <memory>
#include <vector>

namespace vellix {

/// Remembers a stack of pictures, to find the tiles in which another stack looks different.
class StackMemory {
public:
    /// The tiles in which the stack differs from the remembered one.
    TileMask FindChanges(const PictureStack& stack) const;
    void Remember(const PictureStack& stack);
    /// Lets go of the memory that the drawings take. A drawing that changes then counts as changed as a
    /// whole.
    void ForgetDrawings();

private:
    struct Ingredient {
        qint64 key;
        int opacity;
        bool tinted;
        QRgb tint;
        TileMask occupied;
        std::shared_ptr<const PackedTiles> drawing; ///< if it was one

        bool LooksLike(const Picture& picture) const;
    };

    std::vector<Ingredient> ingredients_;
};

} // namespace vellix
