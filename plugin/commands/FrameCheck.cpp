#include "commands/FrameCheck.h"

#include "core/Frame.h"
#include "core/Layer.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace vellix {
namespace {

template <typename Value>
bool IsAmong(const std::vector<Value>& ascending, Value value) {
    return std::binary_search(ascending.begin(), ascending.end(), value);
}

} // namespace

FrameCheck::FrameCheck(const Layer& layer, std::vector<FrameId> leaving)
    : layer_(layer)
    , leaving_(std::move(leaving)) {}

void FrameCheck::NeedFree(int time) {
    wholeTimes_.push_back(time);
}

void FrameCheck::NeedFree(const MTime& time) {
    exactTimes_.push_back(time);
}

/// Thousands of frames may move. Most often all of the layer leave, and no time has to be compared.
bool FrameCheck::Passes(QString& refusal) {
    std::vector<const Frame*> staying;
    for (int i = 0; i < layer_.FrameCount(); ++i) {
        const Frame* const frame = layer_.GetFrame(i);
        if (!leaving_.Find(frame->GetId())) {
            staying.push_back(frame);
        }
    }
    refusal.clear();
    if (static_cast<std::size_t>(layer_.FrameCount()) - staying.size() < leaving_.Size()) {
        refusal = QStringLiteral("a frame of the layer \"%1\" no longer exists").arg(layer_.GetName());
        return false;
    }
    if (staying.empty()) {
        return true;
    }
    std::sort(wholeTimes_.begin(), wholeTimes_.end());
    std::sort(exactTimes_.begin(), exactTimes_.end());
    for (const Frame* frame : staying) {
        const bool isTaken = (!wholeTimes_.empty() && IsAmong(wholeTimes_, frame->GetTimeValue())) ||
                             (!exactTimes_.empty() && IsAmong(exactTimes_, frame->GetTime()));
        if (isTaken && frame->GetId() != layer_.GetProvisionalFrame()) { // that gives way
            refusal = QStringLiteral("a frame already exists at time %1").arg(frame->GetTimeValue());
            return false;
        }
    }
    return true;
}

} // namespace vellix
