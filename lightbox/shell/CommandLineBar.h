#pragma once

#include "scene/Output.h"

#include <QLineEdit>
#include <QStringList>
#include <QWidget>

class QHBoxLayout;
class QLabel;

namespace lightbox {

class MessageLog;

/// A line to type MEL into. The up and down keys go through what was typed before.
class CommandLineEdit : public QLineEdit {
    Q_OBJECT

public:
    using QLineEdit::QLineEdit;

    /// Notes a line that was run, and empties the field.
    void Remember();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QStringList history_;
    int position_ = 0;
    /// What stood in the field before the history was gone through.
    QString draft_;
};

/// The bottom of the window: the command line with the last result beside it, red for an error and yellow for
/// a warning, and under both the help line.
class CommandLineBar : public QWidget {
    Q_OBJECT

public:
    CommandLineBar(MessageLog& log, QWidget* parent = nullptr);

    CommandLineEdit& Input() const { return *input_; }
    QLineEdit& ResultLine() const { return *result_; }
    void ShowHelp(const QString& text);
    QString Help() const;
    /// Puts a widget at the end of the help line.
    void AddToHelpLine(QWidget* widget);

private:
    void ShowMessage(Output::Kind kind, const QString& text);

    CommandLineEdit* input_;
    QLineEdit* result_;
    QLabel* help_;
    QHBoxLayout* helpRow_;
};

} // namespace lightbox
