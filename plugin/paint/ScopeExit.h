#pragma once

#include <functional>
#include <utility>

namespace vellix {

/// Base of what is neither copied nor moved.
class NonCopyable {
public:
    NonCopyable(const NonCopyable&) = delete;
    NonCopyable& operator=(const NonCopyable&) = delete;

protected:
    NonCopyable() = default;
    ~NonCopyable() = default;
};

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
