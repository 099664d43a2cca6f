#pragma once

#include "core/StackMemory.h"
#include "paint/TileSums.h"

namespace vellix {

/// Merges part of a stack into one picture, so that painting over or under it need not read every picture
/// again.
class MergedPictures {
public:
    /// Merges only the tiles that changed since the last update.
    void Update(const PictureStack& stack);
    /// See StackMemory.
    void ForgetDrawings() { memory_.ForgetDrawings(); }
    /// The merged picture; borrows from this object and is valid until the next update.
    Picture AsPicture() const;

private:
    TileSums sums_;
    qint64 key_ = 0;
    StackMemory memory_;
};

} // namespace vellix
