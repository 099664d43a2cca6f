#pragma once

#include "paint/Picture.h"
#include "paint/TileMask.h"

#include <QColor>

#include <vector>

namespace vellix {

/// Remembers a stack of pictures, to tell in which tiles another one looks different.
class StackMemory {
public:
    TileMask FindChanges(const PictureStack& stack) const;
    void Remember(const PictureStack& stack);

private:
    struct Ingredient {
        qint64 key;
        int opacity;
        bool tinted;
        QRgb tint;
        TileMask occupied;

        bool IsLike(const Picture& picture) const;
    };

    std::vector<Ingredient> ingredients_;
};

} // namespace vellix
