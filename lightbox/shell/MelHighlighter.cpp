#include "shell/MelHighlighter.h"

#include "controls/Theme.h"
#include "mel/CommandRegistry.h"
#include "mel/Interpreter.h"

#include <QGuiApplication>
#include <QSet>

namespace lightbox {

namespace {

const QColor KEYWORD_COLOR(0x8c, 0xb4, 0xe0);
const QColor COMMAND_COLOR(0x74, 0xc0, 0xb4);
const QColor VARIABLE_COLOR(0xd8, 0xb9, 0x7e);
const QColor FLAG_COLOR(0xb5, 0xa0, 0xd0);
const QColor NUMBER_COLOR(0xc8, 0xc8, 0x88);
const QColor TEXT_COLOR(0xa4, 0xc0, 0x7c);
const QColor COMMENT_COLOR(0x88, 0x8c, 0x90);

/// The state of a text block that ends inside a multi-line comment.
constexpr int IN_COMMENT = 1;

bool IsKeyword(const QString& word) {
    static const QSet<QString> words = {
        "if",     "else",     "for",    "in",     "while", "do",  "switch", "case",   "default",
        "break",  "continue", "return", "global", "proc",  "int", "float",  "string", "vector",
        "matrix", "true",     "false",  "on",     "off",   "yes", "no",     "catch",  "catchQuiet"};
    return words.contains(word);
}

bool IsWord(QChar letter) {
    return letter.isLetterOrNumber() || letter == QLatin1Char('_');
}

int EndOfWord(const QString& text, int start) {
    int end = start;
    while (end < text.size() && IsWord(text.at(end))) {
        ++end;
    }
    return end;
}

int EndOfString(const QString& text, int start) {
    int end = start + 1;
    while (end < text.size() && text.at(end) != QLatin1Char('"')) {
        end += text.at(end) == QLatin1Char('\\') ? 2 : 1;
    }
    return qMin(end + 1, static_cast<int>(text.size()));
}

} // namespace

MelHighlighter::MelHighlighter(QTextDocument* document, const mel::Interpreter& interpreter)
    : QSyntaxHighlighter(document)
    , interpreter_(interpreter) {
    connect(qGuiApp, &QGuiApplication::paletteChanged, this, &QSyntaxHighlighter::rehighlight);
}

void MelHighlighter::highlightBlock(const QString& text) {
    setCurrentBlockState(0);
    int position = previousBlockState() == IN_COMMENT ? EndOfComment(text, 0) : 0;
    while (position < text.size()) {
        position = Highlight(text, position);
    }
}

int MelHighlighter::EndOfComment(const QString& text, int start) {
    const int close = text.indexOf(QLatin1String("*/"), start);
    const int end = close < 0 ? static_cast<int>(text.size()) : close + 2;
    setFormat(start, end - start, Theme::Word(COMMENT_COLOR));
    setCurrentBlockState(close < 0 ? IN_COMMENT : 0);
    return end;
}

int MelHighlighter::Highlight(const QString& text, int start) {
    const QChar letter = text.at(start);
    const QChar next = start + 1 < text.size() ? text.at(start + 1) : QChar();
    if (letter == QLatin1Char('/') && next == QLatin1Char('/')) {
        setFormat(start, static_cast<int>(text.size()) - start, Theme::Word(COMMENT_COLOR));
        return static_cast<int>(text.size());
    }
    if (letter == QLatin1Char('/') && next == QLatin1Char('*')) {
        return EndOfComment(text, start);
    }
    if (letter == QLatin1Char('"')) {
        const int end = EndOfString(text, start);
        setFormat(start, end - start, Theme::Word(TEXT_COLOR));
        return end;
    }
    const bool isVariable = letter == QLatin1Char('$');
    const bool isBehindWord =
        start > 0 && (IsWord(text.at(start - 1)) || text.at(start - 1) == QLatin1Char(')'));
    const bool isFlag = letter == QLatin1Char('-') && next.isLetter() && !isBehindWord;
    if (isVariable || isFlag) {
        const int end = EndOfWord(text, start + 1);
        setFormat(start, end - start, Theme::Word(isVariable ? VARIABLE_COLOR : FLAG_COLOR));
        return end;
    }
    if (IsWord(letter)) {
        const int end = EndOfWord(text, start);
        HighlightWord(text.mid(start, end - start), start);
        return end;
    }
    return start + 1;
}

void MelHighlighter::HighlightWord(const QString& word, int start) {
    const auto length = static_cast<int>(word.size());
    const std::string name = word.toStdString();
    if (word.at(0).isDigit()) {
        setFormat(start, length, Theme::Word(NUMBER_COLOR));
    } else if (IsKeyword(word)) {
        setFormat(start, length, Theme::Word(KEYWORD_COLOR));
    } else if (interpreter_.Commands().Find(name) || interpreter_.HasProcedure(name)) {
        setFormat(start, length, Theme::Word(COMMAND_COLOR));
    }
}

} // namespace lightbox
