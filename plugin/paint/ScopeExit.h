#pragma once

#include "paint/NonCopyable.h"

#include <functional>
#include <utility>

namespace vellix {

/// Calls a function when the scope ends, however it ends.
class ScopeExit : private NonCopyable {
public:
    explicit ScopeExit(std::function<void()> function)
        : function_(std::move(function)) {}
    ~ScopeExit() { function_(); }

private:
    std::function<void()> function_;
};

} // namespace vellix
