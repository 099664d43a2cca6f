#pragma once

#include <QList>
#include <QString>

namespace vellix {

/// A text while it is typed, with a caret, with what an input method is composing at the caret, and with its
/// own undo and redo. Characters typed one after the other are one step, and so are characters that are
/// deleted one after the other; each paste is a step. Places count units of UTF-16.
class TypedText {
public:
    enum class Move {
        NextCharacter,
        PreviousCharacter,
        NextWord,
        PreviousWord,
        NextLine,
        PreviousLine,
        StartOfLine,
        EndOfLine,
        Start,
        End
    };

    /// The text without what is being composed.
    const QString& Get() const { return text_; }
    /// The text, with what is being composed, and the caret in it.
    QString Shown() const;
    int ShownCaret() const { return caret_ + compositionCaret_; }
    int Caret() const { return caret_; }

    /// Both insert the text at the caret, without the control characters that it cannot show. They return
    /// false if not all of it has room.
    bool Type(const QString& text);
    bool Paste(const QString& text);
    /// Deletes the character before the caret; of a letter with marks the last mark.
    void DropBefore();
    /// Deletes the character after the caret, with its marks.
    void DropAfter();
    /// Deletes `length` units, `start` units from the caret, as an input method asks.
    void Drop(int start, int length);
    void MoveCaret(Move move);

    /// Shows `text` at the caret until it is typed or replaced. `caret` is a place in it.
    void Compose(const QString& text, int caret);
    const QString& Composition() const { return composition_; }

    void Undo();
    void Redo();

    /// Room for this many units of UTF-16, as many as a recording holds.
    static constexpr int MAX_LENGTH = 2000;

private:
    enum class Edit { None, Typing, Pasting, Dropping };
    struct State {
        QString text;
        int caret = 0;
    };

    bool Insert(const QString& text, Edit edit);
    void Change(const QString& text, int caret, Edit edit);
    void Restore(QList<State>& from, QList<State>& to);
    int PlaceAfter(Move move) const;
    int PlaceInLine(int line, int column) const;

    QString text_;
    int caret_ = 0;
    QString composition_;
    int compositionCaret_ = 0;
    QList<State> before_; ///< to undo to, oldest first
    QList<State> after_;  ///< to redo to, next last
    Edit last_ = Edit::None;
};

} // namespace vellix
