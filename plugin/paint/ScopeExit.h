#pragma once

#include "paint/NonCopyable.h"

#include <functional>
#include <utility>

namespace vellix {

/// Calls a function when the scope ends, however it ends. What the function throws is dropped: it must not
/// end the program, with all that is unsaved.
class ScopeExit : private NonCopyable {
public:
    explicit ScopeExit(std::function<void()> function)
        : function_(std::move(function)) {}
    ~ScopeExit() {
        try {
            function_();
        } catch (...) {
        }
    }

private:
    std::function<void()> function_;
};

} // namespace vellix
