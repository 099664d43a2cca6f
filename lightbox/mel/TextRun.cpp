#include "mel/TextRun.h"

#include "mel/Error.h"
#include "mel/Parser.h"
#include "mel/Program.h"
#include "mel/SourceText.h"
#include "mel/StatementChunk.h"
#include "mel/StatementEnd.h"
#include "scene/Host.h"
#include "scene/Output.h"

#include <algorithm>
#include <new>

namespace lightbox::mel {

TextRun::TextRun(Interpreter& interpreter, const RunOptions& options, bool areOutermost)
    : interpreter_(interpreter)
    , runtime_(interpreter.GetRuntime())
    , options_(options)
    , areOutermost_(areOutermost) {}

Value TextRun::Run(std::string text, const std::string& name) {
    const auto source = std::make_shared<SourceText>(std::move(text), name);
    Parser parser(source, runtime_.Globals(), runtime_.ScopeOf(name),
                  [this](const std::string& message) { runtime_.Warn(message); });
    return options_.streamed ? RunStreamed(parser, *source) : RunWhole(parser);
}

Value TextRun::RunWhole(Parser& parser) {
    Program program = parser.ParseAll();
    Value result;
    RunProgram(program, result);
    return result;
}

Value TextRun::RunStreamed(Parser& parser, const SourceText& source) {
    Value result;
    for (;;) {
        Program program;
        try {
            if (options_.isAllowed && Refuse(parser, source)) {
                continue;
            }
            if (!parser.ParseNext(program, !options_.isAllowed)) {
                break;
            }
        } catch (Error& error) {
            if (options_.isAllowed && RefuseVariable(parser, source)) {
                continue;
            }
            if (MustThrow(error, nullptr)) {
                throw;
            }
            if (!Skip(parser, source)) {
                break;
            }
            continue;
        }
        if (options_.isAllowed && !IsAllowed(*program.statements.front())) {
            Refuse(source, program.begin, program.ends.front());
            continue;
        }
        bool isWanted = true;
        if (options_.beforeStatement) {
            int line = 0;
            int column = 0;
            source.Place(program.begin, line, column);
            isWanted = options_.beforeStatement(source.Piece(program.begin, program.ends.front()), line);
        }
        if (isWanted && !RunProgram(program, result)) {
            break;
        }
    }
    return result;
}

bool TextRun::IsAllowed(const Statement& statement) const {
    const std::string* const name = statement.WrittenOutCall();
    return name && (name->empty() || options_.isAllowed(*name));
}

bool TextRun::Refuse(Parser& parser, const SourceText& source) const {
    const std::string_view name = parser.NextName();
    const std::uint32_t begin = parser.StatementBegin();
    const char first = begin < source.Text().size() ? source.Text()[begin] : '\0';
    const bool isOther = name.empty() ? first == '$' || first == '{' : !options_.isAllowed(name);
    if (!isOther) {
        return false; // an allowed one, or not MEL
    }
    const std::size_t end = StatementEnd::Of(source.Text(), begin).position;
    if (end == source.Text().npos) {
        // Not parsed: a brace that is not closed would take everything behind it along.
        int line = 0;
        int column = 0;
        source.Place(begin, line, column);
        parser.ContinueAt(begin);
        throw Error("Syntax error: the statement has no end.", Error::Kind::Syntax, source.Name(), line,
                    column);
    }
    Refuse(source, begin, static_cast<std::uint32_t>(end));
    parser.ContinueAt(static_cast<std::uint32_t>(end));
    return true;
}

bool TextRun::RefuseVariable(Parser& parser, const SourceText& source) const {
    const StatementEnd end = StatementEnd::Of(source.Text(), parser.StatementBegin());
    if (end.position == source.Text().npos || !end.hasVariable) {
        return false;
    }
    Refuse(source, parser.StatementBegin(), static_cast<std::uint32_t>(end.position));
    parser.ContinueAt(static_cast<std::uint32_t>(end.position));
    return true;
}

void TextRun::Refuse(const SourceText& source, std::uint32_t begin, std::uint32_t end) const {
    if (options_.onRefused) {
        int line = 0;
        int column = 0;
        source.Place(begin, line, column);
        options_.onRefused(source.Piece(begin, end), line);
    }
}

bool TextRun::Skip(Parser& parser, const SourceText& source) const {
    const std::uint32_t begin = parser.StatementBegin();
    const std::uint32_t fault = std::max(begin, parser.RawPosition());
    const bool goesOn = parser.Recover();
    if (options_.afterUnreadable) {
        const auto end = goesOn ? parser.RawPosition() : static_cast<std::uint32_t>(source.Text().size());
        int line = 0;
        int column = 0;
        source.Place(begin, line, column);
        options_.afterUnreadable(source.Piece(begin, fault), source.Piece(begin, end), line);
    }
    return goesOn;
}

bool TextRun::RunProgram(const Program& program, Value& result) {
    for (const auto& procedure : program.procedures) {
        // Of two definitions of a name, the first one is valid until the second one is reached.
        runtime_.DefineFirst(procedure);
    }
    const SlotStack::Slots variables(runtime_.Slots(), static_cast<std::size_t>(program.variableCount));
    CallFrame frame{runtime_, *program.source, variables.Get()};
    for (std::size_t i = 0; i < program.statements.size(); ++i) {
        const Statement& statement = *program.statements[i];
        if (areOutermost_ && runtime_.EchoesStatements()) {
            const auto text = program.source->Piece(statement.offset, program.ends[i]);
            interpreter_.GetHost().output().Print(std::string(text) + "\n");
        }
        if (!RunStatement(statement, frame, result)) {
            return false;
        }
    }
    return true;
}

bool TextRun::RunStatement(const Statement& statement, CallFrame& frame, Value& result) {
    try {
        runtime_.CheckInterrupt();
        frame.offset = statement.offset;
        result = ExecuteStatement(statement, frame);
        return !frame.hasReturned;
    } catch (Error& error) {
        if (MustThrow(error, &frame)) {
            throw;
        }
    } catch (const std::bad_alloc&) {
        Error error(Runtime::OUT_OF_MEMORY);
        if (MustThrow(error, &frame)) {
            throw error;
        }
    }
    return true;
}

Value TextRun::ExecuteStatement(const Statement& statement, CallFrame& frame) {
    const StatementChunk chunk(interpreter_.GetHost().undo(), areOutermost_);
    if (!areOutermost_) {
        return statement.ExecuteForValue(frame);
    }
    const Runtime::WholeStatement whole(runtime_, statement.IsCall());
    return statement.ExecuteForValue(frame);
}

bool TextRun::MustThrow(Error& error, const CallFrame* frame) const {
    if (frame) {
        Runtime::Locate(error, *frame);
    }
    return error.IsInterrupt() || !options_.onError || !options_.onError(error);
}

} // namespace lightbox::mel
