#pragma once

#include "mel/CallFrame.h"
#include "mel/Value.h"
#include "scene/NonCopyable.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace lightbox::mel {

/// How a statement ended.
enum class Flow { Next, Break, Continue, Return };

/// Part of a program that does something.
class Statement : NonCopyable {
public:
    explicit Statement(std::uint32_t sourceOffset)
        : offset(sourceOffset) {}
    virtual ~Statement() = default;

    virtual Flow Execute(CallFrame& frame) const = 0;
    /// Executes an outermost statement: expressions and declarations yield their value.
    virtual Value ExecuteForValue(CallFrame& frame) const;

    /// True when it is the call of one command or procedure and nothing else.
    virtual bool IsCall() const { return false; }

    const std::uint32_t offset;
};

using StatementPtr = std::unique_ptr<Statement>;
using StatementList = std::vector<StatementPtr>;

} // namespace lightbox::mel
