#include "commands/FrameExchange.h"

#include "core/Frame.h"

namespace vellix {

namespace {

FrameList TakePacked(Layer& layer, const std::vector<int>& times) {
    FrameList frames = layer.TakeFrames(times);
    for (const std::unique_ptr<Frame>& frame : frames) {
        frame->PackImage();
    }
    return frames;
}

} // namespace

FrameExchange::~FrameExchange() = default;

void FrameExchange::TakeOut(std::vector<int> times) {
    timesOut_ = std::move(times);
}

void FrameExchange::PutBlank(const MTime& time) {
    blanks_.push_back(time);
}

void FrameExchange::Put(std::unique_ptr<Frame> frame) {
    waiting_.push_back(std::move(frame));
}

bool FrameExchange::Do(Layer& layer) {
    out_ = TakePacked(layer, timesOut_);
    putTimes_ = layer.PutFrames(waiting_);
    FrameList blanks;
    for (const MTime& time : blanks_) {
        blanks.push_back(std::make_unique<Frame>(time));
    }
    blankTimes_ = layer.PutFrames(blanks);
    return blanks.empty() && waiting_.empty();
}

bool FrameExchange::Undo(Layer& layer) {
    layer.TakeFrames(blankTimes_); // and deletes them
    for (std::unique_ptr<Frame>& frame : TakePacked(layer, putTimes_)) {
        waiting_.push_back(std::move(frame));
    }
    layer.PutFrames(out_);
    return out_.empty();
}

bool FrameExchange::HasWaiting() const {
    return !waiting_.empty();
}

} // namespace vellix
