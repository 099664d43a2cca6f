#pragma once

#include "paint/NonCopyable.h"

#include <maya/MTime.h>

namespace vellix {

/// Visits other times; when it goes, the playback time is again what it was. Every drawing node knows each
/// new time before the next call.
class PlaybackTimeScope : private NonCopyable {
public:
    PlaybackTimeScope();
    ~PlaybackTimeScope();

    void GoTo(int frame);

    /// Goes to a time for good.
    static void SetTime(const MTime& time);

private:
    MTime before_;
};

} // namespace vellix
