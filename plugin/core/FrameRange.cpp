#include "core/FrameRange.h"

#include "core/FrameTime.h"
#include "host/MayaUtil.h"

namespace vellix {

bool FrameRange::FromTimeSlider(FrameRange& range) {
    MDoubleArray times;
    if (!MayaUtil::GetTimeSliderRange(times) || times.length() < 2) {
        return false;
    }
    range.start = ToWholeFrames(MTime(times[0], MTime::uiUnit()));
    range.end = ToWholeFrames(MTime(times[1], MTime::uiUnit()));
    return true;
}

} // namespace vellix
