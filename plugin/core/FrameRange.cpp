#include "core/FrameRange.h"

#include "host/FrameTime.h"
#include "host/MayaUtil.h"

#include <maya/MDoubleArray.h>
#include <maya/MTime.h>

namespace vellix {

FrameRange FrameRange::FromFrames(double start, double end) {
    FrameRange range;
    range.start = ToWholeFrames(MTime(start, MTime::uiUnit()));
    range.end = ToWholeFrames(MTime(end, MTime::uiUnit()));
    return range;
}

FrameRange FrameRange::FromTimeSlider() {
    MDoubleArray times;
    if (MayaUtil::GetTimeSliderRange(times) && times.length() >= 2) {
        return FromFrames(times[0], times[1]);
    }
    const double now = MayaUtil::GetPlaybackTime().as(MTime::uiUnit());
    return FromFrames(now, now + 1.0);
}

} // namespace vellix
