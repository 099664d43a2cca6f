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

/// How a text is run.
struct RunOptions {
    /// Each statement is parsed when the one before it has run, so that a huge file needs little memory;
    /// otherwise the whole text is parsed first and a syntax error means that nothing has run.
    bool streamed = false;
    /// Asked before each statement of a streamed run, when given, with the statement as it stands in the text
    /// and all the text before it: false passes it over.
    std::function<bool(std::string_view statement, std::string_view before)> beforeStatement;
    /// Asked after each statement that failed, when given: true goes on with the next statement, false
    /// throws. Without it the first error is thrown.
    std::function<bool(const Error&)> onError;
};

/// The MEL language: texts in, values out. One per host, used on the main thread only. Every error leaves as
/// mel::Error; none is printed here, except those that `catch` swallows.
///
/// Every outermost statement is one chunk on the undo queue: a statement of a text that was typed, of a
/// script file, of a file sourced at the top level. What a command runs from inside belongs to that command's
/// chunk.
class Interpreter : NonCopyable {
public:
    explicit Interpreter(Host& host);
    ~Interpreter();

    Host& GetHost() const { return host_; }
    CommandRegistry& Commands() { return commands_; }
    const CommandRegistry& Commands() const { return commands_; }

    /// Runs a text and returns the value of its last statement. `name` is shown in messages: the file the
    /// text came from, or empty.
    Value Execute(std::string text, const std::string& name = std::string(), const RunOptions& options = {});
    /// Reads and runs a file. Throws Error when it cannot be read.
    Value ExecuteFile(const std::string& path, const RunOptions& options = {});
    /// What `source` does: finds the script and runs it. When the running outermost statement is that very
    /// call, the file's statements are outermost ones too.
    Value Source(const std::string& name);
    /// The path of a script as `source` finds it: as given, or in the script folders; empty when there is
    /// none.
    std::string FindScript(const std::string& name) const;

    /// Calls a command or procedure by name.
    Value Call(const std::string& name, const std::vector<Value>& arguments);

    /// Global variables. Setting creates a variable of the value's type or converts to the one it has.
    bool HasGlobal(const std::string& name) const;
    Value GetGlobal(const std::string& name) const;
    void SetGlobal(const std::string& name, const Value& value);
    bool HasProcedure(const std::string& name) const;

    /// True while any text or command runs.
    bool IsRunning() const;
    /// Asks the running text to stop with an error at its next statement (from a signal or another thread).
    void Interrupt();

    ScriptJobs& Jobs() { return *jobs_; }
    /// The state behind it, for the parts of the language.
    Runtime& GetRuntime() { return *runtime_; }

private:
    friend class TextRun;

    Host& host_;
    CommandRegistry commands_;
    std::unique_ptr<Runtime> runtime_;
    std::unique_ptr<ScriptJobs> jobs_;
};

/// Adds the commands of the language and those that need no scene. Called once when the host starts.
void RegisterLanguageCommands(CommandRegistry& registry);

} // namespace lightbox::mel
