#include "scene/IdleQueue.h"

#include "scene/EventBus.h"

#include <QScopedValueRollback>

#include <utility>

namespace lightbox {

namespace {

/// Maximum number of work items in one Drain(). Work that queues itself again would otherwise never end.
constexpr std::size_t MAX_PER_DRAIN = 10000;

} // namespace

void IdleQueue::Add(std::function<void()> work, bool lowPriority) {
    (lowPriority ? lowPriority_ : work_).push_back(std::move(work));
}

std::size_t IdleQueue::Drain() {
    if (draining_ || IsEmpty()) {
        return 0;
    }
    const QScopedValueRollback<bool> draining(draining_, true);
    std::size_t count = 0;
    for (; count < MAX_PER_DRAIN && !IsEmpty(); ++count) {
        std::deque<std::function<void()>>& queue = work_.empty() ? lowPriority_ : work_;
        const std::function<void()> work = std::move(queue.front());
        queue.pop_front();
        work();
    }
    events_.Fire("idle");
    return count;
}

void IdleQueue::Clear() {
    work_.clear();
    lowPriority_.clear();
}

} // namespace lightbox
