#pragma once

#include "core/StackMemory.h"
#include "paint/TileSums.h"

namespace vellix {

/// A part of a stack merged into one picture, so that what is painted over or under it need not look at all
/// of its pictures again.
class MergedPictures {
public:
    void Update(const PictureStack& stack);
    /// Valid until the next update.
    Picture AsPicture() const;

private:
    TileSums sums_;
    qint64 key_ = 0;
    StackMemory memory_;
};

} // namespace vellix
