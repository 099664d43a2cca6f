#pragma once

#include <cstdint>

namespace lightbox::mel {

enum class TokenKind : std::uint8_t {
    End,
    Identifier,
    Variable,
    Integer,
    Float,
    String,
    LeftParen,
    RightParen,
    LeftBrace,
    RightBrace,
    LeftBracket,
    RightBracket,
    Comma,
    Semicolon,
    Colon,
    Question,
    Dot,
    Backquote,
    Plus,
    Minus,
    Star,
    Slash,
    Percent,
    Caret,
    Not,
    PlusPlus,
    MinusMinus,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    Equal,
    NotEqual,
    And,
    Or,
    Assign,
    PlusAssign,
    MinusAssign,
    StarAssign,
    SlashAssign,
    PercentAssign,
    CaretAssign,
    VectorOpen,
    VectorClose,
    // Keywords; inside the arguments of a command they are plain words.
    If,
    Else,
    For,
    While,
    Do,
    Switch,
    Case,
    Default,
    Break,
    Continue,
    Return,
    Proc,
    Global,
    TypeInt,
    TypeFloat,
    TypeString,
    TypeVector,
    TypeMatrix,
    True,
    False,
};

/// A piece of the source text, from `begin` up to `end`.
struct Token {
    TokenKind kind = TokenKind::End;
    std::uint32_t begin = 0;
    std::uint32_t end = 0;
    /// Whether blanks, line breaks or a comment come before it.
    bool spaceBefore = false;
    /// For strings: whether it contains a backslash.
    bool hasEscapes = false;
};

} // namespace lightbox::mel
