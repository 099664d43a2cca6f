#include "commands/FrameSchedule.h"

#include "commands/FrameCheck.h"
#include "core/Frame.h"
#include "core/Layer.h"
#include "host/FrameTime.h"

#include <utility>

namespace vellix {

void FrameSchedule::Add(const Frame& frame, int time) {
    changes_.push_back({frame.GetId(), frame.GetTime(), time});
}

std::vector<FrameId> FrameSchedule::GetFrames() const {
    std::vector<FrameId> frames;
    frames.reserve(changes_.size());
    for (const Change& change : changes_) {
        frames.push_back(change.frame);
    }
    return frames;
}

bool FrameSchedule::Do(Layer& layer, QString& refusal) const {
    FrameCheck check(layer, GetFrames());
    std::vector<FrameTime> times;
    times.reserve(changes_.size());
    for (const Change& change : changes_) {
        check.NeedFree(change.after);
        times.push_back({change.frame, FromWholeFrames(change.after)});
    }
    if (!check.Passes(refusal)) {
        return false;
    }
    layer.MoveFrames(std::move(times));
    return true;
}

bool FrameSchedule::Undo(Layer& layer, QString& refusal) const {
    FrameCheck check(layer, GetFrames());
    std::vector<FrameTime> times;
    times.reserve(changes_.size());
    for (const Change& change : changes_) {
        check.NeedFree(change.before);
        times.push_back({change.frame, change.before});
    }
    if (!check.Passes(refusal)) {
        return false;
    }
    layer.MoveFrames(std::move(times));
    return true;
}

} // namespace vellix
