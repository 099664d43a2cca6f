#pragma once

#include "paint/NonCopyable.h"

#include <maya/MTime.h>

namespace vellix {

/// Changes the playback time temporarily: the destructor restores it. After each change every drawing node is
/// updated before the call returns.
class PlaybackTimeScope : private NonCopyable {
public:
    PlaybackTimeScope();
    ~PlaybackTimeScope();

    void GoTo(int frame);

    /// Changes the playback time permanently.
    static void SetTime(const MTime& time);

private:
    MTime before_;
};

} // namespace vellix
