#include "host/Guarded.h"

#include "host/Logger.h"

namespace vellix {

void LogFailure(const char* what, const std::exception& reason) noexcept {
    try {
        const bool isMemory = dynamic_cast<const std::bad_alloc*>(&reason) != nullptr;
        Logger::Error(
            isMemory ? QString("Out of memory: %1 failed. Close what is not needed and try again.")
                           .arg(QString(what))
                     : QString("%1 failed: %2").arg(QString(what), QString::fromLocal8Bit(reason.what())));
    } catch (...) {
        // The status still tells.
    }
}

} // namespace vellix
