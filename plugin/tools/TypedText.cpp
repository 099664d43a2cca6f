#include "tools/TypedText.h"

namespace vellix {

namespace {

/// Every line break as one line feed; no control characters but these and tabs.
QString Printable(const QString& text) {
    QString lines = text;
    lines.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(QLatin1Char('\r'), QLatin1Char('\n'));
    QString printable;
    for (const QChar character : lines) {
        const bool isControl = character.category() == QChar::Other_Control;
        if (!isControl || character == QLatin1Char('\n') || character == QLatin1Char('\t')) {
            printable += character;
        }
    }
    return printable;
}

/// Drops the last character: two units of the text when it lies outside Unicode's basic plane.
QString WithoutLast(const QString& text) {
    const bool isPair = text.size() > 1 && text.at(text.size() - 1).isLowSurrogate() &&
                        text.at(text.size() - 2).isHighSurrogate();
    return text.left(text.size() - (isPair ? 2 : 1));
}

} // namespace

bool TypedText::Type(const QString& text) {
    return Append(text, Edit::Typing);
}

bool TypedText::Paste(const QString& text) {
    return Append(text, Edit::Pasting);
}

void TypedText::DropLast() {
    if (!text_.isEmpty()) {
        Change(WithoutLast(text_), Edit::Dropping);
    }
}

bool TypedText::Append(const QString& text, Edit edit) {
    QString added = Printable(text);
    const int room = MAX_LENGTH - text_.size();
    const bool fits = added.size() <= room;
    added.truncate(room);
    if (!added.isEmpty() && added.at(added.size() - 1).isHighSurrogate()) {
        added.chop(1); // its other half has no room
    }
    if (!added.isEmpty()) {
        Change(text_ + added, edit);
    }
    return fits;
}

void TypedText::Change(const QString& text, Edit edit) {
    if (edit != last_ || edit == Edit::Pasting) {
        before_.append(text_);
    }
    after_.clear();
    last_ = edit;
    text_ = text;
}

void TypedText::Undo() {
    if (!before_.isEmpty()) {
        after_.append(text_);
        text_ = before_.takeLast();
        last_ = Edit::None;
    }
}

void TypedText::Redo() {
    if (!after_.isEmpty()) {
        before_.append(text_);
        text_ = after_.takeLast();
        last_ = Edit::None;
    }
}

} // namespace vellix
