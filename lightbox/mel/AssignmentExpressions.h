#pragma once

#include "mel/Operations.h"
#include "mel/VariableExpressions.h"

namespace lightbox::mel {

/// target = value
class AssignExpression final : public Expression {
public:
    AssignExpression(std::uint32_t offset, TargetPtr target, ExpressionPtr value);

    Value Evaluate(CallFrame& frame) const override;
    void Run(CallFrame& frame) const override;

private:
    bool RunNumber(CallFrame& frame) const;

    TargetPtr target_;
    /// The target if it is a plain variable, else null.
    const VariableExpression* variable_;
    ExpressionPtr value_;
};

/// target += value and the like
class CompoundExpression final : public Expression {
public:
    CompoundExpression(std::uint32_t offset, Operator op, TargetPtr target, ExpressionPtr value);

    Value Evaluate(CallFrame& frame) const override;
    void Run(CallFrame& frame) const override;

private:
    bool RunNumber(CallFrame& frame) const;
    bool RunText(CallFrame& frame) const;

    Operator op_;
    TargetPtr target_;
    const VariableExpression* variable_;
    ExpressionPtr value_;
};

/// ++target, target++, --target, target--
class StepExpression final : public Expression {
public:
    StepExpression(std::uint32_t offset, TargetPtr target, bool isIncrement, bool isPrefix);

    Value Evaluate(CallFrame& frame) const override;
    int EvaluateInt(CallFrame& frame) const override;
    void Run(CallFrame& frame) const override;

private:
    int* IntVariable(CallFrame& frame) const;

    TargetPtr target_;
    const VariableExpression* variable_;
    bool isIncrement_;
    bool isPrefix_;
};

} // namespace lightbox::mel
