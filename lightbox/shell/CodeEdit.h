#pragma once

#include <QPlainTextEdit>

namespace lightbox {

/// A text editor with line numbers. Tab indents by four spaces. Ctrl+Enter and the keypad's Enter send
/// RunAsked().
class CodeEdit : public QPlainTextEdit {
    Q_OBJECT

public:
    CodeEdit();

    /// The selected text, with line breaks; empty when nothing is selected.
    QString SelectedText() const;

Q_SIGNALS:
    void RunAsked();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void UpdateMargin();
    void PaintNumbers();

    QWidget* numbers_;
};

} // namespace lightbox
