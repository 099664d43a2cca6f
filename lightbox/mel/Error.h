#pragma once

#include <stdexcept>
#include <string>

namespace lightbox::mel {

/// An error of the language or of a command, and the place in the text where it happened. It travels as an
/// exception inside Lightbox and never leaves it: OpenMaya's entry points turn it into an MStatus.
class Error : public std::runtime_error {
public:
    enum class Kind { Runtime, Syntax };

    /// An error whose place the interpreter fills in on the way out.
    explicit Error(const std::string& message, Kind errorKind = Kind::Runtime)
        : std::runtime_error(message)
        , kind(errorKind) {}
    Error(const std::string& message, Kind errorKind, std::string fileName, int lineNumber, int columnNumber)
        : std::runtime_error(message)
        , kind(errorKind)
        , file(std::move(fileName))
        , line(lineNumber)
        , column(columnNumber) {}

    bool IsSyntaxError() const { return kind == Kind::Syntax; }
    bool HasPlace() const { return line > 0; }
    void SetPlace(std::string fileName, int lineNumber, int columnNumber) {
        file = std::move(fileName);
        line = lineNumber;
        column = columnNumber;
    }
    /// File the text came from; empty for text that was typed or handed over.
    const std::string& File() const { return file; }
    /// Line and column, counted from 1; 0 while unknown.
    int Line() const { return line; }
    int Column() const { return column; }

    /// The message with its place before it: "file: /a/b.mel line 3.7: Syntax error".
    std::string Described() const {
        std::string text;
        if (!file.empty()) {
            text += "file: " + file + " ";
        }
        if (line > 0) {
            text += "line " + std::to_string(line) + "." + std::to_string(column) + ": ";
        }
        return text + what();
    }

private:
    Kind kind;
    std::string file;
    int line = 0;
    int column = 0;
};

} // namespace lightbox::mel
