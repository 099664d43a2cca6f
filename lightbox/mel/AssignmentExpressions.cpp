#include "mel/AssignmentExpressions.h"

#include "mel/Error.h"
#include "mel/Runtime.h"

namespace lightbox::mel {

namespace {} // namespace

AssignExpression::AssignExpression(std::uint32_t sourceOffset, TargetPtr target, ExpressionPtr value)
    : Expression(sourceOffset, target->type)
    , target_(std::move(target))
    , variable_(dynamic_cast<const VariableExpression*>(target_.get()))
    , value_(std::move(value)) {
    Contains(*target_);
    Contains(*value_);
}

bool AssignExpression::RunNumber(CallFrame& frame) const {
    if (!variable_ || !IsNumeric(type) || !IsNumeric(value_->type)) {
        return false;
    }
    if (type == Type::Int) {
        const int number = value_->EvaluateInt(frame);
        variable_->Slot(frame) = number;
    } else {
        const double number = value_->EvaluateFloat(frame);
        variable_->Slot(frame) = number;
    }
    return true;
}

void AssignExpression::Run(CallFrame& frame) const {
    if (RunNumber(frame)) {
        return;
    }
    Value value = value_->Evaluate(frame);
    Mark(frame);
    target_->Locate(frame).Store(frame.runtime, std::move(value));
}

Value AssignExpression::Evaluate(CallFrame& frame) const {
    if (RunNumber(frame)) {
        return variable_->Evaluate(frame);
    }
    Value value = value_->Evaluate(frame);
    Mark(frame);
    const VariableReference place = target_->Locate(frame);
    place.Store(frame.runtime, std::move(value));
    return place.Load();
}

CompoundExpression::CompoundExpression(std::uint32_t sourceOffset, Operator op, TargetPtr target,
                                       ExpressionPtr value)
    : Expression(sourceOffset, target->type)
    , op_(op)
    , target_(std::move(target))
    , variable_(dynamic_cast<const VariableExpression*>(target_.get()))
    , value_(std::move(value)) {
    Contains(*target_);
    Contains(*value_);
}

bool CompoundExpression::RunNumber(CallFrame& frame) const {
    if (!variable_ || !IsNumeric(type) || !IsNumeric(value_->type)) {
        return false;
    }
    if (type == Type::Int && value_->type == Type::Int) {
        const int operand = value_->EvaluateInt(frame);
        Mark(frame);
        variable_->Slot(frame) = ApplyInt(op_, variable_->EvaluateInt(frame), operand);
        return true;
    }
    const double operand = value_->EvaluateFloat(frame);
    Mark(frame);
    const double number = ApplyFloat(op_, variable_->EvaluateFloat(frame), operand);
    variable_->Slot(frame) = Value(number).ConvertedTo(type);
    return true;
}

bool CompoundExpression::RunText(CallFrame& frame) const {
    if (!variable_ || type != Type::String || op_ != Operator::Add) {
        return false;
    }
    const Value value = value_->Evaluate(frame);
    Mark(frame);
    const std::string more = value.IsString() ? std::string() : value.AsString();
    const std::string& added = value.IsString() ? value.Text() : more;
    Value& slot = variable_->Slot(frame);
    if (!slot.IsString()) {
        slot = Value::Default(Type::String);
    }
    CheckTextLength(slot.Text().size() + added.size());
    slot.AppendText(added);
    return true;
}

void CompoundExpression::Run(CallFrame& frame) const {
    if (RunNumber(frame) || RunText(frame)) {
        return;
    }
    const Value operand = value_->Evaluate(frame);
    Mark(frame);
    const VariableReference place = target_->Locate(frame);
    place.Store(frame.runtime, Apply(op_, place.Load(), operand));
}

Value CompoundExpression::Evaluate(CallFrame& frame) const {
    if (RunNumber(frame) || RunText(frame)) {
        return variable_->Evaluate(frame);
    }
    const Value operand = value_->Evaluate(frame);
    Mark(frame);
    const VariableReference place = target_->Locate(frame);
    place.Store(frame.runtime, Apply(op_, place.Load(), operand));
    return place.Load();
}

StepExpression::StepExpression(std::uint32_t sourceOffset, TargetPtr target, bool isIncrement, bool isPrefix)
    : Expression(sourceOffset, target->type)
    , target_(std::move(target))
    , variable_(dynamic_cast<const VariableExpression*>(target_.get()))
    , isIncrement_(isIncrement)
    , isPrefix_(isPrefix) {
    Contains(*target_);
}

int* StepExpression::IntVariable(CallFrame& frame) const {
    return variable_ ? variable_->Slot(frame).IntSlot() : nullptr;
}

int StepExpression::EvaluateInt(CallFrame& frame) const {
    int* const number = IntVariable(frame);
    if (!number) {
        return Evaluate(frame).AsInt();
    }
    const int before = *number;
    *number = ApplyInt(isIncrement_ ? Operator::Add : Operator::Subtract, before, 1);
    return isPrefix_ ? *number : before;
}

void StepExpression::Run(CallFrame& frame) const {
    if (IntVariable(frame)) {
        EvaluateInt(frame);
    } else {
        Evaluate(frame);
    }
}

Value StepExpression::Evaluate(CallFrame& frame) const {
    if (IntVariable(frame)) {
        return EvaluateInt(frame);
    }
    Mark(frame);
    const VariableReference place = target_->Locate(frame);
    const Value before = place.Load();
    if (before.GetType() != Type::Int && before.GetType() != Type::Float &&
        before.GetType() != Type::Vector) {
        throw Error(IllegalOperation(isIncrement_ ? "++" : "--", before.GetType()));
    }
    const Value after = Apply(isIncrement_ ? Operator::Add : Operator::Subtract, before, 1);
    place.Store(frame.runtime, after);
    return isPrefix_ ? after : before;
}

} // namespace lightbox::mel
