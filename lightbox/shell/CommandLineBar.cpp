#include "shell/CommandLineBar.h"

#include "shell/MessageLog.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QVBoxLayout>

namespace lightbox {

namespace {

constexpr int MAX_REMEMBERED = 500;

/// Colours the line by a style sheet, since the application's style sheet overrides palettes.
void SetBackground(QLineEdit& line, Output::Kind kind) {
    QString colors;
    if (kind == Output::Kind::Error) {
        colors = QStringLiteral("background: #c44c44; color: white;");
    } else if (kind == Output::Kind::Warning) {
        colors = QStringLiteral("background: #d8b44c; color: #202020;");
    }
    if (line.styleSheet() != colors) {
        line.setStyleSheet(colors);
    }
}

} // namespace

void CommandLineEdit::Remember() {
    if (history_.isEmpty() || history_.back() != text()) {
        history_.append(text());
    }
    if (history_.size() > MAX_REMEMBERED) {
        history_.removeFirst();
    }
    position_ = static_cast<int>(history_.size());
    clear();
}

void CommandLineEdit::keyPressEvent(QKeyEvent* event) {
    const bool isUp = event->key() == Qt::Key_Up;
    if (!isUp && event->key() != Qt::Key_Down) {
        QLineEdit::keyPressEvent(event);
        return;
    }
    const auto count = static_cast<int>(history_.size());
    if (position_ >= count) {
        draft_ = text();
    }
    position_ = qBound(0, position_ + (isUp ? -1 : 1), count);
    setText(position_ < count ? history_.at(position_) : draft_);
}

CommandLineBar::CommandLineBar(MessageLog& log, QWidget* parent)
    : QWidget(parent)
    , input_(new CommandLineEdit)
    , result_(new QLineEdit)
    , help_(new QLabel)
    , helpRow_(new QHBoxLayout) {
    setObjectName("commandLineBar");
    input_->setObjectName("commandLine");
    input_->setPlaceholderText(tr("MEL"));
    result_->setObjectName("commandResult");
    help_->setObjectName("helpLine");
    help_->setTextFormat(Qt::PlainText);
    // Reserve the height of one line, and ignore the width, so that help texts never resize the views.
    help_->setText(" ");
    help_->setMinimumHeight(help_->sizeHint().height());
    help_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    help_->clear();
    result_->setReadOnly(true);
    result_->setFocusPolicy(Qt::ClickFocus);
    const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    input_->setFont(fixed);
    result_->setFont(fixed);
    auto* const row = new QHBoxLayout;
    row->setSpacing(4);
    row->addWidget(input_, 1);
    row->addWidget(result_, 1);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(6, 3, 6, 3);
    column->setSpacing(2);
    column->addLayout(row);
    helpRow_->addWidget(help_, 1);
    column->addLayout(helpRow_);
    connect(input_, &QLineEdit::returnPressed, this, [this, &log] {
        const QString text = input_->text();
        if (text.trimmed().isEmpty()) {
            // Enter on an empty line returns the keyboard focus to the window.
            input_->clearFocus();
            return;
        }
        input_->Remember();
        ShowMessage(Output::Kind::Info, QString());
        log.RunTyped(text);
    });
    connect(&log, &MessageLog::Said, this, &CommandLineBar::ShowMessage);
}

void CommandLineBar::ShowMessage(Output::Kind kind, const QString& text) {
    const QString line = text.trimmed().section(QLatin1Char('\n'), -1);
    if (line.isEmpty() && !text.isEmpty()) {
        return;
    }
    SetBackground(*result_, kind);
    result_->setText(line);
    result_->setToolTip(text.trimmed().left(2000));
    result_->setCursorPosition(0);
}

void CommandLineBar::ShowHelp(const QString& text) {
    help_->setText(text);
}

QString CommandLineBar::Help() const {
    return help_->text();
}

void CommandLineBar::AddToHelpLine(QWidget* widget) {
    helpRow_->addWidget(widget);
}

} // namespace lightbox
