#include "mel/Lexer.h"

#include "mel/Error.h"

#include <charconv>
#include <cstring>
#include <limits>
#include <unordered_map>

namespace lightbox::mel {

namespace {

const std::unordered_map<std::string_view, TokenKind>& Keywords() {
    static const std::unordered_map<std::string_view, TokenKind> keywords = {
        {"if", TokenKind::If},
        {"else", TokenKind::Else},
        {"for", TokenKind::For},
        {"while", TokenKind::While},
        {"do", TokenKind::Do},
        {"switch", TokenKind::Switch},
        {"case", TokenKind::Case},
        {"default", TokenKind::Default},
        {"break", TokenKind::Break},
        {"continue", TokenKind::Continue},
        {"return", TokenKind::Return},
        {"proc", TokenKind::Proc},
        {"global", TokenKind::Global},
        {"int", TokenKind::TypeInt},
        {"float", TokenKind::TypeFloat},
        {"string", TokenKind::TypeString},
        {"vector", TokenKind::TypeVector},
        {"matrix", TokenKind::TypeMatrix},
        {"true", TokenKind::True},
        {"on", TokenKind::True},
        {"yes", TokenKind::True},
        {"false", TokenKind::False},
        {"off", TokenKind::False},
        {"no", TokenKind::False},
    };
    return keywords;
}

bool IsSpace(char letter) {
    return letter == ' ' || letter == '\t' || letter == '\n' || letter == '\r' || letter == '\f' ||
           letter == '\v';
}

/// Characters of names, paths, components and wildcards. Non-ASCII names consist of bytes above 127.
bool IsWordCharacter(char letter) {
    return IsNameCharacter(letter) || static_cast<unsigned char>(letter) >= 0x80 ||
           (letter != '\0' && std::strchr(".|:*?#@~", letter) != nullptr);
}

struct OperatorSign {
    const char* text;
    TokenKind kind;
};

/// Longest first.
constexpr OperatorSign OPERATORS[] = {
    {"<<", TokenKind::VectorOpen},  {">>", TokenKind::VectorClose}, {"++", TokenKind::PlusPlus},
    {"--", TokenKind::MinusMinus},  {"<=", TokenKind::LessEqual},   {">=", TokenKind::GreaterEqual},
    {"==", TokenKind::Equal},       {"!=", TokenKind::NotEqual},    {"&&", TokenKind::And},
    {"||", TokenKind::Or},          {"+=", TokenKind::PlusAssign},  {"-=", TokenKind::MinusAssign},
    {"*=", TokenKind::StarAssign},  {"/=", TokenKind::SlashAssign}, {"%=", TokenKind::PercentAssign},
    {"^=", TokenKind::CaretAssign}, {"(", TokenKind::LeftParen},    {")", TokenKind::RightParen},
    {"{", TokenKind::LeftBrace},    {"}", TokenKind::RightBrace},   {"[", TokenKind::LeftBracket},
    {"]", TokenKind::RightBracket}, {",", TokenKind::Comma},        {";", TokenKind::Semicolon},
    {":", TokenKind::Colon},        {"?", TokenKind::Question},     {".", TokenKind::Dot},
    {"`", TokenKind::Backquote},    {"+", TokenKind::Plus},         {"-", TokenKind::Minus},
    {"*", TokenKind::Star},         {"/", TokenKind::Slash},        {"%", TokenKind::Percent},
    {"^", TokenKind::Caret},        {"!", TokenKind::Not},          {"<", TokenKind::Less},
    {">", TokenKind::Greater},      {"=", TokenKind::Assign},
};

} // namespace

bool IsDigit(char letter) {
    return letter >= '0' && letter <= '9';
}

bool IsNameStart(char letter) {
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') || letter == '_';
}

bool IsNameCharacter(char letter) {
    return IsNameStart(letter) || IsDigit(letter);
}

std::size_t ScanNumberLiteral(std::string_view text, bool& isInt, int& integer, double& number) {
    const bool negative = !text.empty() && text[0] == '-';
    const std::size_t sign = !text.empty() && (text[0] == '-' || text[0] == '+') ? 1 : 0;
    const char* const begin = text.data() + sign;
    const char* const end = text.data() + text.size();
    const auto length = [&text](const char* stop) { return static_cast<std::size_t>(stop - text.data()); };
    if (begin == end || !(IsDigit(*begin) || (*begin == '.' && begin + 1 < end && IsDigit(begin[1])))) {
        return 0;
    }
    if (*begin == '0' && begin + 1 < end && (begin[1] == 'x' || begin[1] == 'X')) {
        unsigned bits = 0;
        const auto read = std::from_chars(begin + 2, end, bits, 16);
        if (read.ec == std::errc()) {
            isInt = true;
            integer = static_cast<int>(negative ? 0u - bits : bits);
            return length(read.ptr);
        }
    }
    long long whole = 0;
    const auto digits = std::from_chars(begin, end, whole);
    const auto read = std::from_chars(begin, end, number);
    if (read.ec == std::errc::result_out_of_range) {
        number = std::numeric_limits<double>::infinity();
    }
    number = negative ? -number : number;
    whole = negative ? -whole : whole;
    isInt = digits.ec == std::errc() && digits.ptr == read.ptr && whole >= std::numeric_limits<int>::min() &&
            whole <= std::numeric_limits<int>::max();
    integer = isInt ? static_cast<int>(whole) : 0;
    return length(read.ptr);
}

void Lexer::Fail(const std::string& message, std::uint32_t offset) const {
    int line = 0;
    int column = 0;
    source_.Place(offset, line, column);
    throw Error(message, Error::Kind::Syntax, source_.Name(), line, column);
}

const Token& Lexer::Peek() {
    if (!hasToken_) {
        Scan();
        hasToken_ = true;
    }
    return token_;
}

Token Lexer::Take() {
    const Token token = Peek();
    MoveTo(token.end);
    return token;
}

void Lexer::MoveTo(std::uint32_t offset) {
    position_ = offset;
    hasToken_ = false;
    spaceDone_ = false;
}

char Lexer::PeekCharacter() {
    SkipSpace();
    return At(position_);
}

char Lexer::CharacterAfter(std::uint32_t ahead) const {
    return At(static_cast<std::size_t>(position_) + ahead);
}

void Lexer::SkipSpace() {
    if (spaceDone_) {
        return;
    }
    const std::uint32_t begin = position_;
    while (position_ < text_.size()) {
        const char letter = text_[position_];
        if (IsSpace(letter)) {
            ++position_;
        } else if (letter == '/' && (At(position_ + 1u) == '/' || At(position_ + 1u) == '*')) {
            SkipComment();
        } else if (letter == '\\' && (At(position_ + 1u) == '\n' || At(position_ + 1u) == '\r')) {
            position_ += 2;
        } else {
            break;
        }
    }
    skippedSpace_ = position_ != begin || begin == 0;
    spaceDone_ = true;
}

void Lexer::SkipComment() {
    const bool toLineEnd = text_[position_ + 1] == '/';
    const auto end = toLineEnd ? text_.find('\n', position_) : text_.find("*/", position_ + 2u);
    if (end == std::string_view::npos) {
        if (!toLineEnd) {
            Fail("Syntax error: the comment has no end.", position_);
        }
        position_ = static_cast<std::uint32_t>(text_.size());
        return;
    }
    position_ = static_cast<std::uint32_t>(end + (toLineEnd ? 1 : 2));
}

void Lexer::Scan() {
    SkipSpace();
    token_ = Token();
    token_.begin = position_;
    token_.end = position_;
    token_.spaceBefore = skippedSpace_;
    if (position_ >= text_.size()) {
        return;
    }
    const char letter = text_[position_];
    if (letter == '"') {
        ScanString();
    } else if (IsNameStart(letter) || letter == '$') {
        ScanName();
    } else if (IsDigit(letter) || (letter == '.' && IsDigit(At(position_ + 1u)))) {
        ScanNumber();
    } else {
        ScanOperator();
    }
}

void Lexer::ScanString() {
    // Drawings are stored as literals of many kilobytes, so memchr searches the text and reads every byte
    // once.
    const std::uint32_t begin = position_;
    std::size_t from = begin + 1u;
    auto quote = text_.find('"', from);
    while (quote != std::string_view::npos) {
        const std::string_view piece = text_.substr(from, quote - from);
        const auto backslash = piece.find('\\');
        if (piece.substr(0, backslash).find('\n') != std::string_view::npos) {
            break;
        }
        if (backslash == std::string_view::npos) {
            token_.kind = TokenKind::String;
            token_.end = static_cast<std::uint32_t>(quote + 1);
            return;
        }
        token_.hasEscapes = true;
        from += backslash + 2;
        if (At(from - 1) == '\r' && At(from) == '\n') {
            ++from;
        }
        if (from > quote) {
            quote = text_.find('"', from);
        }
    }
    Fail("Syntax error: the string has no closing quote.", begin);
}

void Lexer::ScanNumber() {
    bool isInt = false;
    int integer = 0;
    double number = 0.0;
    const auto length = ScanNumberLiteral(text_.substr(position_), isInt, integer, number);
    token_.kind = isInt ? TokenKind::Integer : TokenKind::Float;
    token_.end = static_cast<std::uint32_t>(position_ + length);
}

void Lexer::ScanName() {
    std::uint32_t end = position_ + 1;
    while (IsNameCharacter(At(end))) {
        ++end;
    }
    token_.end = end;
    if (text_[position_] == '$') {
        if (end == position_ + 1 || IsDigit(text_[position_ + 1])) {
            Fail("Syntax error: a name is missing after \"$\".", position_);
        }
        token_.kind = TokenKind::Variable;
        return;
    }
    const auto keyword = Keywords().find(text_.substr(position_, end - position_));
    token_.kind = keyword == Keywords().end() ? TokenKind::Identifier : keyword->second;
}

void Lexer::ScanOperator() {
    for (const OperatorSign& candidate : OPERATORS) {
        const std::size_t length = std::strlen(candidate.text);
        if (text_.compare(position_, length, candidate.text) == 0) {
            token_.kind = candidate.kind;
            token_.end = static_cast<std::uint32_t>(position_ + length);
            return;
        }
    }
    Fail("Syntax error: unexpected character.", position_);
}

bool Lexer::IsNumberAt(std::uint32_t offset) const {
    bool isInt = false;
    int integer = 0;
    double number = 0.0;
    const auto length = ScanNumberLiteral(text_.substr(offset), isInt, integer, number);
    return length > 0 && !IsWordCharacter(At(offset + length)) && At(offset + length) != '[';
}

std::uint32_t Lexer::WordEnd(std::uint32_t offset) const {
    while (offset < text_.size()) {
        if (IsWordCharacter(text_[offset])) {
            ++offset;
        } else if (text_[offset] == '[') {
            // A plain index or range belongs to the word. The parser reads one that has to be computed.
            std::size_t close = offset + 1u;
            while (IsWordCharacter(At(close)) || At(close) == '-') {
                ++close;
            }
            if (At(close) != ']') {
                break;
            }
            offset = static_cast<std::uint32_t>(close + 1);
        } else {
            break;
        }
    }
    return offset;
}

Token Lexer::TakeWord() {
    SkipSpace();
    Token word;
    word.begin = position_;
    word.spaceBefore = skippedSpace_;
    word.kind = TokenKind::Identifier;
    const char letter = At(position_);
    if (IsNumberAt(position_)) {
        bool isInt = false;
        int integer = 0;
        double number = 0.0;
        const auto length = ScanNumberLiteral(text_.substr(position_), isInt, integer, number);
        word.kind = isInt ? TokenKind::Integer : TokenKind::Float;
        word.end = static_cast<std::uint32_t>(position_ + length);
    } else {
        word.end = WordEnd(position_ + (letter == '-' ? 1 : 0));
        if (word.end == word.begin + (letter == '-' ? 1u : 0u)) {
            Fail(letter == '\0' ? "Syntax error: unexpected end of the text."
                                : "Syntax error: unexpected character.",
                 position_);
        }
    }
    MoveTo(word.end);
    return word;
}

} // namespace lightbox::mel
