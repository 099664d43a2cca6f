#include "commands/FrameCheck.h"

#include "core/Frame.h"
#include "core/Layer.h"
#include "host/FrameTime.h"

#include <cstddef>

namespace vellix {

FrameCheck::FrameCheck(const Layer& layer, const std::vector<FrameId>& leaving)
    : layer_(layer)
    , leaving_(leaving.begin(), leaving.end()) {
    std::size_t found = 0;
    for (int i = 0; i < layer.FrameCount(); ++i) {
        found += leaving_.count(layer.GetFrame(i)->GetId());
    }
    if (found < leaving_.size()) {
        refusal_ = QStringLiteral("a frame of the layer \"%1\" no longer exists").arg(layer.GetName());
    }
    leaving_.insert(layer.GetProvisionalFrame()); // it gives way
}

void FrameCheck::NeedFree(int time) {
    for (int i = layer_.FindFrameIndex(time); i >= 0 && refusal_.isEmpty(); --i) {
        const Frame& frame = *layer_.GetFrame(i);
        if (frame.GetTimeValue() != time) {
            return;
        }
        if (leaving_.count(frame.GetId()) == 0) {
            refusal_ = QStringLiteral("a frame already exists at time %1").arg(time);
        }
    }
}

void FrameCheck::NeedFree(const MTime& time) {
    const int whole = ToWholeFrames(time);
    for (int i = layer_.FindFrameIndex(whole); i >= 0 && refusal_.isEmpty(); --i) {
        const Frame& frame = *layer_.GetFrame(i);
        if (frame.GetTimeValue() != whole) {
            return;
        }
        if (frame.GetTime() == time && leaving_.count(frame.GetId()) == 0) {
            refusal_ = QStringLiteral("a frame already exists at time %1").arg(whole);
        }
    }
}

bool FrameCheck::Passes(QString& refusal) const {
    refusal = refusal_;
    return refusal_.isEmpty();
}

} // namespace vellix
