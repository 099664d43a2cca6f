#include "host/SettingsWriter.h"

#include "host/Guarded.h"
#include "host/Settings.h"

#include <memory>
#include <new>

namespace vellix {

namespace {

constexpr int WRITING_DELAY_MS = 1000;

std::unique_ptr<SettingsWriter> g_settingsWriter;

} // namespace

SettingsWriter::~SettingsWriter() = default;

/// Without memory for the timer the next change tries again, or the end.
void SettingsWriter::Schedule() noexcept {
    if (!Settings::guiEnabled) {
        return;
    }
    try {
        if (!g_settingsWriter) {
            g_settingsWriter.reset(new SettingsWriter);
        }
        g_settingsWriter->timer_.start(WRITING_DELAY_MS, g_settingsWriter.get());
    } catch (const std::bad_alloc&) {
        g_settingsWriter.reset();
    }
}

void SettingsWriter::Stop() {
    g_settingsWriter.reset();
}

void SettingsWriter::timerEvent(QTimerEvent*) {
    timer_.stop();
    RunGuarded("Writing the settings", Settings::WriteUserConfig);
}

} // namespace vellix
