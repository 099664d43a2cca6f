#pragma once

#include "mel/CallFrame.h"
#include "mel/Value.h"
#include "scene/NonCopyable.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace lightbox::mel {

/// Part of a program that has a value. What its type is is known when it is parsed, except for what commands
/// and procedures return (`Any`), so that numbers are computed without going through values.
class Expression : NonCopyable {
public:
    Expression(std::uint32_t sourceOffset, Type resultType)
        : offset(sourceOffset)
        , type(resultType) {}
    virtual ~Expression() = default;

    virtual Value Evaluate(CallFrame& frame) const = 0;
    /// The value converted. Faster than Evaluate() for expressions of that type.
    virtual int EvaluateInt(CallFrame& frame) const { return Evaluate(frame).AsInt(); }
    virtual double EvaluateFloat(CallFrame& frame) const { return Evaluate(frame).AsFloat(); }
    virtual bool EvaluateTruth(CallFrame& frame) const { return Evaluate(frame).AsBool(); }
    /// For its effects only.
    virtual void Run(CallFrame& frame) const { Evaluate(frame); }

    /// Marks this as what runs, so that an error names its place.
    void Mark(CallFrame& frame) const { frame.offset = offset; }

    const std::uint32_t offset;
    const Type type;
    /// Levels of expressions below this one; the parser bounds it, since evaluation recurses that deep.
    int depth = 1;

protected:
    void Contains(const Expression& part) { depth = std::max(depth, part.depth + 1); }
};

using ExpressionPtr = std::unique_ptr<Expression>;
using ExpressionList = std::vector<ExpressionPtr>;

} // namespace lightbox::mel
