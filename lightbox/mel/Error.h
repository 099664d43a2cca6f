#pragma once

#include <stdexcept>
#include <string>

namespace lightbox::mel {

/// An error of the language or of a command, and the place in the text where it happened. It travels as an
/// exception inside Lightbox and never leaves it: OpenMaya's entry points turn it into an MStatus.
class Error : public std::runtime_error {
public:
    enum class Kind { Runtime, Syntax, Interrupt };

    /// An error whose place the interpreter fills in on the way out.
    explicit Error(const std::string& message, Kind errorKind = Kind::Runtime)
        : std::runtime_error(message)
        , kind_(errorKind) {}
    Error(const std::string& message, Kind errorKind, std::string fileName, int lineNumber, int columnNumber)
        : std::runtime_error(message)
        , kind_(errorKind)
        , file_(std::move(fileName))
        , line_(lineNumber)
        , column_(columnNumber) {}

    bool IsSyntaxError() const { return kind_ == Kind::Syntax; }
    /// The run was stopped from outside; scripts cannot catch it.
    bool IsInterrupt() const { return kind_ == Kind::Interrupt; }
    bool HasPlace() const { return line_ > 0; }
    void SetPlace(std::string fileName, int lineNumber, int columnNumber) {
        file_ = std::move(fileName);
        line_ = lineNumber;
        column_ = columnNumber;
    }
    /// File the text came from; empty for text that was typed or handed over.
    const std::string& File() const { return file_; }
    /// Line and column, counted from 1; 0 while unknown.
    int Line() const { return line_; }
    int Column() const { return column_; }

    /// The message with its place before it: "file: /a/b.mel line 3.7: Syntax error".
    std::string Described() const {
        std::string text;
        if (!file_.empty()) {
            text += "file: " + file_ + " ";
        }
        if (line_ > 0) {
            text += "line " + std::to_string(line_) + "." + std::to_string(column_) + ": ";
        }
        return text + what();
    }

private:
    Kind kind_;
    std::string file_;
    int line_ = 0;
    int column_ = 0;
};

} // namespace lightbox::mel
