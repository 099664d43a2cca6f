#pragma once

#include <QObject>

namespace lightbox {

/// Brings the signals that ask the program to end, such as SIGTERM, into the event loop.
class EndSignal : public QObject {
    Q_OBJECT
public:
    explicit EndSignal(QObject* parent);
    ~EndSignal() override;

    /// For the handler of such a signal, which may run at any moment.
    static void Raise();

Q_SIGNALS:
    void Raised();
};

} // namespace lightbox
