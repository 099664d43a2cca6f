#include "mel/OperatorExpressions.h"

#include "mel/Error.h"

namespace lightbox::mel {

namespace {} // namespace

BinaryExpression::BinaryExpression(std::uint32_t sourceOffset, Operator op, ExpressionPtr left,
                                   ExpressionPtr right)
    : Expression(sourceOffset, ResultType(op, left->type, right->type))
    , op_(op)
    , specialization_(SpecializationFor(op, left->type, right->type))
    , left_(std::move(left))
    , right_(std::move(right)) {
    Contains(*left_);
    Contains(*right_);
}

BinaryExpression::Specialization BinaryExpression::SpecializationFor(Operator op, Type left, Type right) {
    if (!IsNumeric(left) || !IsNumeric(right)) {
        return Specialization::General;
    }
    const bool ints = left == Type::Int && right == Type::Int;
    if (IsComparison(op)) {
        return ints ? Specialization::CompareInts : Specialization::CompareFloats;
    }
    return ints ? Specialization::Ints : Specialization::Floats;
}

Value BinaryExpression::Apply(CallFrame& frame) const {
    const Value left = left_->Evaluate(frame);
    const Value right = right_->Evaluate(frame);
    Mark(frame);
    return mel::Apply(op_, left, right);
}

Value BinaryExpression::Evaluate(CallFrame& frame) const {
    switch (specialization_) {
    case Specialization::Ints:
    case Specialization::CompareInts:
    case Specialization::CompareFloats:
        return EvaluateInt(frame);
    case Specialization::Floats:
        return EvaluateFloat(frame);
    case Specialization::General:
        break;
    }
    return Apply(frame);
}

int BinaryExpression::EvaluateInt(CallFrame& frame) const {
    switch (specialization_) {
    case Specialization::Ints:
    case Specialization::CompareInts: {
        const int left = left_->EvaluateInt(frame);
        const int right = right_->EvaluateInt(frame);
        if (right == 0) {
            Mark(frame);
        }
        return ApplyInt(op_, left, right);
    }
    case Specialization::CompareFloats: {
        const double left = left_->EvaluateFloat(frame);
        return CompareFloat(op_, left, right_->EvaluateFloat(frame)) ? 1 : 0;
    }
    case Specialization::Floats:
        return Value(EvaluateFloat(frame)).AsInt();
    case Specialization::General:
        break;
    }
    return Apply(frame).AsInt();
}

double BinaryExpression::EvaluateFloat(CallFrame& frame) const {
    switch (specialization_) {
    case Specialization::Floats: {
        const double left = left_->EvaluateFloat(frame);
        const double right = right_->EvaluateFloat(frame);
        if (right == 0.0) {
            Mark(frame);
        }
        return ApplyFloat(op_, left, right);
    }
    case Specialization::General:
        return Apply(frame).AsFloat();
    default:
        return EvaluateInt(frame);
    }
}

bool BinaryExpression::EvaluateTruth(CallFrame& frame) const {
    switch (specialization_) {
    case Specialization::Floats:
        return EvaluateFloat(frame) != 0.0;
    case Specialization::General:
        return Apply(frame).AsBool();
    default:
        return EvaluateInt(frame) != 0;
    }
}

ConcatenationExpression::ConcatenationExpression(std::uint32_t sourceOffset, ExpressionPtr first,
                                                 ExpressionPtr second)
    : Expression(sourceOffset, Type::String) {
    Append(std::move(first));
    Append(std::move(second));
}

void ConcatenationExpression::Append(ExpressionPtr part) {
    Contains(*part);
    parts_.push_back(std::move(part));
}

Value ConcatenationExpression::Evaluate(CallFrame& frame) const {
    Value text = parts_.front()->Evaluate(frame);
    if (!text.IsString()) {
        text = text.AsString();
    }
    for (std::size_t i = 1; i < parts_.size(); ++i) {
        const Value part = parts_[i]->Evaluate(frame);
        if (part.IsArray() || part.GetType() == Type::Matrix) {
            Mark(frame);
            throw Error(IllegalOperation("+", part.GetType()));
        }
        if (part.IsString()) {
            CheckTextLength(text.Text().size() + part.Text().size());
            text.AppendText(part.Text());
        } else if (!part.IsNone()) {
            text.AppendText(part.AsString());
        }
    }
    return text;
}

LogicalExpression::LogicalExpression(std::uint32_t sourceOffset, bool isAnd, ExpressionPtr left,
                                     ExpressionPtr right)
    : Expression(sourceOffset, Type::Int)
    , isAnd_(isAnd)
    , left_(std::move(left))
    , right_(std::move(right)) {
    Contains(*left_);
    Contains(*right_);
}

bool LogicalExpression::EvaluateTruth(CallFrame& frame) const {
    return left_->EvaluateTruth(frame) == isAnd_ ? right_->EvaluateTruth(frame) : !isAnd_;
}

NotExpression::NotExpression(std::uint32_t sourceOffset, ExpressionPtr operand)
    : Expression(sourceOffset, Type::Int)
    , operand_(std::move(operand)) {
    Contains(*operand_);
}

NegationExpression::NegationExpression(std::uint32_t sourceOffset, ExpressionPtr operand)
    : Expression(sourceOffset, operand->type)
    , operand_(std::move(operand)) {
    Contains(*operand_);
}

Value NegationExpression::Evaluate(CallFrame& frame) const {
    const Value value = operand_->Evaluate(frame);
    Mark(frame);
    return Negated(value);
}

int NegationExpression::EvaluateInt(CallFrame& frame) const {
    return type == Type::Int ? ApplyInt(Operator::Subtract, 0, operand_->EvaluateInt(frame))
                             : Evaluate(frame).AsInt();
}

double NegationExpression::EvaluateFloat(CallFrame& frame) const {
    return type == Type::Float ? -operand_->EvaluateFloat(frame) : Evaluate(frame).AsFloat();
}

ConditionalExpression::ConditionalExpression(std::uint32_t sourceOffset, ExpressionPtr condition,
                                             ExpressionPtr first, ExpressionPtr second)
    : Expression(sourceOffset, CommonType(first->type, second->type))
    , condition_(std::move(condition))
    , first_(std::move(first))
    , second_(std::move(second)) {
    Contains(*condition_);
    Contains(*first_);
    Contains(*second_);
}

Type ConditionalExpression::CommonType(Type first, Type second) {
    if (first == second) {
        return first;
    }
    return IsNumeric(first) && IsNumeric(second) ? Type::Float : Type::Any;
}

Value ConditionalExpression::Evaluate(CallFrame& frame) const {
    const Expression& chosen = condition_->EvaluateTruth(frame) ? *first_ : *second_;
    return type == Type::Float ? Value(chosen.EvaluateFloat(frame)) : chosen.Evaluate(frame);
}

CastExpression::CastExpression(std::uint32_t sourceOffset, Type castType, ExpressionPtr operand)
    : Expression(sourceOffset, castType)
    , operand_(std::move(operand)) {
    Contains(*operand_);
}

Value CastExpression::Evaluate(CallFrame& frame) const {
    const Value value = operand_->Evaluate(frame);
    Mark(frame);
    return value.ConvertedTo(type);
}

int CastExpression::EvaluateInt(CallFrame& frame) const {
    return type != Type::Int             ? Evaluate(frame).AsInt()
           : operand_->type == Type::Int ? operand_->EvaluateInt(frame)
                                         : Value(operand_->EvaluateFloat(frame)).AsInt();
}

double CastExpression::EvaluateFloat(CallFrame& frame) const {
    return type == Type::Float ? operand_->EvaluateFloat(frame) : Evaluate(frame).AsFloat();
}

} // namespace lightbox::mel
