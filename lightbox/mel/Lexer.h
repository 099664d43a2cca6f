#pragma once

#include "mel/SourceText.h"
#include "mel/Token.h"

#include <string>
#include <string_view>

namespace lightbox::mel {

/// Splits a text into tokens, one at a time and on demand, because the meaning of a character depends on its
/// context: inside the arguments of a command, `-name` is a flag and `|a|b.tx` a word. Tokens refer to the
/// text and copy nothing. Text that is no token throws a syntax error with its location.
class Lexer {
public:
    explicit Lexer(const SourceText& source)
        : source_(source)
        , text_(source.Text()) {}

    /// The next token for expressions and statements, without taking it.
    const Token& Peek();
    Token Take();

    /// The first character of the next token, without taking it; '\0' at the end.
    char PeekCharacter();
    /// The character `ahead` bytes after RawPosition().
    char CharacterAfter(std::uint32_t ahead) const;
    /// Takes a word of a command's arguments: a name, path or number with its characters. Must not be called
    /// before a quote, a bracket, `$` or a terminator.
    Token TakeWord();

    /// Whether the text is at its end.
    bool AtEnd() { return Peek().kind == TokenKind::End; }
    std::uint32_t Position() { return Peek().begin; }
    /// The end of what has been read so far; also valid where no token follows.
    std::uint32_t RawPosition() const { return position_; }
    /// Continues at another offset.
    void MoveTo(std::uint32_t offset);

    std::string_view TextOf(const Token& token) const { return source_.Piece(token.begin, token.end); }
    [[noreturn]] void Fail(const std::string& message, std::uint32_t offset) const;

private:
    void SkipSpace();
    void SkipComment();
    void Scan();
    void ScanString();
    void ScanNumber();
    void ScanName();
    void ScanOperator();
    bool IsNumberAt(std::uint32_t offset) const;
    std::uint32_t WordEnd(std::uint32_t offset) const;
    char At(std::size_t offset) const { return offset < text_.size() ? text_[offset] : '\0'; }

    const SourceText& source_;
    std::string_view text_;
    /// Start of the next scan.
    std::uint32_t position_ = 0;
    bool skippedSpace_ = false;
    bool spaceDone_ = false;
    Token token_;
    bool hasToken_ = false;
};

/// Reads a number literal ("12", ".5", "1e-3", "0x1f", with an optional sign) at the start of a text. Returns
/// its length in bytes, 0 for none. An int that does not fit in 32 bits becomes a float.
std::size_t ScanNumberLiteral(std::string_view text, bool& isInt, int& integer, double& number);

bool IsDigit(char letter);
bool IsNameStart(char letter);
bool IsNameCharacter(char letter);

} // namespace lightbox::mel
