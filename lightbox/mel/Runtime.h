#pragma once

#include "mel/ArgumentForm.h"
#include "mel/CallFrame.h"
#include "mel/CommandRegistry.h"
#include "mel/GlobalVariables.h"
#include "mel/Procedure.h"
#include "mel/SlotStack.h"
#include "mel/Value.h"
#include "scene/NonCopyable.h"

#include <QScopedValueRollback>

#include <atomic>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace lightbox::mel {

class Error;
class Interpreter;

/// The arguments of a call.
struct CallArguments {
    std::vector<Value> values;
    /// How each argument was written; null for a function call, where all are computed.
    const std::vector<ArgumentForm>* forms = nullptr;
};

/// The target of a call: a procedure or a command. Refers to a procedure by its name's entry, so that a call
/// in the procedure's own body does not keep it alive.
struct Callee {
    const ProcedureEntry* entry = nullptr;
    std::shared_ptr<const CommandRegistry::Command> command;
    explicit operator bool() const { return entry || command; }
};

/// The state of the interpreter that programs run on: variables, procedures and the call stack.
class Runtime {
public:
    /// The message of an error for lack of memory.
    static constexpr const char* OUT_OF_MEMORY = "Out of memory.";

    explicit Runtime(Interpreter& interpreter);

    Interpreter& GetInterpreter() const { return interpreter_; }
    GlobalVariables& Globals() { return globals_; }

    /// The procedures of a file without `global`, by the file's name. Typed text uses one scope under an
    /// empty name.
    FileScope& ScopeOf(const std::string& file) { return scopes_[file]; }
    void Define(std::shared_ptr<const Procedure> procedure);
    /// Defines a procedure unless the same text has already defined one with its name.
    void DefineFirst(const std::shared_ptr<const Procedure>& procedure);
    const ProcedureEntry* FindGlobalProcedure(std::string_view name) const;

    /// Looks up a name: the file's own procedures, global procedures, commands, then a script of that name in
    /// the script folders, which is sourced. Empty when nothing is found.
    Callee Find(const std::string& name, const FileScope* scope);
    /// Increases when the result of Find() may have changed.
    unsigned Version() const;

    Value Call(const Callee& callee, const std::string& name, CallArguments& arguments);
    Value CallProcedure(const Procedure& procedure, std::vector<Value>& arguments);
    Value CallCommand(const std::shared_ptr<const CommandRegistry::Command>& called,
                      const CallArguments& arguments);

    /// Converts a value for a variable of that type; warns when a text is not a number.
    Value Converted(Value value, Type type);
    /// Adds the frame's location to an error that has none.
    static void Locate(Error& error, const CallFrame& frame);

    void Warn(const std::string& message);
    /// Number of errors shown so far.
    int ShownErrors() const;
    /// Shows an error that a script catches, unless `isQuiet`. Since the script handles it, the errors shown
    /// since there were `before` of them do not count as errors of the run.
    void ReportCaught(const Error& error, bool isQuiet, int before);

    /// Throws when calls are nested too deep for the stack, or when the run was interrupted.
    void CheckStack() const;
    void CheckInterrupt() {
        if (interrupted_.load(std::memory_order_relaxed)) {
            StopInterrupted();
        }
    }
    void Interrupt() { interrupted_.store(true); }

    SlotStack& Slots() { return slots_; }

    /// A run started from outside; records the start of the stack.
    class Entry : NonCopyable {
    public:
        explicit Entry(Runtime& runtime);
        ~Entry();
        bool IsOutermost() const { return outermost_; }

    private:
        Runtime& runtime_;
        bool outermost_;
    };
    bool IsRunning() const { return entries_ > 0; }

    /// Whether an outermost statement consists of nothing but the running command's call.
    bool IsWholeStatement() const { return wholeDepth_ > 0 && callDepth_ == wholeDepth_; }
    /// Records, while an outermost statement runs, whether the statement is only a call.
    class WholeStatement {
    public:
        WholeStatement(Runtime& runtime, bool isCall)
            : depth_(runtime.wholeDepth_, isCall ? runtime.callDepth_ + 1 : 0) {}

    private:
        QScopedValueRollback<int> depth_;
    };

    /// Whether outermost statements are printed before they run.
    bool EchoesStatements() const { return echoes_; }
    void EchoStatements(bool echo) { echoes_ = echo; }

private:
    [[noreturn]] void StopInterrupted();
    void CheckCallDepth() const;
    bool SourceScriptFor(const std::string& name);

    Interpreter& interpreter_;
    GlobalVariables globals_;
    std::map<std::string, FileScope> scopes_;
    std::unordered_map<std::string, std::unique_ptr<ProcedureEntry>> procedures_;
    unsigned procedureVersion_ = 0;
    SlotStack slots_;
    int entries_ = 0;
    bool echoes_ = false;
    int callDepth_ = 0;
    /// Depth of the call that is a whole outermost statement; 0 for none.
    int wholeDepth_ = 0;
    const char* stackBase_ = nullptr;
    std::vector<std::string> beingSourced_;
    std::atomic<bool> interrupted_{false};
};

} // namespace lightbox::mel
