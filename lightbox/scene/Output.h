#pragma once

#include <functional>
#include <string>
#include <utility>

namespace lightbox {

/// Where messages go. In batch, print writes to standard output as it is; infos, warnings and errors are
/// lines on standard error in the host's wording ("// Warning: ... //"). A sink takes them all instead.
class Output {
public:
    enum class Kind { Print, Result, Info, Warning, Error, Progress };
    /// Receives the bare message, without the wording.
    using Sink = std::function<void(Kind, const std::string&)>;

    void Print(const std::string& text) { Write(Kind::Print, text); }
    /// A result line, "// Result: ... //", as after a typed command.
    void Result(const std::string& text) { Write(Kind::Result, text); }
    void Info(const std::string& text) { Write(Kind::Info, text); }
    void Warning(const std::string& text) { Write(Kind::Warning, text); }
    void Error(const std::string& text);
    /// An error that a script has caught: shown, but not counted.
    void CaughtError(const std::string& text) { Write(Kind::Error, text); }
    void Progress(const std::string& text) { Write(Kind::Progress, text); }

    /// Errors reported so far; a batch run's exit status depends on it.
    int ErrorCount() const { return errors_; }
    /// The text of the latest of them.
    const std::string& LastError() const { return lastError_; }
    /// Sets the count back to what it was: what was reported since belongs to an error that a script has
    /// caught.
    void ForgiveErrors(int count) { errors_ = count; }

    /// Replaces the sink and returns the one before; an empty function stands for standard output and error.
    Sink SetSink(Sink sink);
    /// Also gets every message, whatever the sink is.
    void SetLog(Sink log) { log_ = std::move(log); }
    /// The wording of a message as a line, with its line break (except for print).
    static std::string Worded(Kind kind, const std::string& text);

private:
    void Write(Kind kind, const std::string& text);

    Sink sink_;
    Sink log_;
    std::string lastError_;
    int errors_ = 0;
};

} // namespace lightbox
