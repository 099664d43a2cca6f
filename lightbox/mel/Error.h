#pragma once

#include <stdexcept>
#include <string>

namespace lightbox::mel {

/// An error of the language or of a command, and its location in the text. It is thrown only inside Lightbox:
/// OpenMaya's entry points turn it into an MStatus.
class Error : public std::runtime_error {
public:
    enum class Kind { Runtime, Syntax, Interrupt, InvalidFlag };

    /// An error without a location; the interpreter adds it on the way out.
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
    /// The command does not have the flag.
    bool IsInvalidFlag() const { return kind_ == Kind::InvalidFlag; }
    /// The run was interrupted from outside; scripts cannot catch this.
    bool IsInterrupt() const { return kind_ == Kind::Interrupt; }
    /// The command that failed has shown why. Whoever catches the error has nothing to add.
    bool WasShown() const { return wasShown_; }
    void SetShown() { wasShown_ = true; }
    /// The command refused without a reason, which is how it tells a script; a person is told by Described().
    bool IsSilent() const { return isSilent_; }
    void SetSilent() { isSilent_ = true; }
    bool HasPlace() const { return line_ > 0; }
    void SetPlace(std::string fileName, int lineNumber, int columnNumber) {
        file_ = std::move(fileName);
        line_ = lineNumber;
        column_ = columnNumber;
    }
    /// File of the text; empty for text that was typed or passed in.
    const std::string& File() const { return file_; }
    /// Line and column, counted from 1; 0 while unknown.
    int Line() const { return line_; }
    int Column() const { return column_; }

    /// The message after its location: "file: /a/b.mel line 3.7: Syntax error".
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
    bool wasShown_ = false;
    bool isSilent_ = false;
};

} // namespace lightbox::mel
