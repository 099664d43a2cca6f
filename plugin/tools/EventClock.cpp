#include "tools/EventClock.h"

#include <algorithm>
#include <chrono>
#include <limits>

namespace vellix {

namespace {

constexpr qint64 NOTHING_LEARNED = std::numeric_limits<qint64>::max();

// From the display's clock to ours, with the time that the fastest event took: since the last press, and
// between the two before.
qint64 g_difference = NOTHING_LEARNED;
qint64 g_formerDifference = NOTHING_LEARNED;

} // namespace

qint64 EventClock::Now() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

void EventClock::Learn(unsigned long timestamp) {
    if (timestamp != 0) {
        g_difference = std::min(g_difference, Now() - static_cast<qint64>(timestamp));
    }
}

void EventClock::BeginGesture() {
    g_formerDifference = g_difference;
    g_difference = NOTHING_LEARNED;
}

qint64 EventClock::TimeOf(unsigned long timestamp) {
    const qint64 difference = std::min(g_difference, g_formerDifference);
    return timestamp == 0 || difference == NOTHING_LEARNED ? UNKNOWN
                                                           : static_cast<qint64>(timestamp) + difference;
}

} // namespace vellix
