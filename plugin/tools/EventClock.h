#pragma once

#include <QtGlobal>

namespace vellix {

/// Tells when an input event happened, however late it is delivered. Events carry the time of the display's
/// clock, which has another beginning than ours: the event that was delivered fastest tells how much later
/// ours is. Milliseconds. Main thread only, apart from Now().
class EventClock {
public:
    static constexpr qint64 UNKNOWN = -1;

    /// The time of our clock.
    static qint64 Now();

    /// Learns from an event that is being delivered. `timestamp` is QInputEvent::timestamp(), 0 if it has
    /// none.
    static void Learn(unsigned long timestamp);
    /// Call at each press. What was learned before the press before it is forgotten, as the clocks may go
    /// apart.
    static void BeginGesture();
    /// When an event happened, by our clock; rather later than earlier. UNKNOWN without a timestamp, or if
    /// nothing was learned.
    static qint64 TimeOf(unsigned long timestamp);
};

} // namespace vellix
