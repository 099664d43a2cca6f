#include "commands/FrameExchange.h"

#include "commands/FrameCheck.h"
#include "core/Frame.h"

#include <utility>

namespace vellix {

namespace {

/// Takes frames out of a layer, into `taken`, and puts others there.
void ExchangeFrames(Layer& layer, const std::vector<FrameId>& ids, FrameList& taken, FrameList& put) {
    layer.ReserveFrames(put.size()); // between taking and putting nothing may fail
    taken = layer.TakeFrames(ids);
    for (const std::unique_ptr<Frame>& frame : taken) {
        frame->PackImage();
    }
    layer.PutFrames(put);
}

} // namespace

FrameExchange::~FrameExchange() = default;

bool FrameExchange::TakeOut(const Layer& layer, const Frame& frame) {
    if (frame.GetId() == layer.GetProvisionalFrame()) {
        return false;
    }
    outIds_.push_back(frame.GetId());
    return true;
}

void FrameExchange::PutBlank(const MTime& time) {
    Put(std::make_unique<Frame>(time));
}

void FrameExchange::Put(std::unique_ptr<Frame> frame) {
    inIds_.push_back(frame->GetId());
    in_.push_back(std::move(frame));
}

bool FrameExchange::Do(Layer& layer, QString& refusal) {
    FrameCheck check(layer, outIds_);
    for (const std::unique_ptr<Frame>& frame : in_) {
        check.NeedFree(frame->GetTimeValue());
    }
    if (!check.Passes(refusal)) {
        return false;
    }
    ExchangeFrames(layer, outIds_, out_, in_);
    return true;
}

bool FrameExchange::Undo(Layer& layer, QString& refusal) {
    FrameCheck check(layer, inIds_);
    for (const std::unique_ptr<Frame>& frame : out_) {
        check.NeedFree(frame->GetTime());
    }
    if (!check.Passes(refusal)) {
        return false;
    }
    ExchangeFrames(layer, inIds_, in_, out_);
    return true;
}

} // namespace vellix
