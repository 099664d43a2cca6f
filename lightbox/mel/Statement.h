#pragma once

#include "mel/CallFrame.h"
#include "mel/Value.h"
#include "scene/NonCopyable.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace lightbox::mel {

/// How a statement ended.
enum class Flow { Next, Break, Continue, Return };

/// A part of a program that does something.
class Statement : NonCopyable {
public:
    explicit Statement(std::uint32_t sourceOffset)
        : offset(sourceOffset) {}
    virtual ~Statement() = default;

    virtual Flow Execute(CallFrame& frame) const = 0;
    /// Executes an outermost statement and returns the value of an expression or declaration.
    virtual Value ExecuteForValue(CallFrame& frame) const;

    /// Whether it is just the call of one command or procedure.
    virtual bool IsCall() const { return false; }

    /// The name that it calls if it is just one call, whose arguments are all written out; empty for an empty
    /// statement. Else null.
    virtual const std::string* WrittenOutCall() const { return nullptr; }

    const std::uint32_t offset;
};

using StatementPtr = std::unique_ptr<Statement>;
using StatementList = std::vector<StatementPtr>;

} // namespace lightbox::mel
