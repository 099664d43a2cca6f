#pragma once

#include "mel/Expression.h"
#include "mel/Procedure.h"
#include "mel/Runtime.h"

#include <string>

namespace lightbox::mel {

/// A call of a procedure or command, in function or command syntax. The name is looked up at run time.
class CallExpression final : public Expression {
public:
    /// `forms` is empty for a function call. `scope` holds the file's own procedures.
    CallExpression(std::uint32_t offset, std::string name, ExpressionList arguments,
                   std::vector<ArgumentForm> forms, const FileScope* scope);

    Value Evaluate(CallFrame& frame) const override;
    const std::string* WrittenOutCall() const override {
        return AreWrittenOut(arguments_) ? &name_ : nullptr;
    }

private:
    Callee Resolve(Runtime& runtime) const;

    std::string name_;
    ExpressionList arguments_;
    std::vector<ArgumentForm> forms_;
    const FileScope* scope_;
    /// The last lookup, valid while the runtime's version stays the same.
    mutable Callee callee_;
    mutable unsigned version_ = 0;
};

/// catch(expression), catchQuiet(expression): 1 if the expression failed, else 0.
class CatchExpression final : public Expression {
public:
    CatchExpression(std::uint32_t offset, ExpressionPtr tried, bool isQuiet);

    Value Evaluate(CallFrame& frame) const override;

private:
    ExpressionPtr tried_;
    bool isQuiet_;
};

} // namespace lightbox::mel
