#pragma once

#include "scene/NonCopyable.h"

#include <utility>

namespace lightbox {

/// Calls a function at the end of its scope, also on an exception. To set a variable for the scope, use
/// QScopedValueRollback.
template <class Function>
class ScopeExit : NonCopyable {
public:
    explicit ScopeExit(Function function)
        : function_(std::move(function)) {}
    ~ScopeExit() { function_(); }

private:
    Function function_;
};

} // namespace lightbox
