#include "commands/PlaybackTimeScope.h"

#include "host/FrameTime.h"
#include "host/Guarded.h"
#include "host/MayaUtil.h"
#include "node/BaseNode.h"

namespace vellix {

PlaybackTimeScope::PlaybackTimeScope()
    : before_(MayaUtil::GetPlaybackTime()) {}

PlaybackTimeScope::~PlaybackTimeScope() {
    SetTime(before_);
}

void PlaybackTimeScope::GoTo(int frame) {
    SetTime(FromWholeFrames(frame));
}

// The host may report the new time only when idle, so the nodes are updated here.
void PlaybackTimeScope::SetTime(const MTime& time) {
    if (MayaUtil::GetPlaybackTime() != time) {
        MayaUtil::SetPlaybackTime(time);
        // The time has changed, whatever could not follow it.
        RunGuarded("Changing the time", [] { BaseNode::UpdatePlaybackTime(); });
    }
}

} // namespace vellix
