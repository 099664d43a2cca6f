#include "mel/Parser.h"

namespace lightbox::mel {

Parser::Parser(std::shared_ptr<const SourceText> source, GlobalVariables& globals, FileScope& scope,
               std::function<void(const std::string&)> warn)
    : source_(std::move(source))
    , lexer_(*source_)
    , variables_(globals)
    , scope_(scope)
    , warn_(std::move(warn))
    , globals_(globals) {}

Program Parser::ParseAll() {
    GlobalVariables::Trial trial(globals_);
    Program program;
    program.source = source_;
    while (!lexer_.AtEnd()) {
        program.statements.push_back(ParseStatement());
        program.ends.push_back(lexer_.RawPosition());
    }
    program.variableCount = variables_.SlotCount();
    program.procedures = std::move(procedures_);
    trial.Keep();
    return program;
}

std::string_view Parser::NextName() {
    statementBegin_ = lexer_.RawPosition();
    const Token token = lexer_.Peek();
    statementBegin_ = token.begin;
    const std::string_view text = TextOf(token);
    return !text.empty() && IsNameStart(text.front()) ? text : std::string_view();
}

bool Parser::ParseNext(Program& program, bool declares) {
    GlobalVariables::Trial trial(globals_);
    program = Program();
    program.source = source_;
    procedures_.clear();
    variables_.Restart();
    statementBegin_ = lexer_.RawPosition();
    if (lexer_.AtEnd()) {
        return false;
    }
    statementBegin_ = lexer_.Position();
    program.begin = statementBegin_;
    program.statements.push_back(ParseStatement());
    program.ends.push_back(lexer_.RawPosition());
    program.variableCount = variables_.SlotCount();
    program.procedures = std::move(procedures_);
    if (declares) {
        trial.Keep();
    }
    return true;
}

bool Parser::Recover() {
    const std::string_view text = source_->Text();
    for (auto end = text.find(';', lexer_.RawPosition()); end != std::string_view::npos;
         end = text.find(';', end + 1)) {
        const std::string_view next = text.substr(end + 1, 2);
        if (next.empty() || next[0] == '\n' || next == "\r\n") {
            lexer_.MoveTo(static_cast<std::uint32_t>(end + 1));
            return true;
        }
    }
    return false;
}

void Parser::Fail(const std::string& message, std::uint32_t offset) const {
    lexer_.Fail(message, offset);
}

int Parser::NextNesting() const {
    constexpr int deepest = 500;
    if (nesting_ >= deepest) {
        Fail("Syntax error: nested too deep.", lexer_.RawPosition());
    }
    return nesting_ + 1;
}

void Parser::Unexpected() {
    // Check the character, not the token: in a command's arguments not everything is a token.
    if (lexer_.PeekCharacter() == '\0') {
        Fail("Syntax error: unexpected end of the text.", lexer_.RawPosition());
    }
    const Token token = lexer_.Peek();
    constexpr std::size_t longest = 40;
    std::string text(TextOf(token).substr(0, longest));
    text += token.end - token.begin > longest ? "..." : "";
    Fail("Syntax error: unexpected " + (token.kind == TokenKind::String ? text : "\"" + text + "\"") + ".",
         token.begin);
}

bool Parser::Accept(TokenKind kind) {
    if (!NextIs(kind)) {
        return false;
    }
    lexer_.Take();
    return true;
}

Token Parser::Expect(TokenKind kind, const char* text) {
    if (!NextIs(kind)) {
        const Token token = lexer_.Peek();
        const std::string found = token.kind == TokenKind::End ? "the end of the text"
                                  : token.kind == TokenKind::String
                                      ? "a string"
                                      : "\"" + std::string(TextOf(token)) + "\"";
        Fail(std::string("Syntax error: ") + text + " is expected before " + found + ".", token.begin);
    }
    return lexer_.Take();
}

} // namespace lightbox::mel
