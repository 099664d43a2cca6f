#include "timeline/TimeChange.h"

#include "scene/Edit.h"
#include "scene/Host.h"
#include "scene/Timeline.h"

namespace lightbox {

TimeChange::TimeChange(Host& host)
    : host_(host)
    , span_(std::make_shared<Span>(Span{host.time().CurrentTime(), host.time().CurrentTime()})) {}

void TimeChange::MoveTo(double frame) {
    Timeline& time = host_.time();
    span_->to = frame;
    if (!isRecorded_ && frame != time.CurrentTime()) {
        isRecorded_ = true;
        edit::Do(
            host_, "currentTime", [&time, span = span_] { time.SetCurrentTime(span->to); },
            [&time, span = span_] { time.SetCurrentTime(span->from); });
        return;
    }
    // Also when the frame is current: evaluates the scene, since the time may have moved without it before.
    time.SetCurrentTime(frame);
}

} // namespace lightbox
