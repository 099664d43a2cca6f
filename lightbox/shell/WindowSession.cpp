#include "shell/WindowSession.h"

#include "controls/Theme.h"
#include "formats/SceneFiles.h"
#include "scene/Host.h"
#include "scene/IdleQueue.h"
#include "shell/FileDrop.h"
#include "shell/Hotkeys.h"
#include "shell/MainWindow.h"
#include "shell/WindowInterface.h"
#include "timeline/TimeSliderBar.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QSurfaceFormat>
#include <QTimer>

namespace lightbox {

void WindowSession::PrepareApplication() {
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    // Whole factors, so that a pixel of a drawing is a square of the screen's: a screen of 100 dots an inch
    // is not one that wants everything 1.04 times as large. QT_SCALE_FACTOR takes any other.
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
        Qt::HighDpiScaleFactorRoundingPolicy::RoundPreferFloor);
    // A plug-in makes a texture in one view and draws it in all of them.
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
    Theme::Apply(*qApp);
    host.SetUserInterface(std::make_unique<WindowInterface>(host));
    QAbstractEventDispatcher* const dispatcher = QAbstractEventDispatcher::instance();
    connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, this, &WindowSession::Turn);
    // Timers that never let the loop sleep must not keep the host from its work.
    connect(dispatcher, &QAbstractEventDispatcher::awake, this, &WindowSession::Turn);
    MainWindow* const window = WindowInterface::Current(host);
    new FileDrop(host, *window);
    AddHotkeys(*window);
    window->Put(MainWindow::Place::Time, new TimeSliderBar(host, window));
}

int WindowSession::Run(const std::function<void()>& onceShown) {
    MainWindow* const window = WindowInterface::Current(host_);
    window->RestoreState();
    window->show();
    QTimer::singleShot(0, this, onceShown);
    const int status = QApplication::exec();
    window->SaveState();
    return host_.QuitStatus().value_or(status);
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
    // The loop is between two waits here; the work itself has to be done by it.
    if (!host_.idle().IsEmpty() && !idleIsDue_) {
        idleIsDue_ = true;
        QTimer::singleShot(0, this, [this] {
            idleIsDue_ = false;
            host_.idle().Drain();
        });
    }
}

} // namespace lightbox
