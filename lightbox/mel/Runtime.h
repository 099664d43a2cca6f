#pragma once

#include "mel/CommandRegistry.h"
#include "mel/Frame.h"
#include "mel/GlobalVariables.h"
#include "mel/Procedure.h"
#include "mel/SlotStack.h"
#include "mel/Value.h"

#include <atomic>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace lightbox::mel {

class Error;
class Interpreter;

/// The arguments of a call. `words` tells which ones were written as bare words that begin with a hyphen,
/// since only those are flags where a text is expected; null when none can be.
struct CallArguments {
    std::vector<Value> values;
    const std::vector<bool>* flagWords = nullptr;
};

/// What a name stands for where it is called: a procedure or a command.
struct Callee {
    std::shared_ptr<const Procedure> procedure;
    std::shared_ptr<const CommandRegistry::Command> command;
    explicit operator bool() const { return procedure || command; }
};

/// The state of a running interpreter: variables, procedures, the stack of calls. Programs work on it.
class Runtime {
public:
    explicit Runtime(Interpreter& interpreter);

    Interpreter& GetInterpreter() const { return interpreter_; }
    GlobalVariables& Globals() { return globals_; }

    /// Procedures that were typed without `global`.
    const std::shared_ptr<FileScope>& SessionScope() const { return sessionScope_; }
    void Define(std::shared_ptr<const Procedure> procedure);
    const ProcedureEntry* FindGlobalProcedure(std::string_view name) const;

    /// Looks a name up: the file's own procedures, global ones, commands, then a script of that name in the
    /// script folders, which is sourced. Empty when all fail.
    Callee Find(const std::string& name, const FileScope* scope);
    /// Rises when what a name stands for may have changed.
    unsigned Version() const;

    Value Call(const Callee& callee, const std::string& name, CallArguments& arguments);
    Value CallProcedure(const std::shared_ptr<const Procedure>& procedure, std::vector<Value>& arguments);
    Value CallCommand(const CommandRegistry::Command& command, const CallArguments& arguments);

    /// The value as a variable of the type takes it; warns when a text is no number.
    Value Converted(Value value, Type type);
    /// Adds the place of what runs to an error that has none.
    static void Locate(Error& error, const Frame& frame);

    void Warn(const std::string& message);
    /// Shows an error that a script catches.
    void ReportCaught(const Error& error);

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
    class Entry {
    public:
        explicit Entry(Runtime& runtime);
        ~Entry();
        Entry(const Entry&) = delete;
        Entry& operator=(const Entry&) = delete;
        bool IsOutermost() const { return outermost_; }

    private:
        Runtime& runtime_;
        bool outermost_;
    };
    bool IsRunning() const { return entries_ > 0; }

    /// True in a command that is called directly by an outermost statement and is the whole of it.
    bool IsWholeStatement() const { return wholeStatement_ && callDepth_ == 1; }
    void SetWholeStatement(bool whole) { wholeStatement_ = whole; }

    /// Whether the outermost statements are echoed to the output.
    bool echo = false;

private:
    [[noreturn]] void StopInterrupted();
    bool SourceScriptFor(const std::string& name);

    Interpreter& interpreter_;
    GlobalVariables globals_;
    std::shared_ptr<FileScope> sessionScope_ = std::make_shared<FileScope>();
    std::unordered_map<std::string, std::unique_ptr<ProcedureEntry>> procedures_;
    unsigned procedureVersion_ = 0;
    SlotStack slots_;
    int entries_ = 0;
    int callDepth_ = 0;
    bool wholeStatement_ = false;
    const char* stackBase_ = nullptr;
    std::vector<std::string> beingSourced_;
    std::atomic<bool> interrupted_{false};

    class DepthScope;
};

} // namespace lightbox::mel
