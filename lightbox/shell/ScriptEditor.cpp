#include "shell/ScriptEditor.h"

#include "controls/Theme.h"
#include "mel/Interpreter.h"
#include "scene/WholeFile.h"
#include "shell/CodeEdit.h"
#include "shell/MelHighlighter.h"
#include "shell/MessageLog.h"

#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QSplitter>
#include <QTextBlock>
#include <QToolButton>
#include <QVBoxLayout>

namespace lightbox {

namespace {

/// The maximum number of lines in the history.
constexpr int MAX_LINES = 20000;

QToolButton* TextButton(const QString& text, const QString& tip) {
    auto* const button = new QToolButton;
    button->setText(text);
    button->setToolTip(tip);
    button->setAutoRaise(true);
    return button;
}

} // namespace

QColor MessageColor(Output::Kind kind) {
    switch (kind) {
    case Output::Kind::Error:
        return Theme::Word({0xe8, 0x7c, 0x72});
    case Output::Kind::Warning:
        return Theme::Word({0xe0, 0xc0, 0x6c});
    case Output::Kind::Result:
    case Output::Kind::Info:
        return Theme::FaintText();
    case Output::Kind::Print:
    case Output::Kind::Progress:
        break;
    }
    return {};
}

ScriptEditor::ScriptEditor(Output& output, mel::Interpreter& interpreter, MessageLog& log, QWidget* parent)
    : QWidget(parent, Qt::Window)
    , output_(output)
    , log_(log)
    , history_(new QPlainTextEdit)
    , input_(new CodeEdit) {
    setObjectName("scriptEditorWindow");
    setWindowTitle(tr("Script Editor"));
    history_->setObjectName("scriptEditorHistory");
    history_->setReadOnly(true);
    history_->setMaximumBlockCount(MAX_LINES);
    history_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    input_->setObjectName("scriptEditorInput");
    setFocusProxy(input_);
    new MelHighlighter(input_->document(), interpreter);
    auto* const panes = new QSplitter(Qt::Vertical);
    panes->addWidget(history_);
    panes->addWidget(input_);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(4, 4, 4, 4);
    column->addWidget(MakeButtons());
    column->addWidget(panes, 1);
    resize(760, 560);
    connect(&log, &MessageLog::Said, this, &ScriptEditor::Append);
    connect(&log, &MessageLog::Typed, this, [this](const QString& text) {
        AppendColoured(text.endsWith(QLatin1Char('\n')) ? text : text + QLatin1Char('\n'), QColor());
    });
    connect(input_, &CodeEdit::RunAsked, this, &ScriptEditor::Run);
}

QWidget* ScriptEditor::MakeButtons() {
    auto* const row = new QWidget;
    auto* const box = new QHBoxLayout(row);
    box->setContentsMargins(0, 0, 0, 0);
    QToolButton* const run = TextButton(tr("Run"), tr("Run the selected text, or all (Ctrl+Enter)"));
    run->setObjectName("scriptEditorRun");
    QToolButton* const open = TextButton(tr("Open..."), tr("Load a script into the editor"));
    QToolButton* const save = TextButton(tr("Save..."), tr("Save the editor's text"));
    QToolButton* const clear = TextButton(tr("Clear History"), tr("Forget what was said"));
    QToolButton* const clearInput = TextButton(tr("Clear Input"), tr("Empty the editor"));
    for (QToolButton* const button : {run, open, save, clear, clearInput}) {
        box->addWidget(button);
    }
    box->addStretch(1);
    connect(run, &QToolButton::clicked, this, &ScriptEditor::Run);
    connect(open, &QToolButton::clicked, this, &ScriptEditor::OpenScript);
    connect(save, &QToolButton::clicked, this, &ScriptEditor::SaveScript);
    connect(clear, &QToolButton::clicked, this, &ScriptEditor::ClearHistory);
    connect(clearInput, &QToolButton::clicked, input_, &QPlainTextEdit::clear);
    return row;
}

void ScriptEditor::Run() {
    const QString selected = input_->SelectedText();
    const QString text = selected.isEmpty() ? input_->toPlainText() : selected;
    if (!text.trimmed().isEmpty()) {
        log_.RunTyped(text);
    }
}

void ScriptEditor::ClearHistory() {
    history_->clear();
}

void ScriptEditor::Append(Output::Kind kind, const QString& text) {
    AppendColoured(text, MessageColor(kind));
}

void ScriptEditor::AppendColoured(const QString& text, const QColor& color) {
    QTextCursor cursor(history_->document());
    cursor.movePosition(QTextCursor::End);
    QTextCharFormat format;
    if (color.isValid()) {
        format.setForeground(color);
    }
    cursor.insertText(text, format);
    history_->setTextCursor(cursor);
    history_->ensureCursorVisible();
}

void ScriptEditor::OpenScript() {
    const QString path =
        QFileDialog::getOpenFileName(this, tr("Open Script"), QString(), tr("MEL (*.mel);;All Files (*)"),
                                     nullptr, QFileDialog::DontUseNativeDialog);
    if (path.isEmpty()) {
        return;
    }
    QFile file(path);
    constexpr qint64 largest = 16 << 20;
    if (!file.open(QIODevice::ReadOnly) || file.size() > largest) {
        output_.Error("The script \"" + path.toStdString() + "\" cannot be read.");
        return;
    }
    input_->setPlainText(QString::fromUtf8(file.readAll()));
}

void ScriptEditor::SaveScript() {
    const QString path = QFileDialog::getSaveFileName(this, tr("Save Script"), QString(), tr("MEL (*.mel)"),
                                                      nullptr, QFileDialog::DontUseNativeDialog);
    if (path.isEmpty()) {
        return;
    }
    const QString file =
        QFileInfo(path).fileName().contains(QLatin1Char('.')) ? path : path + QStringLiteral(".mel");
    const std::string fault = WholeFile::Write(file.toStdString(), input_->toPlainText().toStdString());
    if (!fault.empty()) {
        output_.Error("The script \"" + file.toStdString() + "\" cannot be written: " + fault + ".");
    }
}

} // namespace lightbox
