#pragma once

#include "mel/CallFrame.h"
#include "mel/Interpreter.h"
#include "mel/Runtime.h"

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
