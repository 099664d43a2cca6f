#pragma once

#include "mel/Expression.h"

#include <string_view>

namespace lightbox::mel {

/// A number, a word or a short text.
class ConstantExpression : public Expression {
public:
    ConstantExpression(std::uint32_t offset, Value value)
        : Expression(offset, value.GetType())
        , value_(std::move(value)) {}

    Value Evaluate(CallFrame&) const override { return value_; }
    bool IsWrittenOut() const override { return true; }
    int EvaluateInt(CallFrame&) const override { return value_.AsInt(); }
    double EvaluateFloat(CallFrame&) const override { return value_.AsFloat(); }
    const Value& GetValue() const { return value_; }

private:
    Value value_;
};

/// A word of a command's arguments with parts that are computed: $node.tx, pCube1.vtx[$first:$last].
class JoinedWordExpression : public Expression {
public:
    JoinedWordExpression(std::uint32_t offset, ExpressionList parts);
    /// The parts as one string.
    Value Evaluate(CallFrame& frame) const override;

private:
    ExpressionList parts_;
};

/// A text literal, copied from the source only on evaluation.
class TextExpression : public Expression {
public:
    /// `literal` is the text between the quotes.
    TextExpression(std::uint32_t offset, std::string_view literal, bool hasEscapes)
        : Expression(offset, Type::String)
        , literal_(literal)
        , hasEscapes_(hasEscapes) {}

    Value Evaluate(CallFrame& frame) const override;
    bool IsWrittenOut() const override { return true; }

private:
    std::string_view literal_;
    bool hasEscapes_;
};

/// <<x, y, z>>
class VectorExpression : public Expression {
public:
    VectorExpression(std::uint32_t offset, ExpressionPtr x, ExpressionPtr y, ExpressionPtr z);
    Value Evaluate(CallFrame& frame) const override;
    bool IsWrittenOut() const override {
        return x_->IsWrittenOut() && y_->IsWrittenOut() && z_->IsWrittenOut();
    }

private:
    ExpressionPtr x_;
    ExpressionPtr y_;
    ExpressionPtr z_;
};

/// <<a, b; c, d>>: two or more rows, or one row whose length is not three.
class MatrixExpression : public Expression {
public:
    MatrixExpression(std::uint32_t offset, std::vector<ExpressionList> rows);
    Value Evaluate(CallFrame& frame) const override;

private:
    std::vector<ExpressionList> rows_;
};

/// {a, b, c}
class ArrayExpression : public Expression {
public:
    ArrayExpression(std::uint32_t offset, ExpressionList elements);
    Value Evaluate(CallFrame& frame) const override;
    bool IsWrittenOut() const override { return AreWrittenOut(elements_); }

private:
    static Type CommonType(const ExpressionList& elements);

    ExpressionList elements_;
};

} // namespace lightbox::mel
