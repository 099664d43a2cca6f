// The program: reads its command line, runs the host, and ends with a status that says how it went.

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
#include "shell/Registration.h"
#include "shell/WindowSession.h"

#include <QApplication>
#include <QDir>
#include <QStandardPaths>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace {

using lightbox::CommandLine;
using lightbox::Host;
using lightbox::LightboxHost;

constexpr int FAILURE = 1;

lightbox::mel::Interpreter* g_interpreter = nullptr;

/// Ctrl+C ends the running script, as an error would, so that plug-ins still get to write their settings.
extern "C" void OnInterrupt(int) {
    if (g_interpreter) {
        g_interpreter->Interrupt();
    }
}

void WatchSignals(Host& host) {
    g_interpreter = &host.interpreter();
    std::signal(SIGINT, OnInterrupt);
    std::signal(SIGTERM, OnInterrupt);
#ifdef SIGPIPE
    // Whoever read our output has gone; what is left to say is lost, and the work goes on.
    std::signal(SIGPIPE, SIG_IGN);
#endif
}

const char* const NO_DISPLAY =
    "lightbox: There is no display to open a window on. With -batch it runs scripts without one.\n";

/// True until Qt has found a display, which ends the program when there is none.
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
    // Qt remarks on every start that a session without a login has no runtime folder, which means nothing
    // here.
    if (!message.startsWith("QStandardPaths: XDG_RUNTIME_DIR not set")) {
        std::fprintf(stderr, "%s\n", message.toLocal8Bit().constData());
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

/// From here on everything is logged in the preferences folder.
void KeepLog(Host& host, const CommandLine& line) {
    const std::string folder = PrefsFolder(line);
    const auto logFile = std::make_shared<lightbox::LogFile>(QString::fromStdString(folder));
    if (!logFile->IsOpen()) {
        host.output().Warning(
            "The folder \"" + folder +
            "\" cannot be written to: neither preferences nor the log are kept. Name another "
            "one with -prefs.");
    }
    logFile->Write(QString("Lightbox %1 started in \"%2\": %3")
                       .arg(LIGHTBOX_VERSION, QDir::currentPath(), line.asGiven));
    host.output().SetLog(
        [logFile](lightbox::Output::Kind kind, const std::string& text) { logFile->Write(kind, text); });
}

void OpenScene(Host& host, const std::string& path) {
    try {
        host.files().Open(path, true);
    } catch (const lightbox::FileError& error) {
        host.output().Error(error.what());
    }
}

/// One script or command, and then what it left to be done when idle.
void RunStep(Host& host, const CommandLine::Step& step) {
    try {
        if (step.kind == CommandLine::Step::Kind::Script) {
            host.interpreter().ExecuteFile(step.text);
        } else {
            host.interpreter().Execute(step.text);
        }
    } catch (const lightbox::mel::Error& error) {
        if (!host.QuitStatus()) {
            host.output().Error(error.Described());
        }
    }
    while (!host.QuitStatus() && host.idle().Drain() > 0) {
    }
}

/// The batch run: the first error ends it.
int RunBatch(const CommandLine& line) {
    LightboxHost host({true, PrefsFolder(line)});
    KeepLog(host, line);
    lightbox::RegisterWindowCommands(host, nullptr, nullptr);
    WatchSignals(host);
    host.plugins().SetLoadsOnDemand(line.autoloadPlugins);
    if (line.autoloadPlugins) {
        host.plugins().Autoload();
    }
    const auto mustStop = [&host] { return host.QuitStatus() || host.output().ErrorCount() > 0; };
    if (!line.sceneFile.empty()) {
        OpenScene(host, line.sceneFile);
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

/// The run with a window: what goes wrong is shown, and the window stays.
int RunWindow(const CommandLine& line) {
    LightboxHost host({false, PrefsFolder(line)});
    KeepLog(host, line);
    WatchSignals(host);
    host.plugins().SetLoadsOnDemand(line.autoloadPlugins);
    lightbox::WindowSession session(host);
    return session.Run([&] {
        if (line.autoloadPlugins) {
            host.plugins().Autoload();
        }
        if (!line.sceneFile.empty()) {
            OpenScene(host, line.sceneFile);
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
    // Our own options are not Qt's: "-style" or "-platform" were refused above.
    int qtArgumentCount = 1;
    g_isLookingForDisplay = !line.batch;
    QApplication application(qtArgumentCount, argv);
    g_isLookingForDisplay = false;
    // Viewports cannot be drawn on Qt's platforms without a screen, and nobody would see them.
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
