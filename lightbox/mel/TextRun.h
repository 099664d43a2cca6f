#pragma once

#include "mel/CallFrame.h"
#include "mel/Interpreter.h"
#include "mel/Runtime.h"

#include <cstdint>
#include <memory>

namespace lightbox::mel {

class Parser;
class SourceText;
class Statement;
struct Program;

/// One run of a text through the interpreter.
class TextRun {
public:
    /// `areOutermost`: the text's statements are outermost ones, each with its own undo chunk.
    TextRun(Interpreter& interpreter, const RunOptions& options, bool areOutermost);

    Value Run(std::string text, const std::string& name);

private:
    Value RunWhole(Parser& parser);
    Value RunStreamed(Parser& parser, const SourceText& source);
    bool IsAllowed(const Statement& statement) const;
    /// Passes over the next statement if it does not begin with the name of an allowed command.
    bool Refuse(Parser& parser, const SourceText& source) const;
    /// Passes over a statement that is not MEL only because of a variable that nothing has declared.
    bool RefuseVariable(Parser& parser, const SourceText& source) const;
    void Refuse(const SourceText& source, std::uint32_t begin, std::uint32_t end) const;
    /// Skips a statement that is not MEL. Returns false at the end of the text.
    bool Skip(Parser& parser, const SourceText& source) const;
    /// Runs the statements of a program; returns false when one of them returned.
    bool RunProgram(const Program& program, Value& result);
    bool RunStatement(const Statement& statement, CallFrame& frame, Value& result);
    Value ExecuteStatement(const Statement& statement, CallFrame& frame);
    /// Returns false when the error was handled and the run continues.
    bool MustThrow(Error& error, const CallFrame* frame) const;

    Interpreter& interpreter_;
    Runtime& runtime_;
    const RunOptions& options_;
    bool areOutermost_;
};

} // namespace lightbox::mel
