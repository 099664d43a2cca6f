#include "commands/FrameMove.h"

#include "core/Frame.h"
#include "host/FrameTime.h"

#include <QString>

namespace vellix {

FrameMove::FrameMove(int offset, int first, int last)
    : offset_(offset)
    , first_(first)
    , last_(last) {}

bool FrameMove::FindDestinations(const Layer& layer, QString& refusal) {
    from_.clear();
    to_.clear();
    for (int i = 0; i < layer.FrameCount(); ++i) {
        const int time = layer.GetFrame(i)->GetTimeValue();
        if (time < first_ || time > last_) {
            continue;
        }
        const qint64 wanted = qint64(time) + offset_;
        if (!IsWholeFrame(wanted)) {
            refusal = QString("Move Failed. Time %1 is out of range").arg(wanted);
            return false;
        }
        const int destination = int(wanted);
        const bool vacated = destination >= first_ && destination <= last_;
        if (!vacated && layer.FrameExists(destination)) {
            refusal = QString("Move Failed. A frame already exists at time %1").arg(destination);
            return false;
        }
        from_.push_back(time);
        to_.push_back(destination);
    }
    return true;
}

bool FrameMove::Do(Layer& layer, QString& refusal) {
    if (!FindDestinations(layer, refusal)) {
        return false;
    }
    FrameList frames = layer.TakeFrames(from_);
    before_.clear();
    for (std::size_t i = 0; i < frames.size(); ++i) {
        before_.push_back(frames[i]->GetTime());
        frames[i]->SetTimeValue(to_[i]);
    }
    layer.PutFrames(frames);
    return true;
}

bool FrameMove::Undo(Layer& layer) {
    FrameList frames = layer.TakeFrames(to_);
    for (std::size_t i = 0; i < frames.size() && i < before_.size(); ++i) {
        frames[i]->SetTime(before_[i]);
    }
    layer.PutFrames(frames);
    return frames.empty();
}

} // namespace vellix
