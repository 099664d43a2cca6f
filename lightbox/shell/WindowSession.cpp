#include "shell/WindowSession.h"

#include "formats/AutoSave.h"
#include "formats/SceneFiles.h"
#include "scene/Host.h"
#include "scene/IdleQueue.h"
#include "scene/Output.h"
#include "scene/ToolContexts.h"
#include "shell/AutoSaveTimer.h"
#include "shell/CrashRecovery.h"
#include "shell/EndSignal.h"
#include "shell/FileDrop.h"
#include "shell/Hotkeys.h"
#include "shell/MainWindow.h"
#include "shell/ThemeCommand.h"
#include "shell/WindowInterface.h"
#include "timeline/TimeSliderBar.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QSurfaceFormat>
#include <QTimer>

#include <exception>

namespace lightbox {

namespace {

constexpr int RETRY = 50; ///< milliseconds

} // namespace

void WindowSession::PrepareApplication() {
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    // Use integer scale factors, so that a drawing's pixel is a square of screen pixels. Otherwise a screen
    // with 100 dpi would get a factor of 1.04. QT_SCALE_FACTOR still allows any factor.
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
        Qt::HighDpiScaleFactorRoundingPolicy::RoundPreferFloor);
    // Share textures, since a plug-in makes a texture in one view and draws it in all views.
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QSurfaceFormat format;
    format.setVersion(2, 1);
    format.setProfile(QSurfaceFormat::CompatibilityProfile);
    format.setDepthBufferSize(24);
    format.setStencilBufferSize(8);
    QSurfaceFormat::setDefaultFormat(format);
}

WindowSession::WindowSession(Host& host)
    : host_(host) {
    ApplyChosenTheme(host);
    host.SetUserInterface(std::make_unique<WindowInterface>(host));
    QAbstractEventDispatcher* const dispatcher = QAbstractEventDispatcher::instance();
    connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, this, &WindowSession::Turn);
    // `awake` covers timers that never let the loop block.
    connect(dispatcher, &QAbstractEventDispatcher::awake, this, &WindowSession::Turn);
    MainWindow* const window = WindowInterface::Current(host);
    new FileDrop(host, *window);
    new AutoSaveTimer(host, window);
    connect(new EndSignal(window), &EndSignal::Raised, this, &WindowSession::EndUnasked);
    AddHotkeys(*window);
    window->Put(MainWindow::Place::Time, new TimeSliderBar(host, window));
}

int WindowSession::Run(const std::function<void()>& onceShown) {
    MainWindow* const window = WindowInterface::Current(host_);
    window->RestoreState();
    window->show();
    QTimer::singleShot(0, this, [this, window, onceShown] {
        onceShown();
        if (!host_.QuitStatus()) {
            CrashRecovery::Ask(host_.files(), host_.output(), window);
        }
    });
    const int status = QApplication::exec();
    window->SaveState();
    return host_.QuitStatus().value_or(status);
}

void WindowSession::EndUnasked() {
    if (host_.QuitStatus()) {
        return;
    }
    QWidget* const popup = QApplication::activePopupWidget();
    QWidget* const over = popup ? popup : QApplication::activeModalWidget();
    const bool isClosing = over && over->close();
    SceneFiles& files = host_.files();
    if (isClosing || files.IsReading() || files.IsWriting() || host_.tools().Current().IsBusy()) {
        QTimer::singleShot(RETRY, this, &WindowSession::EndUnasked);
        return;
    }
    host_.tools().SetCurrent(ToolContexts::SELECTION_TOOL); // ends a stroke and text that is open
    try {
        files.autoSave().LeaveForNextStart();
    } catch (const std::exception& error) {
        host_.output().Error(std::string("Lightbox does not end, as the unsaved changes would be lost: ") +
                             error.what());
        return;
    }
    host_.RequestQuit(0);
}

void WindowSession::Turn() {
    if (host_.QuitStatus()) {
        QCoreApplication::exit(*host_.QuitStatus());
        return;
    }
    MainWindow* const window = WindowInterface::Current(host_);
    if (window->isWindowModified() != host_.files().IsModified()) {
        window->setWindowModified(host_.files().IsModified());
    }
    // This is called from the event dispatcher, so let the event loop do the idle work.
    if (!host_.idle().IsEmpty() && !idleIsDue_) {
        idleIsDue_ = true;
        QTimer::singleShot(0, this, [this] {
            idleIsDue_ = false;
            const auto* const interface = dynamic_cast<WindowInterface*>(host_.ui());
            if (!interface || !interface->IsComputing()) { // else the next turn comes to it
                host_.idle().Drain();
            }
        });
    }
}

} // namespace lightbox
