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

/// Sorts first, and then looks at each frame of the layer once: thousands of frames may move.
bool FrameCheck::Passes(QString& refusal) {
    std::sort(leaving_.begin(), leaving_.end());
    leaving_.erase(std::unique(leaving_.begin(), leaving_.end()), leaving_.end());
    std::sort(wholeTimes_.begin(), wholeTimes_.end());
    std::sort(exactTimes_.begin(), exactTimes_.end());
    refusal.clear();
    std::size_t leaving = 0;
    for (int i = 0; i < layer_.FrameCount(); ++i) {
        const Frame& frame = *layer_.GetFrame(i);
        if (IsAmong(leaving_, frame.GetId())) {
            ++leaving;
            continue;
        }
        const bool isTaken = (!wholeTimes_.empty() && IsAmong(wholeTimes_, frame.GetTimeValue())) ||
                             (!exactTimes_.empty() && IsAmong(exactTimes_, frame.GetTime()));
        if (isTaken && refusal.isEmpty() && frame.GetId() != layer_.GetProvisionalFrame()) { // that gives way
            refusal = QStringLiteral("a frame already exists at time %1").arg(frame.GetTimeValue());
        }
    }
    if (leaving < leaving_.size()) {
        refusal = QStringLiteral("a frame of the layer \"%1\" no longer exists").arg(layer_.GetName());
    }
    return refusal.isEmpty();
}

} // namespace vellix
