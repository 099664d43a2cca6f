#pragma once

#include "scene/Output.h"

#include <QObject>
#include <QString>

namespace lightbox {

class Host;

/// Everything the host says, for those in the window who show it. What would have been written to the
/// terminal still is.
class MessageLog : public QObject {
    Q_OBJECT

public:
    /// Listens from here on.
    explicit MessageLog(Host& host);
    ~MessageLog() override;

    /// Runs a text as one that was typed: echoes it, shows its result and its errors. False when it ended
    /// with an error.
    bool RunTyped(const QString& text);

Q_SIGNALS:
    /// A piece of history; a print has its own line breaks, anything else is whole lines.
    void Said(lightbox::Output::Kind kind, const QString& text);
    /// A line that was typed, before it runs.
    void Typed(const QString& text);

private:
    Host& host_;
    Output::Sink before_;
};

} // namespace lightbox
