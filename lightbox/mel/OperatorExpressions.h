#pragma once

#include "mel/Expression.h"
#include "mel/Operations.h"
#include "mel/VariableExpressions.h"

namespace lightbox::mel {

/// Arithmetic and comparison. The operation must be legal for the operand types known at parse time.
class BinaryExpression final : public Expression {
public:
    BinaryExpression(std::uint32_t offset, Operator op, ExpressionPtr left, ExpressionPtr right);

    Value Evaluate(CallFrame& frame) const override;
    bool IsWrittenOut() const override { return left_->IsWrittenOut() && right_->IsWrittenOut(); }
    int EvaluateInt(CallFrame& frame) const override;
    double EvaluateFloat(CallFrame& frame) const override;
    bool EvaluateTruth(CallFrame& frame) const override;

private:
    enum class Specialization { Ints, Floats, CompareInts, CompareFloats, General };
    static Specialization SpecializationFor(Operator op, Type left, Type right);
    Value Apply(CallFrame& frame) const;

    Operator op_;
    Specialization specialization_;
    ExpressionPtr left_;
    ExpressionPtr right_;
};

/// A concatenation of texts. Scripts write long ones, so it is a flat list and not a deep tree.
class ConcatenationExpression final : public Expression {
public:
    ConcatenationExpression(std::uint32_t offset, ExpressionPtr first, ExpressionPtr second);
    void Append(ExpressionPtr part);

    Value Evaluate(CallFrame& frame) const override;
    bool IsWrittenOut() const override { return AreWrittenOut(parts_); }

private:
    ExpressionList parts_;
};

/// : the right || && and ||; the right side is evaluated only if it matters.
class LogicalExpression final : public Expression {
public:
    LogicalExpression(std::uint32_t offset, bool isAnd, ExpressionPtr left, ExpressionPtr right);

    Value Evaluate(CallFrame& frame) const override { return EvaluateTruth(frame); }
    int EvaluateInt(CallFrame& frame) const override { return EvaluateTruth(frame) ? 1 : 0; }
    bool EvaluateTruth(CallFrame& frame) const override;

private:
    bool isAnd_;
    ExpressionPtr left_;
    ExpressionPtr right_;
};

class NotExpression final : public Expression {
public:
    NotExpression(std::uint32_t offset, ExpressionPtr operand);

    Value Evaluate(CallFrame& frame) const override { return EvaluateTruth(frame); }
    int EvaluateInt(CallFrame& frame) const override { return EvaluateTruth(frame) ? 1 : 0; }
    bool EvaluateTruth(CallFrame& frame) const override { return !operand_->EvaluateTruth(frame); }

private:
    ExpressionPtr operand_;
};

class NegationExpression final : public Expression {
public:
    NegationExpression(std::uint32_t offset, ExpressionPtr operand);

    Value Evaluate(CallFrame& frame) const override;
    bool IsWrittenOut() const override { return operand_->IsWrittenOut(); }
    int EvaluateInt(CallFrame& frame) const override;
    double EvaluateFloat(CallFrame& frame) const override;

private:
    ExpressionPtr operand_;
};

/// condition ? first : second
class ConditionalExpression final : public Expression {
public:
    ConditionalExpression(std::uint32_t offset, ExpressionPtr condition, ExpressionPtr first,
                          ExpressionPtr second);

    Value Evaluate(CallFrame& frame) const override;

private:
    static Type CommonType(Type first, Type second);

    ExpressionPtr condition_;
    ExpressionPtr first_;
    ExpressionPtr second_;
};

/// int(x), (int)x and the like.
class CastExpression final : public Expression {
public:
    CastExpression(std::uint32_t offset, Type type, ExpressionPtr operand);

    Value Evaluate(CallFrame& frame) const override;
    int EvaluateInt(CallFrame& frame) const override;
    double EvaluateFloat(CallFrame& frame) const override;

private:
    ExpressionPtr operand_;
};

} // namespace lightbox::mel
