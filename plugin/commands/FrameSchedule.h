#pragma once

#include "core/Identity.h"

#include <maya/MTime.h>

#include <vector>

class QString;

namespace vellix {

class Frame;
class Layer;

/// Gives some frames of a layer new times. Each step does everything or, if a frame is missing or a time is
/// taken, nothing.
class FrameSchedule {
public:
    /// Plans a frame's new time, in whole frames; once for a frame, and before the first Do.
    void Add(const Frame& frame, int time);

    /// Both return false, with the reason in `refusal` and nothing changed, if they cannot be done. Undo
    /// restores the exact times.
    bool Do(Layer& layer, QString& refusal) const;
    bool Undo(Layer& layer, QString& refusal) const;

private:
    struct Change {
        FrameId frame;
        MTime before;
        int after;
    };

    std::vector<FrameId> GetFrames() const;
    /// Gives the frames the wanted times, which have to be free.
    template <typename Time>
    bool Reschedule(Layer& layer, Time Change::*wanted, QString& refusal) const;

    std::vector<Change> changes_;
};

} // namespace vellix
