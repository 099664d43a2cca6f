#include "shell/AutoSaveTimer.h"

#include "formats/AutoSave.h"
#include "formats/SceneFiles.h"
#include "mel/Interpreter.h"
#include "scene/EventBus.h"
#include "scene/Host.h"
#include "scene/Output.h"
#include "scene/ToolContexts.h"
#include "scene/UserInterface.h"
#include "scene/View.h"

#include <QApplication>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPushButton>
#include <QTabletEvent>

#include <algorithm>
#include <exception>
#include <string>
#include <vector>

namespace lightbox {
namespace {

constexpr int TICK = 500;   ///< milliseconds
constexpr int QUIET = 1000; ///< milliseconds after the last press, release or key

} // namespace

AutoSaveTimer::AutoSaveTimer(Host& host, QObject* parent)
    : QObject(parent)
    , host_(host) {
    sinceSaved_.start();
    connect(&timer_, &QTimer::timeout, this, &AutoSaveTimer::Tick);
    timer_.start(TICK);
    QCoreApplication::instance()->installEventFilter(this);
}

bool AutoSaveTimer::eventFilter(QObject*, QEvent* event) {
    // A pen that rests over the tablet moves all the time, so only its presses count.
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
        sinceInput_.start();
        buttons_ = static_cast<QMouseEvent*>(event)->buttons();
        break;
    case QEvent::MouseMove:
        buttons_ = static_cast<QMouseEvent*>(event)->buttons();
        break;
    case QEvent::TabletPress:
    case QEvent::TabletRelease:
        sinceInput_.start();
        buttons_ = static_cast<QTabletEvent*>(event)->buttons();
        break;
    case QEvent::TabletMove:
        buttons_ = static_cast<QTabletEvent*>(event)->buttons();
        break;
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::InputMethod:
    case QEvent::Wheel:
        sinceInput_.start();
        break;
    default:
        break;
    }
    return false;
}

bool AutoSaveTimer::IsTextOpen() const {
    const UserInterface* const ui = host_.ui();
    const std::vector<View*> views = ui ? host_.ui()->Views() : std::vector<View*>();
    return std::any_of(views.begin(), views.end(),
                       [](View* view) { return view->Widget().testAttribute(Qt::WA_InputMethodEnabled); });
}

bool AutoSaveTimer::IsBusy() const {
    const bool handIsDown = buttons_ != Qt::NoButton || QGuiApplication::mouseButtons() != Qt::NoButton;
    const bool wasJustUsed = sinceInput_.isValid() && sinceInput_.elapsed() < QUIET;
    const bool isGrabbed =
        QApplication::activePopupWidget() || QWidget::mouseGrabber() || QWidget::keyboardGrabber();
    const bool isRunning = host_.interpreter().IsRunning() || host_.tools().Current().IsBusy() ||
                           host_.files().IsReading() || host_.files().IsWriting() ||
                           host_.events().Condition("playingBack");
    return handIsDown || wasJustUsed || isGrabbed || isRunning || IsTextOpen();
}

void AutoSaveTimer::Tick() {
    const AutoSave& autoSave = host_.files().autoSave();
    const AutoSaveSettings settings = autoSave.Settings();
    if (!settings.isEnabled || !autoSave.IsNeeded()) {
        sinceSaved_.start();
        return;
    }
    if (static_cast<double>(sinceSaved_.elapsed()) < settings.interval * 1000.0 || IsBusy()) {
        return;
    }
    if (settings.prompts && QApplication::activeModalWidget()) {
        return; // one question at a time
    }
    if (!settings.prompts || MayPrompt()) {
        Save();
    }
    sinceSaved_.start();
}

bool AutoSaveTimer::MayPrompt() const {
    const UserInterface* const ui = host_.ui();
    QMessageBox box(QMessageBox::Question, "Automatic Save", "Save a copy of the scene now?",
                    QMessageBox::Save | QMessageBox::Cancel, ui ? &host_.ui()->MainWindow() : nullptr);
    box.setInformativeText("The scene's own file stays as it is.");
    box.setObjectName("autoSavePrompt");
    box.button(QMessageBox::Save)->setObjectName("autoSaveNow");
    box.button(QMessageBox::Cancel)->setText("Not Now");
    return box.exec() == QMessageBox::Save;
}

void AutoSaveTimer::Save() {
    AutoSave& autoSave = host_.files().autoSave();
    try {
        autoSave.Perform();
        hasWarned_ = false;
    } catch (const std::exception& error) {
        // A full disk stays full for a while. One message is enough, and a dialog would be in the way.
        if (!hasWarned_) {
            host_.output().Warning("Automatic save: " + std::string(error.what()) +
                                   " Lightbox tries again at each interval.");
        }
        hasWarned_ = true;
    }
}

} // namespace lightbox
