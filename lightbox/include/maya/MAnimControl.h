#pragma once

#include <maya/MStatus.h>
#include <maya/MTime.h>

/// The current time, the time ranges and playback. Times come with their unit.
class MAnimControl {
public:
    static MTime currentTime();
    static MStatus setCurrentTime(const MTime& newTime);

    static MTime minTime();
    static MTime maxTime();
    static MStatus setMinTime(MTime newMinTime);
    static MStatus setMaxTime(MTime newMaxTime);
    static MStatus setMinMaxTime(MTime newMinTime, MTime newMaxTime);
    static MTime animationStartTime();
    static MTime animationEndTime();
    static MStatus setAnimationStartTime(MTime newStartTime);
    static MStatus setAnimationEndTime(MTime newEndTime);
    static MStatus setAnimationStartEndTime(MTime newStartTime, MTime newEndTime);

    static bool isPlaying();
    static MStatus playForward();
    static MStatus playBackward();
    static MStatus stop();
    /// 1 is real time, 0 plays every frame.
    static double playbackSpeed();
    static MStatus setPlaybackSpeed(double newPlaybackSpeed);
    static double playbackBy();
    static MStatus setPlaybackBy(double newPlaybackBy);
};
