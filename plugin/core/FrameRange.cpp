#include "core/FrameRange.h"

#include "core/FrameTime.h"
#include "host/MayaUtil.h"

namespace vellix {

FrameRange FrameRange::FromTimeSlider() {
    MTime start = MayaUtil::GetPlaybackTime();
    MTime end = start + MTime(1.0, MTime::uiUnit());
    MDoubleArray times;
    if (MayaUtil::GetTimeSliderRange(times) && times.length() >= 2) {
        start = MTime(times[0], MTime::uiUnit());
        end = MTime(times[1], MTime::uiUnit());
    }
    FrameRange range;
    range.start = ToWholeFrames(start);
    range.end = ToWholeFrames(end);
    return range;
}

} // namespace vellix
