#pragma once

#include <maya/MStatus.h>

#include <exception>
#include <new>

namespace vellix {

/// Logs that something failed, and why; says nothing if memory is too short even for that. `what` completes
/// the sentence "... failed", for example "Reading the drawing".
void LogFailure(const char* what, const std::exception& reason) noexcept;

/// Calls a function on behalf of the host, which exceptions must not reach. Returns what the function
/// returns. If it throws, logs an error and returns MS::kFailure.
template <typename Function>
MStatus Guarded(const char* what, Function function) noexcept {
    try {
        return function();
    } catch (const std::exception& reason) {
        LogFailure(what, reason);
    } catch (...) {
        LogFailure(what, std::exception());
    }
    return MS::kFailure;
}

/// The same for a function that returns nothing. Returns false if it throws.
template <typename Function>
bool RunGuarded(const char* what, Function function) noexcept {
    return bool(Guarded(what, [&function] {
        function();
        return MStatus();
    }));
}

} // namespace vellix
