#pragma once

#include "mel/SourceText.h"
#include "mel/Token.h"

#include <string>
#include <string_view>

namespace lightbox::mel {

/// Cuts a text into tokens, one at a time and on demand, because what a piece of text is depends on where it
/// stands: inside the arguments of a command `-name` is a flag and `|a|b.tx` a word. Tokens refer to the text
/// and copy nothing. A piece that cannot be a token throws a syntax error with its place.
class Lexer {
public:
    explicit Lexer(const SourceText& source)
        : source_(source)
        , text_(source.Text()) {}

    /// The next token as expressions and statements see it, without taking it.
    const Token& Peek();
    Token Take();

    /// The character that begins the next token, without taking it; '\0' at the end.
    char PeekCharacter();
    /// The character `ahead` bytes behind the raw position.
    char CharacterAfter(std::uint32_t ahead) const;
    /// Takes a word of a command's arguments: a name, path or number with the characters that belong to them.
    /// Call only where the next character is none of quotes, brackets, `$` or a terminator.
    Token TakeWord();

    /// True when no token is left.
    bool AtEnd() { return Peek().kind == TokenKind::End; }
    std::uint32_t Position() { return Peek().begin; }
    /// The same where the next token may be none: what has been read so far ends here.
    std::uint32_t RawPosition() const { return position_; }
    /// Begins again at an offset.
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
    /// Where the next scan begins.
    std::uint32_t position_ = 0;
    bool skippedSpace_ = false;
    bool spaceDone_ = false;
    Token token_;
    bool hasToken_ = false;
};

/// Reads a number as the language writes it ("12", ".5", "1e-3", "0x1f", with an optional sign) at the
/// beginning of a text. Returns the bytes it takes, 0 for none; an int that has no room in 32 bits becomes a
/// float.
std::size_t ScanNumberLiteral(std::string_view text, bool& isInt, int& integer, double& number);

bool IsDigit(char letter);
bool IsNameStart(char letter);
bool IsNameCharacter(char letter);

} // namespace lightbox::mel
