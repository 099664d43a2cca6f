#include "mel/Runtime.h"

#include "mel/ArgumentTokens.h"
#include "mel/Error.h"
#include "mel/Interpreter.h"
#include "mel/ParsedArguments.h"
#include "mel/SourceText.h"
#include "mel/Statement.h"
#include "scene/Host.h"
#include "scene/Output.h"
#include "scene/ScopeExit.h"
#include "text/NumberText.h"

#include <QScopedValueRollback>

#include <algorithm>

#if defined(__unix__) || defined(__APPLE__)
#include <sys/resource.h>
#endif

namespace lightbox::mel {

namespace {

/// Deeper calls count as endless recursion.
constexpr int MAX_CALL_DEPTH = 2000;

const char* StackPosition() {
#if defined(__GNUC__)
    return static_cast<const char*>(__builtin_frame_address(0));
#else
    const volatile char here = 0;
    return const_cast<const char*>(&here);
#endif
}

/// The stack size that a run may use, in bytes; the rest is for commands and the host.
std::ptrdiff_t StackAllowance() {
#if defined(__unix__) || defined(__APPLE__)
    constexpr std::ptrdiff_t most = std::ptrdiff_t{4} << 20;
    rlimit limit{};
    if (getrlimit(RLIMIT_STACK, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY) {
        return std::min(most, static_cast<std::ptrdiff_t>(limit.rlim_cur / 2));
    }
    return most;
#else
    return std::ptrdiff_t{512} << 10;
#endif
}

/// Reads "true" and the like, which count as numbers in an assignment to a number.
bool TruthWord(const std::string& text, bool& truth) {
    truth = text == "true" || text == "on" || text == "yes";
    return truth || text == "false" || text == "off" || text == "no";
}

} // namespace

Runtime::Entry::Entry(Runtime& runtime)
    : runtime_(runtime)
    , outermost_(runtime.entries_ == 0) {
    if (outermost_) {
        runtime_.stackBase_ = StackPosition();
        runtime_.interrupted_ = false;
    } else {
        runtime_.CheckStack();
    }
    ++runtime_.entries_;
}

Runtime::Entry::~Entry() {
    --runtime_.entries_;
}

Runtime::Runtime(Interpreter& interpreter)
    : interpreter_(interpreter) {}

void Runtime::Define(std::shared_ptr<const Procedure> procedure) {
    ++procedureVersion_;
    if (!procedure->isGlobal) {
        ProcedureEntry& own = procedure->scope->procedures[procedure->name];
        own.procedure = std::move(procedure);
        return;
    }
    auto& entry = procedures_[procedure->name];
    if (!entry) {
        entry = std::make_unique<ProcedureEntry>();
    }
    entry->procedure = std::move(procedure);
}

void Runtime::DefineFirst(const std::shared_ptr<const Procedure>& procedure) {
    const auto& defined = procedure->isGlobal ? FindGlobalProcedure(procedure->name) : nullptr;
    const auto own = procedure->scope->procedures.find(procedure->name);
    const Procedure* const present = procedure->isGlobal ? (defined ? defined->procedure.get() : nullptr)
                                     : own == procedure->scope->procedures.end()
                                         ? nullptr
                                         : own->second.procedure.get();
    if (!present || present->source != procedure->source) {
        Define(procedure);
    }
}

const ProcedureEntry* Runtime::FindGlobalProcedure(std::string_view name) const {
    const auto found = procedures_.find(std::string(name));
    return found == procedures_.end() ? nullptr : found->second.get();
}

Callee Runtime::Find(const std::string& name, const FileScope* scope) {
    Callee callee;
    if (scope) {
        const auto own = scope->procedures.find(name);
        if (own != scope->procedures.end()) {
            callee.entry = &own->second;
            return callee;
        }
    }
    callee.entry = FindGlobalProcedure(name);
    if (callee.entry) {
        return callee;
    }
    callee.command = interpreter_.Commands().Find(name);
    if (!callee.command && SourceScriptFor(name)) {
        callee.entry = FindGlobalProcedure(name);
    }
    return callee;
}

unsigned Runtime::Version() const {
    return procedureVersion_ + interpreter_.Commands().Version();
}

bool Runtime::SourceScriptFor(const std::string& name) {
    if (std::find(beingSourced_.begin(), beingSourced_.end(), name) != beingSourced_.end()) {
        return false;
    }
    const std::string path = interpreter_.FindScript(name + ".mel");
    if (path.empty()) {
        return false;
    }
    beingSourced_.push_back(name);
    const ScopeExit sourced([this] { beingSourced_.pop_back(); });
    interpreter_.ExecuteFile(path);
    return true;
}

Value Runtime::Call(const Callee& callee, const std::string& name, CallArguments& arguments) {
    CheckInterrupt();
    CheckCallDepth();
    const QScopedValueRollback<int> depth(callDepth_, callDepth_ + 1);
    if (callee.entry) {
        // A copy: the procedure may redefine its own name.
        const std::shared_ptr<const Procedure> procedure = callee.entry->procedure;
        return CallProcedure(*procedure, arguments.values);
    }
    if (!callee.command) {
        throw Error("Cannot find procedure \"" + name + "\".");
    }
    return CallCommand(callee.command, arguments);
}

Value Runtime::CallProcedure(const Procedure& procedure, std::vector<Value>& arguments) {
    if (arguments.size() != procedure.parameters.size()) {
        throw Error("Wrong number of arguments on call to " + procedure.name + ".");
    }
    const SlotStack::Slots variables(slots_, static_cast<std::size_t>(procedure.variableCount));
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        // Arrays of the same type are passed by reference.
        variables.Get()[i] = Converted(std::move(arguments[i]), procedure.parameters[i].type);
    }
    CallFrame frame{*this, *procedure.source, variables.Get()};
    try {
        procedure.body->Execute(frame);
    } catch (Error& error) {
        Locate(error, frame);
        throw;
    }
    return frame.result.IsNone() ? Value::Default(procedure.returnType) : std::move(frame.result);
}

Value Runtime::CallCommand(const std::shared_ptr<const CommandRegistry::Command>& called,
                           const CallArguments& arguments) {
    const CommandRegistry::Command& command = *called;
    try {
        if (command.raw) {
            const std::size_t count = arguments.values.size();
            if (count < command.minimumArguments || count > command.maximumArguments) {
                throw Error("Wrong number of arguments on call to " + command.name + ".");
            }
            CommandCall call(interpreter_, command.name, arguments.values, nullptr);
            return command.function(call);
        }
        ArgumentTokens tokens(arguments);
        if (command.unparsed) {
            return command.unparsed(std::move(tokens));
        }
        const ParsedArguments parsed(command.syntax, std::move(tokens), command.takesNotFinite);
        CommandCall call(interpreter_, command.name, parsed.Objects(), &parsed);
        return command.function(call);
    } catch (const Error&) {
        throw;
    } catch (const std::bad_alloc&) {
        throw Error(OUT_OF_MEMORY);
    } catch (const std::exception& failure) {
        throw Error(failure.what());
    }
}

Value Runtime::Converted(Value value, Type type) {
    const Type own = value.GetType();
    if (own == type || type == Type::Any) {
        return value;
    }
    if (own == Type::String && (type == Type::Int || type == Type::Float)) {
        double number = 0.0;
        bool truth = false;
        if (TruthWord(value.Text(), truth)) {
            return Value(truth).ConvertedTo(type);
        }
        if (!ReadNumber(value.Text(), number)) {
            Warn("Converting string \"" + value.Text().substr(0, 100) + "\" to " +
                 (type == Type::Int ? "an int value of 0." : "a float value of 0."));
        }
    }
    return value.ConvertedTo(type);
}

void Runtime::Locate(Error& error, const CallFrame& frame) {
    if (!error.HasPlace()) {
        int line = 0;
        int column = 0;
        frame.source.Place(frame.offset, line, column);
        error.SetPlace(frame.source.Name(), line, column);
    }
}

void Runtime::Warn(const std::string& message) {
    interpreter_.GetHost().output().Warning(message);
}

int Runtime::ShownErrors() const {
    return interpreter_.GetHost().output().ErrorCount();
}

void Runtime::ReportCaught(const Error& error, bool isQuiet, int before) {
    Output& output = interpreter_.GetHost().output();
    output.ForgiveErrors(before);
    if (!isQuiet && !error.WasShown()) {
        output.CaughtError(error.Described());
    }
}

void Runtime::CheckCallDepth() const {
    if (callDepth_ >= MAX_CALL_DEPTH) {
        throw Error("Stack overflow: calls are nested more than " + std::to_string(MAX_CALL_DEPTH) +
                    " deep.");
    }
    CheckStack();
}

void Runtime::CheckStack() const {
    static const std::ptrdiff_t allowance = StackAllowance();
    const std::ptrdiff_t used = stackBase_ - StackPosition();
    if (stackBase_ && (used > allowance || used < -allowance)) {
        throw Error("Stack overflow: calls are nested too deep.");
    }
}

void Runtime::StopInterrupted() {
    throw Error("The run was interrupted.", Error::Kind::Interrupt);
}

} // namespace lightbox::mel
