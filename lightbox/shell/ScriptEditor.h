#pragma once

#include "scene/Output.h"

#include <QWidget>

class QPlainTextEdit;

namespace lightbox {

class CodeEdit;
class MessageLog;

namespace mel {
class Interpreter;
}

/// The script editor: the output history above, the input below. Ctrl+Enter runs the selected text, or all.
class ScriptEditor : public QWidget {
    Q_OBJECT

public:
    ScriptEditor(Output& output, mel::Interpreter& interpreter, MessageLog& log, QWidget* parent);

    CodeEdit& Input() const { return *input_; }
    QPlainTextEdit& History() const { return *history_; }
    /// Runs the selected text, or all of it.
    void Run();
    void ClearHistory();

private:
    void Append(Output::Kind kind, const QString& text);
    void AppendColoured(const QString& text, const QColor& color);
    QWidget* MakeButtons();
    void OpenScript();
    void SaveScript();

    Output& output_;
    MessageLog& log_;
    QPlainTextEdit* history_;
    CodeEdit* input_;
};

/// The text colour of messages of a kind; an invalid colour stands for the default.
QColor MessageColor(Output::Kind kind);

} // namespace lightbox
