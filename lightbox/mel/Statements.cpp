#include "mel/Statements.h"

#include "mel/CallExpressions.h"
#include "mel/Error.h"
#include "mel/Operations.h"
#include "mel/Runtime.h"

namespace lightbox::mel {

Value Statement::ExecuteForValue(CallFrame& frame) const {
    Execute(frame);
    return Value();
}

Procedure::~Procedure() = default;

ExpressionStatement::ExpressionStatement(std::uint32_t sourceOffset, ExpressionPtr expression)
    : Statement(sourceOffset)
    , expression_(std::move(expression)) {}

Flow ExpressionStatement::Execute(CallFrame& frame) const {
    if (expression_) {
        expression_->Run(frame);
    }
    return Flow::Next;
}

Value ExpressionStatement::ExecuteForValue(CallFrame& frame) const {
    return expression_ ? expression_->Evaluate(frame).Detached() : Value();
}

bool ExpressionStatement::IsCall() const {
    return dynamic_cast<const CallExpression*>(expression_.get()) != nullptr;
}

const std::string* ExpressionStatement::WrittenOutCall() const {
    static const std::string nothing;
    return expression_ ? expression_->WrittenOutCall() : &nothing;
}

DeclarationStatement::DeclarationStatement(std::uint32_t sourceOffset, std::vector<Variable> variables)
    : Statement(sourceOffset)
    , variables_(std::move(variables)) {}

Value DeclarationStatement::Start(const Variable& declared) {
    const Type type = declared.variable->type;
    if (type == Type::Matrix) {
        return Matrix(declared.rows, declared.columns);
    }
    Value value = Value::Default(type);
    const auto size = static_cast<std::size_t>(declared.rows);
    switch (type) {
    case Type::IntArray:
        value.Ints().resize(size);
        break;
    case Type::FloatArray:
        value.Floats().resize(size);
        break;
    case Type::StringArray:
        value.Strings().resize(size);
        break;
    case Type::VectorArray:
        value.Vectors().resize(size);
        break;
    default:
        break;
    }
    return value;
}

Flow DeclarationStatement::Execute(CallFrame& frame) const {
    frame.offset = offset;
    for (const Variable& declared : variables_) {
        Value& slot = declared.variable->Slot(frame);
        GlobalVariable* const global = declared.variable->Global();
        const bool isFirst = global && !global->isInitialised;
        if (!declared.keepsValue || slot.IsNone() || (isFirst && declared.rows > 0)) {
            slot = Start(declared);
        }
        if (declared.initial && (!declared.initialOnce || isFirst)) {
            Value value = declared.initial->Evaluate(frame);
            frame.offset = offset;
            declared.variable->Locate(frame).Store(frame.runtime, std::move(value));
        }
        if (global) {
            global->isInitialised = true;
        }
    }
    return Flow::Next;
}

Value DeclarationStatement::ExecuteForValue(CallFrame& frame) const {
    Execute(frame);
    const Variable& last = variables_.back();
    return last.initial ? last.variable->Evaluate(frame).Detached() : Value();
}

BlockStatement::BlockStatement(std::uint32_t sourceOffset, StatementList statements)
    : Statement(sourceOffset)
    , statements_(std::move(statements)) {}

Flow BlockStatement::Execute(CallFrame& frame) const {
    for (const StatementPtr& statement : statements_) {
        const Flow flow = statement->Execute(frame);
        if (flow != Flow::Next) {
            return flow;
        }
    }
    return Flow::Next;
}

IfStatement::IfStatement(std::uint32_t sourceOffset, std::vector<Branch> branches, StatementPtr otherwise)
    : Statement(sourceOffset)
    , branches_(std::move(branches))
    , otherwise_(std::move(otherwise)) {}

Flow IfStatement::Execute(CallFrame& frame) const {
    for (const Branch& branch : branches_) {
        branch.condition->Mark(frame);
        if (branch.condition->EvaluateTruth(frame)) {
            return branch.body->Execute(frame);
        }
    }
    return otherwise_ ? otherwise_->Execute(frame) : Flow::Next;
}

LoopStatement::LoopStatement(std::uint32_t sourceOffset, ExpressionList start, ExpressionPtr condition,
                             ExpressionList step, StatementPtr body)
    : Statement(sourceOffset)
    , start_(std::move(start))
    , condition_(std::move(condition))
    , step_(std::move(step))
    , body_(std::move(body)) {}

Flow LoopStatement::Execute(CallFrame& frame) const {
    for (const ExpressionPtr& part : start_) {
        part->Run(frame);
    }
    while (!condition_ || condition_->EvaluateTruth(frame)) {
        frame.runtime.CheckInterrupt();
        const Flow flow = body_->Execute(frame);
        if (flow == Flow::Return) {
            return flow;
        }
        if (flow == Flow::Break) {
            break;
        }
        for (const ExpressionPtr& part : step_) {
            part->Run(frame);
        }
    }
    return Flow::Next;
}

DoStatement::DoStatement(std::uint32_t sourceOffset, StatementPtr body, ExpressionPtr condition)
    : Statement(sourceOffset)
    , body_(std::move(body))
    , condition_(std::move(condition)) {}

Flow DoStatement::Execute(CallFrame& frame) const {
    do {
        frame.runtime.CheckInterrupt();
        const Flow flow = body_->Execute(frame);
        if (flow == Flow::Return) {
            return flow;
        }
        if (flow == Flow::Break) {
            break;
        }
    } while (condition_->EvaluateTruth(frame));
    return Flow::Next;
}

ForInStatement::ForInStatement(std::uint32_t sourceOffset, std::unique_ptr<VariableExpression> variable,
                               ExpressionPtr array, StatementPtr body)
    : Statement(sourceOffset)
    , variable_(std::move(variable))
    , array_(std::move(array))
    , body_(std::move(body)) {}

Flow ForInStatement::Execute(CallFrame& frame) const {
    const Value array = array_->Evaluate(frame).Detached();
    if (!array.IsArray() && !array.IsNone()) {
        frame.offset = offset;
        throw Error(std::string("Cannot iterate over a value of type ") + TypeName(array.GetType()) +
                    ": it is not an array.");
    }
    for (std::size_t i = 0; i < array.Size(); ++i) {
        frame.runtime.CheckInterrupt();
        variable_->Locate(frame).Store(frame.runtime, array.Element(i));
        const Flow flow = body_->Execute(frame);
        if (flow == Flow::Return) {
            return flow;
        }
        if (flow == Flow::Break) {
            break;
        }
    }
    return Flow::Next;
}

SwitchStatement::SwitchStatement(std::uint32_t sourceOffset, ExpressionPtr value, std::vector<Label> labels,
                                 StatementList statements)
    : Statement(sourceOffset)
    , value_(std::move(value))
    , labels_(std::move(labels))
    , statements_(std::move(statements)) {}

std::size_t SwitchStatement::Entry(CallFrame& frame) const {
    const Value value = value_->Evaluate(frame);
    std::size_t fallback = statements_.size();
    for (const Label& label : labels_) {
        if (!label.value) {
            fallback = label.statement;
            continue;
        }
        const Value candidate = label.value->Evaluate(frame);
        frame.offset = offset;
        if (Apply(Operator::Equal, value, candidate).AsBool()) {
            return label.statement;
        }
    }
    return fallback;
}

Flow SwitchStatement::Execute(CallFrame& frame) const {
    for (std::size_t i = Entry(frame); i < statements_.size(); ++i) {
        const Flow flow = statements_[i]->Execute(frame);
        if (flow == Flow::Break) {
            break;
        }
        if (flow != Flow::Next) {
            return flow;
        }
    }
    return Flow::Next;
}

ReturnStatement::ReturnStatement(std::uint32_t sourceOffset, ExpressionPtr value, Type type)
    : Statement(sourceOffset)
    , value_(std::move(value))
    , type_(type) {}

Flow ReturnStatement::Execute(CallFrame& frame) const {
    if (value_) {
        Value value = value_->Evaluate(frame);
        frame.offset = offset;
        frame.result = frame.runtime.Converted(std::move(value), type_);
    }
    frame.hasReturned = true;
    return Flow::Return;
}

Flow ProcedureStatement::Execute(CallFrame& frame) const {
    frame.runtime.Define(procedure_);
    return Flow::Next;
}

} // namespace lightbox::mel
