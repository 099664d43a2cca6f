#pragma once

#include <QSyntaxHighlighter>

namespace lightbox {

namespace mel {
class Interpreter;
}

/// Colours MEL: keywords, existing commands, variables, flags, numbers, strings and comments.
class MelHighlighter : public QSyntaxHighlighter {
    Q_OBJECT

public:
    MelHighlighter(QTextDocument* document, const mel::Interpreter& interpreter);

protected:
    void highlightBlock(const QString& text) override;

private:
    /// Colours the token at `start` and returns the start of the next one.
    int Highlight(const QString& text, int start);
    int EndOfComment(const QString& text, int start);
    void HighlightWord(const QString& word, int start);

    const mel::Interpreter& interpreter_;
};

} // namespace lightbox
