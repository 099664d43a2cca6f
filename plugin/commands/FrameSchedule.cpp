#include "commands/FrameSchedule.h"

#include "commands/FrameCheck.h"
#include "core/Frame.h"
#include "core/Layer.h"
#include "host/FrameTime.h"

#include <utility>

namespace vellix {

namespace {

MTime ToTime(int frame) {
    return FromWholeFrames(frame);
}

MTime ToTime(const MTime& time) {
    return time;
}

} // namespace

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

template <typename Time>
bool FrameSchedule::Reschedule(Layer& layer, Time Change::*wanted, QString& refusal) const {
    FrameCheck check(layer, GetFrames());
    std::vector<FrameTime> times;
    times.reserve(changes_.size());
    for (const Change& change : changes_) {
        check.NeedFree(change.*wanted);
        times.push_back({change.frame, ToTime(change.*wanted)});
    }
    if (!check.Passes(refusal)) {
        return false;
    }
    layer.MoveFrames(std::move(times));
    return true;
}

bool FrameSchedule::Do(Layer& layer, QString& refusal) const {
    return Reschedule(layer, &Change::after, refusal);
}

bool FrameSchedule::Undo(Layer& layer, QString& refusal) const {
    return Reschedule(layer, &Change::before, refusal);
}

} // namespace vellix
