#pragma once

#include "scene/Output.h"

#include <QWidget>

class QPlainTextEdit;

namespace lightbox {

class CodeEdit;
class Host;
class MessageLog;

/// The script editor: the output history above, the input below. Ctrl+Enter runs the selected text, or all.
class ScriptEditor : public QWidget {
    Q_OBJECT

public:
    ScriptEditor(Host& host, MessageLog& log, QWidget* parent);

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

    Host& host_;
    MessageLog& log_;
    QPlainTextEdit* history_;
    CodeEdit* input_;
};

/// The text colour of messages of a kind; an invalid colour stands for the default.
QColor MessageColor(Output::Kind kind);

} // namespace lightbox
