#include "tools/TypedText.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace vellix {

namespace {

const QLatin1Char LINE_FEED('\n');

/// Every line break as one line feed; no control characters but these and tabs.
QString Printable(const QString& text) {
    QString lines = text;
    lines.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(QLatin1Char('\r'), LINE_FEED);
    QString printable;
    for (const QChar character : lines) {
        const bool isControl = character.category() == QChar::Other_Control;
        if (!isControl || character == LINE_FEED || character == QLatin1Char('\t')) {
            printable += character;
        }
    }
    return printable;
}

/// The next boundary from a place, or the end of the text in that direction.
int Boundary(QTextBoundaryFinder::BoundaryType type, const QString& text, int place, bool forward) {
    QTextBoundaryFinder finder(type, text);
    finder.setPosition(place);
    const int found = forward ? finder.toNextBoundary() : finder.toPreviousBoundary();
    const int end = forward ? text.size() : 0;
    return found < 0 ? end : found;
}

/// The next start of a word.
int WordStart(const QString& text, int place, bool forward) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, text);
    finder.setPosition(place);
    for (;;) {
        const int found = forward ? finder.toNextBoundary() : finder.toPreviousBoundary();
        if (found < 0) {
            return forward ? text.size() : 0;
        }
        if (finder.boundaryReasons().testFlag(QTextBoundaryFinder::StartOfItem)) {
            return found;
        }
    }
}

} // namespace

QString TypedText::Shown() const {
    return text_.left(caret_) + composition_ + text_.mid(caret_);
}

bool TypedText::Type(const QString& text) {
    return Insert(text, Edit::Typing);
}

bool TypedText::Paste(const QString& text) {
    return Insert(text, Edit::Pasting);
}

void TypedText::DropBefore() {
    // A character outside Unicode's basic plane has two units.
    const bool isPair =
        caret_ > 1 && text_.at(caret_ - 1).isLowSurrogate() && text_.at(caret_ - 2).isHighSurrogate();
    Drop(isPair ? -2 : -1, isPair ? 2 : 1);
}

void TypedText::DropAfter() {
    Drop(0, PlaceAfter(Move::NextCharacter) - caret_);
}

void TypedText::Drop(int start, int length) {
    const int from = std::min(std::max(caret_ + start, 0), text_.size());
    const int to = std::min(std::max(from + length, from), text_.size());
    if (caret_ + start >= 0 && from < to) {
        const int caret = caret_ >= to ? caret_ - (to - from) : std::min(caret_, from);
        Change(text_.left(from) + text_.mid(to), caret, Edit::Dropping);
    }
}

bool TypedText::Insert(const QString& text, Edit edit) {
    QString added = Printable(text);
    const int room = MAX_LENGTH - text_.size();
    const bool fits = added.size() <= room;
    added.truncate(room);
    if (!added.isEmpty() && added.at(added.size() - 1).isHighSurrogate()) {
        added.chop(1); // its other half has no room
    }
    if (!added.isEmpty()) {
        Change(text_.left(caret_) + added + text_.mid(caret_), caret_ + added.size(), edit);
    }
    return fits;
}

void TypedText::Change(const QString& text, int caret, Edit edit) {
    if (edit != last_ || edit == Edit::Pasting) {
        before_.append({text_, caret_});
    }
    after_.clear();
    last_ = edit;
    text_ = text;
    caret_ = caret;
}

void TypedText::MoveCaret(Move move) {
    caret_ = PlaceAfter(move);
    last_ = Edit::None; // what is typed here is another step
}

int TypedText::PlaceAfter(Move move) const {
    const int line = text_.left(caret_).count(LINE_FEED);
    const int column = caret_ - PlaceInLine(line, 0);
    switch (move) {
    case Move::NextCharacter:
        return Boundary(QTextBoundaryFinder::Grapheme, text_, caret_, true);
    case Move::PreviousCharacter:
        return Boundary(QTextBoundaryFinder::Grapheme, text_, caret_, false);
    case Move::NextWord:
        return WordStart(text_, caret_, true);
    case Move::PreviousWord:
        return WordStart(text_, caret_, false);
    case Move::NextLine:
        return line < text_.count(LINE_FEED) ? PlaceInLine(line + 1, column) : text_.size();
    case Move::PreviousLine:
        return line > 0 ? PlaceInLine(line - 1, column) : 0;
    case Move::StartOfLine:
        return PlaceInLine(line, 0);
    case Move::EndOfLine:
        return PlaceInLine(line, text_.size());
    case Move::Start:
        return 0;
    case Move::End:
        return text_.size();
    }
    return caret_;
}

/// The place in a line of the text, at the line's end if it is shorter. Never in the middle of a character.
int TypedText::PlaceInLine(int line, int column) const {
    int start = 0;
    for (int i = 0; i < line; ++i) {
        start = text_.indexOf(LINE_FEED, start) + 1;
    }
    const int end = text_.indexOf(LINE_FEED, start);
    const int place = std::min(start + column, end < 0 ? text_.size() : end);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text_);
    finder.setPosition(place);
    return finder.isAtBoundary() ? place : Boundary(QTextBoundaryFinder::Grapheme, text_, place, false);
}

void TypedText::Compose(const QString& text, int caret) {
    composition_ = Printable(text);
    compositionCaret_ = std::min(std::max(caret, 0), composition_.size());
}

void TypedText::Undo() {
    Restore(before_, after_);
}

void TypedText::Redo() {
    Restore(after_, before_);
}

void TypedText::Restore(QList<State>& from, QList<State>& to) {
    if (!from.isEmpty()) {
        to.append({text_, caret_});
        const State state = from.takeLast();
        text_ = state.text;
        caret_ = state.caret;
        last_ = Edit::None;
    }
}

} // namespace vellix
