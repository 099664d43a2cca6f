#pragma once

#include "scene/Output.h"

#include <QLineEdit>
#include <QStringList>
#include <QWidget>

class QHBoxLayout;
class QLabel;

namespace lightbox {

class MessageLog;

/// An input field for MEL. The up and down keys go through the history of typed lines.
class CommandLineEdit : public QLineEdit {
    Q_OBJECT

public:
    using QLineEdit::QLineEdit;

    /// Adds the text to the history and clears the field.
    void Remember();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QStringList history_;
    int position_ = 0;
    /// The text that was in the field before the user went into the history.
    QString draft_;
};

/// The bar at the bottom of the window: the command line, the last result beside it (red for an error, yellow
/// for a warning), and the help line below.
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
