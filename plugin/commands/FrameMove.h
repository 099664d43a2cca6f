#pragma once

class QString;

namespace vellix {

class FrameSchedule;
class Layer;

/// Moves the frames of a range by a number of frames. They may pass over other frames, but not land on one.
class FrameMove {
public:
    /// Plans to move the frames from `first` to `last` (both included). Returns false, with the reason in
    /// `refusal`, if one of them cannot move.
    static bool Plan(const Layer& layer, int offset, int first, int last, FrameSchedule& schedule,
                     QString& refusal);
};

} // namespace vellix
