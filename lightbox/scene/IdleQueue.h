#pragma once

#include <cstddef>
#include <deque>
#include <functional>

namespace lightbox {

class EventBus;

/// Work to do once the host is idle, in the order it came; work of low priority when nothing else is left.
/// The batch program drains it between statements and at its end, a window from a timer.
class IdleQueue {
public:
    explicit IdleQueue(EventBus& events)
        : events_(events) {}

    void Add(std::function<void()> work, bool lowPriority = false);
    bool IsEmpty() const { return work_.empty() && lowPriority_.empty(); }
    /// Does everything that is queued, and what that queues in turn, up to a bound that keeps endless chains
    /// from hanging the host; what is left waits for the next call. Fires the event "idle" when work was
    /// done. Calls from inside it do nothing. Answers the number of pieces done.
    std::size_t Drain();
    void Clear();

private:
    EventBus& events_;
    std::deque<std::function<void()>> work_;
    std::deque<std::function<void()>> lowPriority_;
    bool draining_ = false;
};

} // namespace lightbox
