#pragma once

#include "mel/Expression.h"
#include "mel/Procedure.h"
#include "mel/Statement.h"
#include "mel/VariableExpressions.h"

namespace lightbox::mel {

/// An expression or a command, ended by a semicolon. An empty statement has no expression.
class ExpressionStatement final : public Statement {
public:
    ExpressionStatement(std::uint32_t offset, ExpressionPtr expression);
    Flow Execute(CallFrame& frame) const override;
    Value ExecuteForValue(CallFrame& frame) const override;
    bool IsCall() const override;
    const std::string* WrittenOutCall() const override;

private:
    ExpressionPtr expression_;
};

/// int $a, $b = 5, $c[10];
class DeclarationStatement final : public Statement {
public:
    struct Variable {
        std::unique_ptr<VariableExpression> variable;
        /// The size of a matrix; `rows` is also the size of an array. 0 when not given.
        int rows = 0;
        int columns = 0;
        ExpressionPtr initial;
        /// The variable keeps its value: a global in a procedure, or one declared again.
        bool keepsValue = false;
        /// The variable is initialised only once.
        bool initialOnce = false;
    };

    DeclarationStatement(std::uint32_t offset, std::vector<Variable> variables);
    Flow Execute(CallFrame& frame) const override;
    Value ExecuteForValue(CallFrame& frame) const override;

private:
    static Value Start(const Variable& declared);

    std::vector<Variable> variables_;
};

class BlockStatement final : public Statement {
public:
    BlockStatement(std::uint32_t offset, StatementList statements);
    Flow Execute(CallFrame& frame) const override;

private:
    StatementList statements_;
};

/// if, else if ..., else
class IfStatement final : public Statement {
public:
    struct Branch {
        ExpressionPtr condition;
        StatementPtr body;
    };
    /// `otherwise` may be null.
    IfStatement(std::uint32_t offset, std::vector<Branch> branches, StatementPtr otherwise);
    Flow Execute(CallFrame& frame) const override;

private:
    std::vector<Branch> branches_;
    StatementPtr otherwise_;
};

/// for (start; condition; step) body; also `while`, as its simple form. A missing condition is true.
class LoopStatement final : public Statement {
public:
    LoopStatement(std::uint32_t offset, ExpressionList start, ExpressionPtr condition, ExpressionList step,
                  StatementPtr body);
    Flow Execute(CallFrame& frame) const override;

private:
    ExpressionList start_;
    ExpressionPtr condition_;
    ExpressionList step_;
    StatementPtr body_;
};

/// do body while (condition);
class DoStatement final : public Statement {
public:
    DoStatement(std::uint32_t offset, StatementPtr body, ExpressionPtr condition);
    Flow Execute(CallFrame& frame) const override;

private:
    StatementPtr body_;
    ExpressionPtr condition_;
};

/// for ($element in $array) body. Iterates over the array as it was at the start.
class ForInStatement final : public Statement {
public:
    ForInStatement(std::uint32_t offset, std::unique_ptr<VariableExpression> variable, ExpressionPtr array,
                   StatementPtr body);
    Flow Execute(CallFrame& frame) const override;

private:
    std::unique_ptr<VariableExpression> variable_;
    ExpressionPtr array_;
    StatementPtr body_;
};

/// switch with fall-through.
class SwitchStatement final : public Statement {
public:
    /// A label before the statement of that index. The default label has no value.
    struct Label {
        ExpressionPtr value;
        std::size_t statement = 0;
    };
    SwitchStatement(std::uint32_t offset, ExpressionPtr value, std::vector<Label> labels,
                    StatementList statements);
    Flow Execute(CallFrame& frame) const override;

private:
    std::size_t Entry(CallFrame& frame) const;

    ExpressionPtr value_;
    std::vector<Label> labels_;
    StatementList statements_;
};

/// break and continue.
class JumpStatement final : public Statement {
public:
    JumpStatement(std::uint32_t sourceOffset, Flow flow)
        : Statement(sourceOffset)
        , flow_(flow) {}
    Flow Execute(CallFrame&) const override { return flow_; }

private:
    Flow flow_;
};

class ReturnStatement final : public Statement {
public:
    /// `value` may be null; `type` is the procedure's return type.
    ReturnStatement(std::uint32_t offset, ExpressionPtr value, Type type);
    Flow Execute(CallFrame& frame) const override;

private:
    ExpressionPtr value_;
    Type type_;
};

/// The definition of a procedure.
class ProcedureStatement final : public Statement {
public:
    ProcedureStatement(std::uint32_t sourceOffset, std::shared_ptr<const Procedure> procedure)
        : Statement(sourceOffset)
        , procedure_(std::move(procedure)) {}
    Flow Execute(CallFrame& frame) const override;

private:
    std::shared_ptr<const Procedure> procedure_;
};

} // namespace lightbox::mel
