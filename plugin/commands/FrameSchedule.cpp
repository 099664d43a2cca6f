#include "commands/FrameSchedule.h"

#include "commands/FrameCheck.h"
#include "core/Frame.h"
#include "core/Layer.h"

#include <memory>
#include <utility>

namespace vellix {

void FrameSchedule::Add(const Frame& frame, int time) {
    changes_[frame.GetId()] = {frame.GetTime(), time};
}

std::vector<FrameId> FrameSchedule::GetFrames() const {
    std::vector<FrameId> frames;
    frames.reserve(changes_.size());
    for (const auto& change : changes_) {
        frames.push_back(change.first);
    }
    return frames;
}

bool FrameSchedule::Do(Layer& layer, QString& refusal) const {
    FrameCheck check(layer, GetFrames());
    for (const auto& change : changes_) {
        check.NeedFree(change.second.time);
    }
    if (!check.Passes(refusal)) {
        return false;
    }
    FrameList frames = layer.TakeFrames(GetFrames());
    for (const std::unique_ptr<Frame>& frame : frames) {
        frame->SetTimeValue(changes_.at(frame->GetId()).time);
    }
    layer.PutFrames(frames);
    return true;
}

bool FrameSchedule::Undo(Layer& layer, QString& refusal) const {
    FrameCheck check(layer, GetFrames());
    for (const auto& change : changes_) {
        check.NeedFree(change.second.before);
    }
    if (!check.Passes(refusal)) {
        return false;
    }
    FrameList frames = layer.TakeFrames(GetFrames());
    for (const std::unique_ptr<Frame>& frame : frames) {
        frame->SetTime(changes_.at(frame->GetId()).before);
    }
    layer.PutFrames(frames);
    return true;
}

} // namespace vellix
