#pragma once

#include <cstddef>
#include <functional>

namespace vellix {

/// Calls `work` once with each of 0 to count - 1, several at a time: on this thread and, as far as the system
/// gives threads, on one for each other processor. Returns when all calls have ended. If calls throw, the
/// rest are still made, and the first exception is then rethrown here. From within such work, the calls are
/// made on the same thread, since every processor has work already.
void DoInParallel(std::size_t count, const std::function<void(std::size_t)>& work);

} // namespace vellix
