#pragma once

#include "core/Layer.h"

#include <maya/MTime.h>

#include <vector>

class QString;

namespace vellix {

/// Moves the frames of a range, both ends included, by a number of frames. They may pass over frames that
/// stay, but not land on one.
class FrameMove {
public:
    FrameMove() = default;
    FrameMove(int offset, int first, int last);

    bool IsStill() const { return offset_ == 0; }

    /// Nothing moves unless everything can; otherwise false, and `refusal` says why.
    bool Do(Layer& layer, QString& refusal);
    /// False when a frame could not go back, since its time was taken.
    bool Undo(Layer& layer);

private:
    bool FindDestinations(const Layer& layer, QString& refusal);

    int offset_ = 0;
    int first_ = 0;
    int last_ = -1;
    std::vector<int> from_; ///< whole frames, rising
    std::vector<int> to_;
    std::vector<MTime> before_; ///< the exact times of what is at from_
};

} // namespace vellix
