#pragma once

#include "scene/Output.h"

#include <QObject>
#include <QString>

namespace lightbox {

namespace mel {
class Interpreter;
}

/// Sends the host's output to the widgets that show it. The output still goes to the terminal, too.
class MessageLog : public QObject {
    Q_OBJECT

public:
    /// Starts to listen to the host's output.
    MessageLog(Output& output, mel::Interpreter& interpreter);
    ~MessageLog() override;

    /// Runs a text that the user typed: echoes it and shows its result or error. False when it ended with an
    /// error.
    bool RunTyped(const QString& text);

Q_SIGNALS:
    /// A piece of output. Prints contain their own line breaks; all other pieces are whole lines.
    void Said(lightbox::Output::Kind kind, const QString& text);
    /// Sent with a typed text before it runs.
    void Typed(const QString& text);

private:
    Output& output_;
    mel::Interpreter& interpreter_;
    Output::Sink before_;
};

} // namespace lightbox
