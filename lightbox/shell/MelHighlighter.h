#pragma once

#include <QSyntaxHighlighter>

namespace lightbox {

namespace mel {
class Interpreter;
}

/// Colours MEL: keywords, commands that there are, variables, flags, numbers, strings and comments.
class MelHighlighter : public QSyntaxHighlighter {
    Q_OBJECT

public:
    MelHighlighter(QTextDocument* document, const mel::Interpreter& interpreter);

protected:
    void highlightBlock(const QString& text) override;

private:
    /// Colours what begins at `start`; answers where the next piece begins.
    int Highlight(const QString& text, int start);
    int EndOfComment(const QString& text, int start);
    void HighlightWord(const QString& word, int start);

    const mel::Interpreter& interpreter_;
};

} // namespace lightbox
