#pragma once

#include "core/Layer.h"

#include <maya/MTime.h>

#include <vector>

class QString;

namespace vellix {

/// Moves the frames of a range (both ends included) by a number of frames. They may pass over other frames,
/// but not land on one.
class FrameMove {
public:
    FrameMove() = default;
    FrameMove(int offset, int first, int last);

    /// Whether the offset is 0.
    bool IsStill() const { return offset_ == 0; }

    /// Moves all frames or none. Returns false, with the reason in `refusal`, if one of them cannot move.
    bool Do(Layer& layer, QString& refusal);
    /// Returns false if a frame could not go back because its time was taken.
    bool Undo(Layer& layer);

private:
    bool FindDestinations(const Layer& layer, QString& refusal);

    int offset_ = 0;
    int first_ = 0;
    int last_ = -1;
    std::vector<int> from_;     ///< old times, whole frames, ascending
    std::vector<int> to_;       ///< new times of the same frames
    std::vector<MTime> before_; ///< exact times of the frames at from_
};

} // namespace vellix
