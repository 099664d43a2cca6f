#include "commands/FrameMove.h"

#include "commands/FrameSchedule.h"
#include "core/Frame.h"
#include "core/Layer.h"
#include "host/FrameTime.h"

#include <QString>

namespace vellix {

bool FrameMove::Plan(const Layer& layer, int offset, int first, int last, FrameSchedule& schedule,
                     QString& refusal) {
    for (int i = 0; i < layer.FrameCount(); ++i) {
        const Frame& frame = *layer.GetFrame(i);
        const int time = frame.GetTimeValue();
        // No undo step knows the empty frame of a press that has not ended.
        if (time < first || time > last || frame.GetId() == layer.GetProvisionalFrame()) {
            continue;
        }
        const qint64 wanted = static_cast<qint64>(time) + offset;
        if (!IsWholeFrame(wanted)) {
            refusal = QString("Move Failed. Time %1 is out of range").arg(wanted);
            return false;
        }
        const int destination = static_cast<int>(wanted);
        const bool isVacated =
            destination >= first && destination <= last && !layer.IsBeingDrawn(destination);
        if (!isVacated && layer.FrameExists(destination)) {
            refusal = QString("Move Failed. A frame already exists at time %1").arg(destination);
            return false;
        }
        schedule.Add(frame, destination);
    }
    return true;
}

} // namespace vellix
