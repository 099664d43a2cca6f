#include "tools/ViewEventFilter.h"

#include "host/Guarded.h"

#include <maya/M3dView.h>
#include <maya/MQtUtil.h>

#include <QCursor>
#include <QEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QWidget>

namespace vellix {

ViewEventFilter::ViewEventFilter(QObject* parent)
    : QObject(parent) {}

ViewEventFilter::~ViewEventFilter() = default;

void ViewEventFilter::UpdateActiveViewEventFilter() {
    MStatus status;
    const M3dView view = M3dView::active3dView(&status);
    QWidget* const widget = status ? view.widget() : nullptr;
    if (!widget || IsWatchedView(widget)) {
        return;
    }
    widget->installEventFilter(this);
    views_.removeAll(QPointer<QWidget>()); // drop closed views
    views_.append(widget);
}

void ViewEventFilter::InstallEventFilters() {
    RemoveEventFilters();
    backslashHeld_ = false;
    mainWindow_ = MQtUtil::mainWindow();
    if (mainWindow_) {
        mainWindow_->installEventFilter(this);
    }
    UpdateActiveViewEventFilter();
}

void ViewEventFilter::RemoveEventFilters() {
    if (mainWindow_) {
        mainWindow_->removeEventFilter(this);
    }
    mainWindow_.clear();
    for (const QPointer<QWidget>& view : views_) {
        if (view) {
            view->removeEventFilter(this);
        }
    }
    views_.clear();
}

bool ViewEventFilter::IsMainWindow(const QObject* watched) const {
    return watched != nullptr && watched == mainWindow_;
}

bool ViewEventFilter::IsWatchedView(const QObject* watched) const {
    for (const QPointer<QWidget>& view : views_) {
        if (watched && watched == view) {
            return true;
        }
    }
    return false;
}

void ViewEventFilter::TrackBackslash(const QKeyEvent& event) {
    // Auto-repeat sends release and press events for a key that is still held.
    if (event.key() == Qt::Key_Backslash && !event.isAutoRepeat()) {
        backslashHeld_ = event.type() == QEvent::KeyPress;
    }
}

bool ViewEventFilter::IsBackslashHeld() const {
    return backslashHeld_;
}

void ViewEventFilter::ForgetHeldKeys() {
    backslashHeld_ = false;
}

bool ViewEventFilter::IsPlainRightPress(const QMouseEvent& event) {
    const bool isAlone = (event.buttons() & ~Qt::RightButton) == 0;
    return QGuiApplication::keyboardModifiers() == Qt::NoModifier && event.button() == Qt::RightButton &&
           isAlone && event.type() == QEvent::MouseButtonPress;
}

void ViewEventFilter::ShowMenu(QMenu* menu) {
    const QPointer<QMenu> shown(menu);
    shown->exec(QCursor::pos());
    delete shown;
}

bool ViewEventFilter::eventFilter(QObject* watched, QEvent* event) {
    bool isConsumed = false;
    RunGuarded("Handling the input", [&] { isConsumed = ProcessEvent(watched, event); });
    return isConsumed;
}

bool ViewEventFilter::ProcessEvent(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::WindowDeactivate && IsMainWindow(watched)) {
        ForgetHeldKeys();
    }
    return false;
}

} // namespace vellix
