#pragma once

#include "core/FrameTable.h"
#include "core/Identity.h"

#include <maya/MTime.h>

#include <QString>

#include <vector>

namespace vellix {

class Layer;

/// Checks, before anything changes, that some frames can leave a layer and others can take their places.
class FrameCheck {
public:
    /// The frames with these identities have to be in the layer, which is borrowed.
    FrameCheck(const Layer& layer, std::vector<FrameId> leaving);

    /// No other frame may be keyed at this whole frame.
    void NeedFree(int time);
    /// No other frame may have exactly this time. Undo asks for no more: a change of the time unit may have
    /// put several frames on one whole frame.
    void NeedFree(const MTime& time);

    /// Returns false, with the reason, if something that is needed is not so.
    bool Passes(QString& refusal);

private:
    const Layer& layer_;
    FrameTable<FrameId> leaving_;
    std::vector<int> wholeTimes_;
    std::vector<MTime> exactTimes_;
};

} // namespace vellix
