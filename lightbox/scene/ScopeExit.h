#pragma once

#include "scene/NonCopyable.h"

#include <utility>

namespace lightbox {

/// Calls a function when the block that it stands in ends, also by an exception. What only sets a variable
/// for a while takes QScopedValueRollback.
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
