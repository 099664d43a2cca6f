// The main program: parses the command line, runs the host, and returns the exit status.

#include "app/CommandLine.h"
#include "app/Demo.h"
#include "app/LightboxHost.h"
#include "app/LogFile.h"
#include "app/PluginManager.h"
#include "formats/FileError.h"
#include "formats/SceneFiles.h"
#include "mel/Interpreter.h"
#include "scene/IdleQueue.h"
#include "scene/Output.h"
#include "shell/CrashRecovery.h"
#include "shell/EndSignal.h"
#include "shell/Registration.h"
#include "shell/WindowSession.h"

#include <QApplication>
#include <QDir>
#include <QStandardPaths>

#include <algorithm>
#include <alloca.h>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <new>
#include <sys/mman.h>
#include <sys/resource.h>

namespace {

using lightbox::CommandLine;
using lightbox::Host;
using lightbox::LightboxHost;
using lightbox::Output;
using lightbox::SceneFiles;
using lightbox::mel::Interpreter;

constexpr int FAILURE = 1;
const char* const OUT_OF_MEMORY =
    "lightbox: There is not enough memory to go on. The files on the disk are whole.\n";

/// Has the stack grow now to what scripts may use of it, and more, which takes address space but hardly any
/// memory. A stack that has to grow when there is none left ends the program without a word. Returns false
/// when there is none now.
[[gnu::noinline]] bool ClaimStack() {
    constexpr rlim_t most = rlim_t{5} << 20;
    rlimit limit{};
    if (getrlimit(RLIMIT_STACK, &limit) != 0) {
        return true;
    }
    const rlim_t size = std::min(most, limit.rlim_cur / 8 * 5);
    void* const asMuch = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (asMuch == MAP_FAILED) {
        return false;
    }
    munmap(asMuch, size);
    auto* const end = static_cast<volatile char*>(alloca(size));
    *end = 0;
    return true;
}

/// Ends the program where a lack of memory cannot be told otherwise. Files are whole at every moment.
[[noreturn]] void OnTerminate() {
    try {
        if (const std::exception_ptr exception = std::current_exception()) {
            std::rethrow_exception(exception);
        }
    } catch (const std::bad_alloc&) {
        std::fputs(OUT_OF_MEMORY, stderr);
        std::_Exit(FAILURE);
    } catch (...) {
    }
    std::abort();
}

Interpreter* g_interpreter = nullptr;

/// Ctrl+C ends the running script with an error, so that plug-ins can still write their settings, and then
/// the session of a window.
extern "C" void OnInterrupt(int) {
    if (g_interpreter) {
        g_interpreter->Interrupt();
    }
    lightbox::EndSignal::Raise();
}

void WatchSignals(Interpreter& interpreter) {
    g_interpreter = &interpreter;
    std::signal(SIGINT, OnInterrupt);
    std::signal(SIGTERM, OnInterrupt);
#ifdef SIGPIPE
    // When the reader of our output closes the pipe, drop the output and continue.
    std::signal(SIGPIPE, SIG_IGN);
#endif
#ifdef SIGXFSZ
    // A file that reaches the size limit of the session is a failed write, not the end of the program.
    std::signal(SIGXFSZ, SIG_IGN);
#endif
}

const char* const NO_DISPLAY =
    "lightbox: There is no display to open a window on. With -batch it runs scripts without one.\n";

/// True while Qt starts. What it lacks then, such as memory for its plug-in, ends the program.
bool g_isStarting = false;
/// True while Qt looks for a display. Qt ends the program when there is none.
bool g_isLookingForDisplay = false;

void OnQtMessage(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (g_isLookingForDisplay && type == QtFatalMsg) {
        std::fputs(NO_DISPLAY, stderr);
        std::_Exit(FAILURE);
    }
    if (g_isLookingForDisplay && (message.startsWith("could not connect to display") ||
                                  message.endsWith("even though it was found."))) {
        return;
    }
    // Hide Qt's warning about a missing runtime folder in sessions without a login; it is harmless.
    if (!message.startsWith("QStandardPaths: XDG_RUNTIME_DIR not set")) {
        std::fprintf(stderr, "%s\n", message.toLocal8Bit().constData());
    }
    if (g_isStarting && type == QtFatalMsg) {
        std::_Exit(FAILURE);
    }
}

std::string PrefsFolder(const CommandLine& line) {
    QString folder = QString::fromStdString(line.prefsFolder);
    if (folder.isEmpty()) {
        folder = qEnvironmentVariable("LIGHTBOX_APP_DIR");
    }
    if (folder.isEmpty()) {
        folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + "/lightbox";
    }
    return QDir::cleanPath(QDir(folder).absolutePath()).toStdString();
}

/// Starts the log in the preferences folder; warns when the folder cannot be written.
void KeepLog(Output& output, const CommandLine& line) {
    const std::string folder = PrefsFolder(line);
    const auto logFile = std::make_shared<lightbox::LogFile>(QString::fromStdString(folder));
    if (!logFile->IsOpen()) {
        output.Warning("The folder \"" + folder +
                       "\" cannot be written to: neither preferences nor the log are kept. Name another "
                       "one with -prefs.");
    }
    logFile->Write(QString("Lightbox %1 started in \"%2\": %3")
                       .arg(LIGHTBOX_VERSION, QDir::currentPath(), line.asGiven));
    output.SetLog(
        [logFile](lightbox::Output::Kind kind, const std::string& text) { logFile->Write(kind, text); });
}

void OpenScene(SceneFiles& files, Output& output, const std::string& path) {
    try {
        files.Open(path, true);
    } catch (const lightbox::FileError& error) {
        output.Error(error.what());
    }
}

/// Runs one script or command, and then all idle work that it queued.
void RunStep(Host& host, const CommandLine::Step& step) {
    try {
        if (step.kind == CommandLine::Step::Kind::Script) {
            host.interpreter().ExecuteFile(step.text);
        } else {
            host.interpreter().Execute(step.text);
        }
    } catch (const lightbox::mel::Error& error) {
        if (!host.QuitStatus()) {
            host.interpreter().Report(error);
        }
    }
    while (!host.QuitStatus() && host.idle().Drain() > 0) {
    }
}

/// Runs in batch mode; the first error ends the run. Returns the exit status.
int RunBatch(const CommandLine& line) {
    LightboxHost host({true, PrefsFolder(line)});
    KeepLog(host.output(), line);
    lightbox::RegisterWindowCommands(host.interpreter().Commands(), nullptr, nullptr);
    WatchSignals(host.interpreter());
    host.plugins().SetLoadsOnDemand(line.autoloadPlugins);
    if (line.autoloadPlugins) {
        host.plugins().Autoload();
    }
    lightbox::CrashRecovery::Report(host.files(), host.output());
    const auto mustStop = [&host] { return host.QuitStatus() || host.output().ErrorCount() > 0; };
    if (!line.sceneFile.empty()) {
        OpenScene(host.files(), host.output(), line.sceneFile);
    }
    for (const CommandLine::Step& step : line.steps) {
        if (mustStop()) {
            break;
        }
        RunStep(host, step);
    }
    const int status = host.QuitStatus().value_or(host.output().ErrorCount() > 0 ? FAILURE : 0);
    std::fflush(stdout);
    return status;
}

/// Runs with a window, which stays open after errors. Returns the exit status.
int RunWindow(const CommandLine& line) {
    LightboxHost host({false, PrefsFolder(line)});
    KeepLog(host.output(), line);
    WatchSignals(host.interpreter());
    host.plugins().SetLoadsOnDemand(line.autoloadPlugins);
    lightbox::WindowSession session(host);
    return session.Run([&] {
        if (line.autoloadPlugins) {
            host.plugins().Autoload();
        }
        if (!line.sceneFile.empty()) {
            OpenScene(host.files(), host.output(), line.sceneFile);
        }
        for (const CommandLine::Step& step : line.steps) {
            if (host.QuitStatus()) {
                break;
            }
            RunStep(host, step);
        }
    });
}

} // namespace

int main(int argc, char** argv) {
    std::set_terminate(OnTerminate);
    if (!ClaimStack()) {
        std::fputs(OUT_OF_MEMORY, stderr);
        return FAILURE;
    }
    QStringList arguments;
    for (int i = 1; i < argc; ++i) {
        arguments.append(QString::fromLocal8Bit(argv[i]));
    }
    CommandLine line = CommandLine::Parse(arguments);
    if (!line.error.empty()) {
        std::fprintf(stderr, "lightbox: %s\n", line.error.c_str());
        return FAILURE;
    }
    if (line.help) {
        std::fputs(CommandLine::HelpText(), stdout);
        return 0;
    }
    if (line.version) {
        std::printf("lightbox %s\n", LIGHTBOX_VERSION);
        return 0;
    }
    if (line.batch && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    if (!line.batch) {
        lightbox::WindowSession::PrepareApplication();
    }
    qInstallMessageHandler(OnQtMessage);
    // Hide the arguments from Qt. Qt's own options, such as "-style", were rejected above.
    int qtArgumentCount = 1;
    g_isStarting = true;
    g_isLookingForDisplay = !line.batch;
    QApplication application(qtArgumentCount, argv);
    g_isStarting = g_isLookingForDisplay = false;
    // Qt's platforms without a screen cannot draw the viewports.
    const QString platform = QGuiApplication::platformName();
    if (!line.batch && (platform == "offscreen" || platform == "minimal")) {
        std::fputs(NO_DISPLAY, stderr);
        return FAILURE;
    }
    QApplication::setApplicationName("Lightbox");
    QApplication::setApplicationVersion(LIGHTBOX_VERSION);
    QGuiApplication::setDesktopFileName("lightbox");
    if (!line.demoFolder.empty()) {
        lightbox::Demo::Prepare(line);
        if (!line.error.empty()) {
            std::fprintf(stderr, "lightbox: %s\n", line.error.c_str());
            return FAILURE;
        }
    }
    return line.batch ? RunBatch(line) : RunWindow(line);
}
