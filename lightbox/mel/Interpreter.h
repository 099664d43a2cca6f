#pragma once

#include "mel/CommandRegistry.h"
#include "mel/Error.h"
#include "mel/Value.h"
#include "scene/NonCopyable.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace lightbox {
class Host;
}

namespace lightbox::mel {

class Runtime;
class ScriptJobs;

/// Options for running a text.
struct RunOptions {
    /// Parses each statement after the previous one has run, so that a huge file needs little memory.
    /// Otherwise the whole text is parsed first, and a syntax error means that nothing has run.
    bool streamed = false;
    /// Called before each statement of a streamed run, with the statement's text and line. False skips the
    /// statement. May be empty.
    std::function<bool(std::string_view statement, int line)> beforeStatement;
    /// Called when a streamed run goes on after a statement that is not MEL: the statement up to what is not
    /// MEL, and all the text that is skipped, which begins with it. May be empty.
    std::function<void(std::string_view readable, std::string_view skipped, int line)> afterUnreadable;
    /// If set, only calls of the commands that it accepts run, and only with arguments that are written out:
    /// nothing is computed, looked up or defined. For a streamed run.
    std::function<bool(std::string_view command)> isAllowed;
    /// Called for each statement that does not run because of `isAllowed`, with its text and line.
    std::function<void(std::string_view statement, int line)> onRefused;
    /// Called after each failed statement: true continues with the next one, false throws. If empty, the
    /// first error is thrown.
    std::function<bool(const Error&)> onError;
};

/// Runs MEL: takes texts, returns values. One per host, used on the main thread only. Every error is thrown
/// as mel::Error; only errors that `catch` swallows are printed here.
///
/// Every outermost statement is one chunk on the undo queue: a statement of a typed text, of a script file,
/// or of a file sourced at the top level. Text that a command runs belongs to that command's chunk.
class Interpreter : NonCopyable {
public:
    explicit Interpreter(Host& host);
    ~Interpreter();

    Host& GetHost() const { return host_; }
    CommandRegistry& Commands() { return commands_; }
    const CommandRegistry& Commands() const { return commands_; }

    /// Runs a text and returns the value of its last statement. `name` is for messages: the text's file, or
    /// empty.
    Value Execute(std::string text, const std::string& name = std::string(), const RunOptions& options = {});
    /// Runs a text and reports an error as output, instead of throwing it.
    void ExecuteReporting(const std::string& text);
    /// Reads and runs a file. Throws Error when it cannot be read.
    Value ExecuteFile(const std::string& path, const RunOptions& options = {});
    /// Implements `source`: finds a script and runs it. When the running outermost statement is just this
    /// call, the file's statements are outermost ones too.
    Value Source(const std::string& name);
    /// The path of a script as `source` looks it up: as given, or in the script folders; empty when not
    /// found.
    std::string FindScript(const std::string& name) const;

    /// Shows an error that has ended a run. Of one that was shown already, only the file that stopped is
    /// shown.
    void Report(const Error& error);

    /// Calls a command or procedure by name.
    Value Call(const std::string& name, const std::vector<Value>& arguments);

    /// Global variables. Setting one creates it with the value's type, or converts the value to the
    /// variable's type.
    bool HasGlobal(const std::string& name) const;
    Value GetGlobal(const std::string& name) const;
    void SetGlobal(const std::string& name, const Value& value);
    bool HasProcedure(const std::string& name) const;

    /// True while any text or command runs.
    bool IsRunning() const;
    /// Asks the running text to stop with an error at its next statement. May be called from a signal handler
    /// or another thread.
    void Interrupt();

    ScriptJobs& Jobs() { return *jobs_; }
    /// The runtime state, for the parts of the language.
    Runtime& GetRuntime() { return *runtime_; }

private:
    friend class TextRun;

    Host& host_;
    CommandRegistry commands_;
    std::unique_ptr<Runtime> runtime_;
    std::unique_ptr<ScriptJobs> jobs_;
};

/// Adds the commands of the language and others that need no scene. Called once at the host's start.
void RegisterLanguageCommands(CommandRegistry& registry);

} // namespace lightbox::mel
