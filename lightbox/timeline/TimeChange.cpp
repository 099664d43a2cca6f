#include "timeline/TimeChange.h"

#include "scene/Edit.h"
#include "scene/Host.h"
#include "scene/Timeline.h"

namespace lightbox {

TimeChange::TimeChange(Host& host)
    : host_(host)
    , way_(std::make_shared<Way>(Way{host.time().CurrentTime(), host.time().CurrentTime()})) {}

void TimeChange::MoveTo(double frame) {
    Timeline& time = host_.time();
    way_->to = frame;
    if (isRecorded_) {
        time.SetCurrentTime(frame);
    } else if (frame != time.CurrentTime()) {
        isRecorded_ = true;
        edit::Do(
            host_, "currentTime", [&time, way = way_] { time.SetCurrentTime(way->to); },
            [&time, way = way_] { time.SetCurrentTime(way->from); });
    } else {
        // The time may have moved without the scene before.
        time.SetCurrentTime(frame);
    }
}

} // namespace lightbox
