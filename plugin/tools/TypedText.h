#pragma once

#include <QString>
#include <QStringList>

namespace vellix {

/// A text while it is typed, with its own undo and redo. Characters typed one after the other are one step,
/// and so are characters that are deleted one after the other; each paste is a step.
class TypedText {
public:
    const QString& Get() const { return text_; }

    /// Both append the text without the control characters that it cannot show. They return false if not all
    /// of it has room.
    bool Type(const QString& text);
    bool Paste(const QString& text);
    /// Deletes the last character.
    void DropLast();
    void Undo();
    void Redo();

    /// Room for this many units of UTF-16, as many as a recording holds.
    static constexpr int MAX_LENGTH = 2000;

private:
    enum class Edit { None, Typing, Pasting, Dropping };

    bool Append(const QString& text, Edit edit);
    void Change(const QString& text, Edit edit);

    QString text_;
    QStringList before_; ///< to undo to, oldest first
    QStringList after_;  ///< to redo to, next last
    Edit last_ = Edit::None;
};

} // namespace vellix
