#pragma once

#include "paint/NonCopyable.h"

#include <functional>
#include <utility>

namespace vellix {

/// Calls a function when the scope ends, however it ends.
class ScopeExit : private NonCopyable {
public:
    explicit ScopeExit(std::function<void()> function)
        : m_function(std::move(function)) {}
    ~ScopeExit() { m_function(); }

private:
    std::function<void()> m_function;
};

} // namespace vellix
