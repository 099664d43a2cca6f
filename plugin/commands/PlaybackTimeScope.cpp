#include "commands/PlaybackTimeScope.h"

#include "host/FrameTime.h"
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

// A host may report the new time only once it is idle, so the nodes are told here.
void PlaybackTimeScope::SetTime(const MTime& time) {
    if (MayaUtil::GetPlaybackTime() != time) {
        MayaUtil::SetPlaybackTime(time);
        BaseNode::UpdatePlaybackTime();
    }
}

} // namespace vellix
