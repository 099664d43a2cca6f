#include "scene/Host.h"
#include "scene/Timeline.h"

#include <maya/MAnimControl.h>

#include <cmath>

using lightbox::Host;
using lightbox::Timeline;

namespace {

Timeline& Time() {
    return Host::Get().time();
}

MTime Frames(double frame) {
    return MTime(frame, MTime::uiUnit());
}

double Frame(const MTime& time) {
    return time.as(MTime::uiUnit());
}

MStatus StatusOf(bool done) {
    return done ? MS::kSuccess : MS::kInvalidParameter;
}

} // namespace

MTime MAnimControl::currentTime() {
    return Frames(Time().CurrentTime());
}

MStatus MAnimControl::setCurrentTime(const MTime& newTime) {
    const double frame = Frame(newTime);
    if (!std::isfinite(frame)) {
        return MS::kInvalidParameter;
    }
    Time().SetCurrentTime(frame);
    return MS::kSuccess;
}

MTime MAnimControl::minTime() {
    return Frames(Time().MinTime());
}
MTime MAnimControl::maxTime() {
    return Frames(Time().MaxTime());
}

MStatus MAnimControl::setMinTime(MTime newMinTime) {
    return StatusOf(Time().SetPlaybackRange(Frame(newMinTime), Time().MaxTime()));
}

MStatus MAnimControl::setMaxTime(MTime newMaxTime) {
    return StatusOf(Time().SetPlaybackRange(Time().MinTime(), Frame(newMaxTime)));
}

MStatus MAnimControl::setMinMaxTime(MTime newMinTime, MTime newMaxTime) {
    return StatusOf(Time().SetPlaybackRange(Frame(newMinTime), Frame(newMaxTime)));
}

MTime MAnimControl::animationStartTime() {
    return Frames(Time().AnimationStart());
}
MTime MAnimControl::animationEndTime() {
    return Frames(Time().AnimationEnd());
}

MStatus MAnimControl::setAnimationStartTime(MTime newStartTime) {
    return StatusOf(Time().SetAnimationRange(Frame(newStartTime), Time().AnimationEnd()));
}

MStatus MAnimControl::setAnimationEndTime(MTime newEndTime) {
    return StatusOf(Time().SetAnimationRange(Time().AnimationStart(), Frame(newEndTime)));
}

MStatus MAnimControl::setAnimationStartEndTime(MTime newStartTime, MTime newEndTime) {
    return StatusOf(Time().SetAnimationRange(Frame(newStartTime), Frame(newEndTime)));
}

bool MAnimControl::isPlaying() {
    return Time().IsPlaying();
}

MStatus MAnimControl::playForward() {
    Time().SetPlaying(1);
    return MS::kSuccess;
}

MStatus MAnimControl::playBackward() {
    Time().SetPlaying(-1);
    return MS::kSuccess;
}

MStatus MAnimControl::stop() {
    Time().SetPlaying(0);
    return MS::kSuccess;
}

double MAnimControl::playbackSpeed() {
    return Time().PlaybackSpeed();
}

MStatus MAnimControl::setPlaybackSpeed(double newPlaybackSpeed) {
    Time().SetPlaybackSpeed(newPlaybackSpeed);
    return MS::kSuccess;
}

double MAnimControl::playbackBy() {
    return Time().PlaybackBy();
}

MStatus MAnimControl::setPlaybackBy(double newPlaybackBy) {
    Time().SetPlaybackBy(newPlaybackBy);
    return MS::kSuccess;
}
