#include "mel/SourceText.h"

#include "mel/Error.h"
#include "mel/Interpreter.h"

#include <QFile>

#include <algorithm>
#include <iterator>
#include <limits>

namespace lightbox::mel {

namespace {

char EscapedCharacter(char letter) {
    switch (letter) {
    case 'n':
        return '\n';
    case 't':
        return '\t';
    case 'r':
        return '\r';
    default:
        return letter;
    }
}

} // namespace

SourceText::SourceText(std::string text, std::string name)
    : name_(std::move(name))
    , text_(std::move(text)) {
    if (text_.size() >= std::numeric_limits<std::uint32_t>::max()) {
        throw Error("The text is too long.");
    }
}

std::string SourceText::ReadFile(const std::string& path) {
    QFile file(QString::fromStdString(path));
    if (!file.open(QIODevice::ReadOnly)) {
        throw Error("Cannot open file \"" + path + "\" for reading: " + file.errorString().toStdString());
    }
    std::string text(static_cast<std::size_t>(file.size()), '\0');
    const qint64 count = file.read(&text[0], static_cast<qint64>(text.size()));
    if (count < 0) {
        throw Error("Cannot read file \"" + path + "\": " + file.errorString().toStdString());
    }
    text.resize(static_cast<std::size_t>(count));
    return text;
}

void SourceText::Place(std::uint32_t offset, int& line, int& column) const {
    offset = static_cast<std::uint32_t>(std::min<std::size_t>(offset, text_.size()));
    while (searched_ < offset) {
        const auto lineBreak = text_.find('\n', searched_);
        searched_ = static_cast<std::uint32_t>(std::min(lineBreak, text_.size() - 1) + 1);
        if (lineBreak != std::string::npos) {
            lineBegins_.push_back(searched_);
        }
    }
    const auto next = std::upper_bound(lineBegins_.begin(), lineBegins_.end(), offset);
    line = static_cast<int>(next - lineBegins_.begin());
    column = static_cast<int>(1 + offset - *std::prev(next));
}

std::string Unescaped(std::string_view literal) {
    std::string text;
    text.reserve(literal.size());
    while (!literal.empty()) {
        const auto backslash = literal.find('\\');
        text.append(literal.substr(0, backslash));
        if (backslash == std::string_view::npos || backslash + 1 == literal.size()) {
            break;
        }
        const char letter = literal[backslash + 1];
        literal.remove_prefix(backslash + 2);
        if (letter == '\r' && !literal.empty() && literal[0] == '\n') {
            literal.remove_prefix(1);
        } else if (letter != '\n') {
            text += EscapedCharacter(letter);
        }
    }
    return text;
}

} // namespace lightbox::mel
