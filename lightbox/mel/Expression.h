#pragma once

#include "mel/CallFrame.h"
#include "mel/Value.h"
#include "scene/NonCopyable.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace lightbox::mel {

/// A part of a program that has a value. Its type is known from parsing, except for the results of commands
/// and procedures (`Any`); so numbers are computed without Value objects.
class Expression : NonCopyable {
public:
    Expression(std::uint32_t sourceOffset, Type resultType)
        : offset(sourceOffset)
        , type(resultType) {}
    virtual ~Expression() = default;

    virtual Value Evaluate(CallFrame& frame) const = 0;
    /// The converted value. Faster than Evaluate() for expressions of that type.
    virtual int EvaluateInt(CallFrame& frame) const { return Evaluate(frame).AsInt(); }
    virtual double EvaluateFloat(CallFrame& frame) const { return Evaluate(frame).AsFloat(); }
    virtual bool EvaluateTruth(CallFrame& frame) const { return Evaluate(frame).AsBool(); }
    /// Evaluates the expression only for its side effects.
    virtual void Run(CallFrame& frame) const { Evaluate(frame); }

    /// Whether the value stands in the text, so that evaluating it runs and reads nothing.
    virtual bool IsWrittenOut() const { return false; }
    /// Of a call whose arguments are all written out: the name that is called. Else null.
    virtual const std::string* WrittenOutCall() const { return nullptr; }

    /// Sets the current position of the frame to this expression, for error messages.
    void Mark(CallFrame& frame) const { frame.offset = offset; }

    const std::uint32_t offset;
    const Type type;
    /// Height of the expression tree from here; the parser limits it, since evaluation recurses that deep.
    int depth = 1;

protected:
    static bool AreWrittenOut(const std::vector<std::unique_ptr<Expression>>& parts) {
        return std::all_of(parts.begin(), parts.end(), [](const auto& part) { return part->IsWrittenOut(); });
    }
    void Contains(const Expression& part) { depth = std::max(depth, part.depth + 1); }
};

using ExpressionPtr = std::unique_ptr<Expression>;
using ExpressionList = std::vector<ExpressionPtr>;

} // namespace lightbox::mel
