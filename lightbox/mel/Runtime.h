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
    /// How each was written; null for a function call, where all are computed.
    const std::vector<ArgumentForm>* forms = nullptr;
};

/// What a name stands for where it is called: a procedure or a command. A procedure is kept by its name's
/// entry, since a call in its own body must not keep it alive.
struct Callee {
    const ProcedureEntry* entry = nullptr;
    std::shared_ptr<const CommandRegistry::Command> command;
    explicit operator bool() const { return entry || command; }
};

/// The state of a running interpreter: variables, procedures, the stack of calls. Programs work on it.
class Runtime {
public:
    explicit Runtime(Interpreter& interpreter);

    Interpreter& GetInterpreter() const { return interpreter_; }
    GlobalVariables& Globals() { return globals_; }

    /// The procedures without `global` of a file, by its name; those that were typed share one scope under an
    /// empty name.
    FileScope& ScopeOf(const std::string& file) { return scopes_[file]; }
    void Define(std::shared_ptr<const Procedure> procedure);
    /// Defines a procedure unless the same text has defined one of its name already.
    void DefineFirst(const std::shared_ptr<const Procedure>& procedure);
    const ProcedureEntry* FindGlobalProcedure(std::string_view name) const;

    /// Looks a name up: the file's own procedures, global ones, commands, then a script of that name in the
    /// script folders, which is sourced. Empty when all fail.
    Callee Find(const std::string& name, const FileScope* scope);
    /// Rises when what a name stands for may have changed.
    unsigned Version() const;

    Value Call(const Callee& callee, const std::string& name, CallArguments& arguments);
    Value CallProcedure(const Procedure& procedure, std::vector<Value>& arguments);
    Value CallCommand(const std::shared_ptr<const CommandRegistry::Command>& called,
                      const CallArguments& arguments);

    /// The value as a variable of the type takes it; warns when a text is no number.
    Value Converted(Value value, Type type);
    /// Adds the place of what runs to an error that has none.
    static void Locate(Error& error, const CallFrame& frame);

    void Warn(const std::string& message);
    /// Errors that were shown so far.
    int ShownErrors() const;
    /// Shows an error that a script catches, unless it does so quietly. Neither it nor what was shown about
    /// it since there were `before` errors counts as an error of the run: the script has dealt with it.
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

    /// A run from outside: marks where the stack begins.
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

    /// True in a command that is called directly by an outermost statement and is the whole of it.
    bool IsWholeStatement() const { return wholeDepth_ > 0 && callDepth_ == wholeDepth_; }
    /// Notes, while an outermost statement runs, whether it is a call and nothing else.
    class WholeStatement {
    public:
        WholeStatement(Runtime& runtime, bool isCall)
            : depth_(runtime.wholeDepth_, isCall ? runtime.callDepth_ + 1 : 0) {}

    private:
        QScopedValueRollback<int> depth_;
    };

    /// Whether the outermost statements are printed before they run.
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
    /// The depth of the call that is a whole outermost statement, 0 when there is none.
    int wholeDepth_ = 0;
    const char* stackBase_ = nullptr;
    std::vector<std::string> beingSourced_;
    std::atomic<bool> interrupted_{false};
};

} // namespace lightbox::mel
