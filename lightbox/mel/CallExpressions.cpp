#include "mel/CallExpressions.h"

#include "mel/Error.h"

#include <new>

namespace lightbox::mel {

CallExpression::CallExpression(std::uint32_t sourceOffset, std::string name, ExpressionList arguments,
                               std::vector<ArgumentForm> forms, const FileScope* scope)
    : Expression(sourceOffset, Type::Any)
    , name_(std::move(name))
    , arguments_(std::move(arguments))
    , forms_(std::move(forms))
    , scope_(scope) {
    for (const ExpressionPtr& argument : arguments_) {
        Contains(*argument);
    }
}

Callee CallExpression::Resolve(Runtime& runtime) const {
    if (!callee_ || version_ != runtime.Version()) {
        callee_ = runtime.Find(name_, scope_);
        version_ = runtime.Version();
    }
    return callee_;
}

Value CallExpression::Evaluate(CallFrame& frame) const {
    Mark(frame);
    // A copy: the call may redefine the name or unload the plug-in.
    const Callee callee = Resolve(frame.runtime);
    if (!callee) {
        throw Error("Cannot find procedure \"" + name_ + "\".");
    }
    CallArguments arguments;
    arguments.values.reserve(arguments_.size());
    arguments.forms = forms_.empty() ? nullptr : &forms_;
    for (const ExpressionPtr& argument : arguments_) {
        arguments.values.push_back(argument->Evaluate(frame));
    }
    Mark(frame);
    return frame.runtime.Call(callee, name_, arguments);
}

CatchExpression::CatchExpression(std::uint32_t sourceOffset, ExpressionPtr tried, bool isQuiet)
    : Expression(sourceOffset, Type::Int)
    , tried_(std::move(tried))
    , isQuiet_(isQuiet) {
    Contains(*tried_);
}

Value CatchExpression::Evaluate(CallFrame& frame) const {
    const int shown = frame.runtime.ShownErrors();
    try {
        tried_->Run(frame);
        return 0;
    } catch (Error& error) {
        if (error.IsInterrupt()) {
            throw;
        }
        Runtime::Locate(error, frame);
        frame.runtime.ReportCaught(error, isQuiet_, shown);
    } catch (const std::bad_alloc&) {
        frame.runtime.ReportCaught(Error("Out of memory."), isQuiet_, shown);
    }
    return 1;
}

} // namespace lightbox::mel
