#pragma once

#include <cstddef>
#include <deque>
#include <functional>

namespace lightbox {

class EventBus;

/// Work to do when the host is idle, in the order of Add(). Low-priority work runs when nothing else is left.
/// The batch program drains the queue between statements and at its end, the window from a timer.
class IdleQueue {
public:
    explicit IdleQueue(EventBus& events)
        : events_(events) {}

    void Add(std::function<void()> work, bool lowPriority = false);
    bool IsEmpty() const { return work_.empty() && lowPriority_.empty(); }
    /// Runs the queued work and the work that it queues in turn, up to a limit that keeps endless chains from
    /// hanging the host; the rest waits for the next call. Fires the event "idle" if any work ran. Does
    /// nothing when called from inside queued work. Returns the number of work items run.
    std::size_t Drain();
    void Clear();

private:
    EventBus& events_;
    std::deque<std::function<void()>> work_;
    std::deque<std::function<void()>> lowPriority_;
    bool draining_ = false;
};

} // namespace lightbox
