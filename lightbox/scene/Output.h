#pragma once

#include "scene/NonCopyable.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace lightbox {

class ErrorCollector;

/// Writes messages. In batch, print writes to standard output unchanged; infos, warnings and errors are lines
/// on standard error with the host's marks ("// Warning: ... //"). With a sink, all messages go to the sink
/// instead.
class Output {
public:
    enum class Kind { Print, Result, Info, Warning, Error, Progress };
    /// Receives the plain message, without the marks.
    using Sink = std::function<void(Kind, const std::string&)>;

    void Print(const std::string& text) { Write(Kind::Print, text); }
    /// A result line, "// Result: ... //", as after a typed command.
    void Result(const std::string& text) { Write(Kind::Result, text); }
    void Info(const std::string& text) { Write(Kind::Info, text); }
    void Warning(const std::string& text) { Write(Kind::Warning, text); }
    void Error(const std::string& text);
    /// Shows an error that a script has caught, without counting it.
    void CaughtError(const std::string& text) { Write(Kind::Error, text); }
    /// Writes a message to the log alone.
    void Log(Kind kind, const std::string& text) const;
    void Progress(const std::string& text) { Write(Kind::Progress, text); }

    /// Number of errors reported so far; a batch run's exit status depends on it.
    int ErrorCount() const { return errors_; }
    /// The text of the latest error.
    const std::string& LastError() const { return lastError_; }
    /// Sets the error count back to `count`, because a script has caught the errors since then.
    void ForgiveErrors(int count);

    /// Replaces the sink and returns the old one. An empty function means standard output and error.
    Sink SetSink(Sink sink);
    /// Sets a function that also gets every message, with or without a sink.
    void SetLog(Sink log) { log_ = std::move(log); }
    /// The message as a line with its marks and line break (except for print).
    static std::string Worded(Kind kind, const std::string& text);

private:
    friend class ErrorCollector;

    void Write(Kind kind, const std::string& text);

    Sink sink_;
    Sink log_;
    std::string lastError_;
    int errors_ = 0;
    ErrorCollector* collector_ = nullptr; ///< the innermost
};

/// Collects the errors that are shown while it exists. Collectors nest; only the innermost collects. An error
/// that a script catches is dropped again.
class ErrorCollector : NonCopyable {
public:
    explicit ErrorCollector(Output& output);
    ~ErrorCollector();

    std::vector<std::string> Texts() const;

private:
    friend class Output;

    struct Shown {
        int number; ///< the output's count of errors with this one
        std::string text;
    };

    Output& output_;
    ErrorCollector* outer_;
    std::vector<Shown> shown_;
};

} // namespace lightbox
