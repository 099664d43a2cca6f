#include "shell/EndSignal.h"

#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace lightbox {

namespace {

/// The end to write to; -1 while nobody listens.
volatile std::sig_atomic_t g_raised = -1;

} // namespace

EndSignal::EndSignal(QObject* parent)
    : QObject(parent) {
    int ends[2] = {-1, -1};
    if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) {
        return; // then such a signal only interrupts the script that runs
    }
    auto* const notifier = new QSocketNotifier(ends[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, from = ends[0]] {
        std::array<char, 64> bytes{};
        while (::read(from, bytes.data(), bytes.size()) > 0) {
        }
        Q_EMIT Raised();
    });
    g_raised = ends[1]; // both stay open: a signal may come until the process ends
}

EndSignal::~EndSignal() {
    g_raised = -1;
}

void EndSignal::Raise() {
    const int end = g_raised;
    if (end >= 0) {
        const ssize_t written = ::write(end, "", 1);
        static_cast<void>(written); // when the pipe is full, the event loop knows already
    }
}

} // namespace lightbox
