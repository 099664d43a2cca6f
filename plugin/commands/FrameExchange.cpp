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
    m_timesOut = std::move(times);
}

void FrameExchange::PutBlank(const MTime& time) {
    m_blanks.push_back(time);
}

void FrameExchange::Put(std::unique_ptr<Frame> frame) {
    m_waiting.push_back(std::move(frame));
}

bool FrameExchange::Do(Layer& layer) {
    m_out = TakePacked(layer, m_timesOut);
    m_putTimes = layer.PutFrames(m_waiting);
    FrameList blanks;
    for (const MTime& time : m_blanks) {
        blanks.push_back(std::make_unique<Frame>(time));
    }
    m_blankTimes = layer.PutFrames(blanks);
    return blanks.empty() && m_waiting.empty();
}

bool FrameExchange::Undo(Layer& layer) {
    layer.TakeFrames(m_blankTimes); // the returned frames are deleted
    for (std::unique_ptr<Frame>& frame : TakePacked(layer, m_putTimes)) {
        m_waiting.push_back(std::move(frame));
    }
    layer.PutFrames(m_out);
    return m_out.empty();
}

bool FrameExchange::HasWaiting() const {
    return !m_waiting.empty();
}

} // namespace vellix
