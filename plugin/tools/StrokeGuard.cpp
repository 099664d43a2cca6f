#include "tools/StrokeGuard.h"

#include "host/Guarded.h"
#include "tools/EventClock.h"
#include "tools/ThreadManager.h"

#include <QEvent>
#include <QMouseEvent>

namespace vellix {

StrokeGuard::StrokeGuard(std::function<void()> interrupted)
    : interrupted_(std::move(interrupted)) {
    due_.setSingleShot(true);
    due_.setInterval(0);
    connect(&due_, &QTimer::timeout, this, [this] {
        Release();
        interrupted_();
    });
}

void StrokeGuard::Watch(QWidget* view) {
    Release();
    if (!view) {
        return;
    }
    view_ = view;
    window_ = view->window();
    view->installEventFilter(this);
    const auto start = static_cast<void (QTimer::*)()>(&QTimer::start);
    connect(view, &QObject::destroyed, &due_, start);
    connect(ThreadManager::GetInstance(), &ThreadManager::ViewChanged, &due_, start);
    if (window_ != view) {
        window_->installEventFilter(this);
    }
}

void StrokeGuard::Release() {
    due_.stop();
    hasEnd_ = false;
    disconnect(ThreadManager::GetInstance(), nullptr, &due_, nullptr);
    for (const QPointer<QWidget>& widget : {view_, window_}) {
        if (widget) {
            widget->removeEventFilter(this);
        }
    }
    if (view_) {
        disconnect(view_, nullptr, &due_, nullptr);
    }
    view_.clear();
    window_.clear();
}

void StrokeGuard::Interrupt() {
    RunGuarded("Ending the stroke", [this] { due_.start(); });
}

bool StrokeGuard::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::Hide:
    case QEvent::Close:
    case QEvent::WindowBlocked:
        Interrupt();
        break;
    case QEvent::MouseButtonRelease: {
        const auto* const release = static_cast<QMouseEvent*>(event);
        if (watched == view_ && release->button() == Qt::LeftButton) {
            hasEnd_ = true;
            end_ = release->globalPos();
            endTime_ = EventClock::TimeOf(release->timestamp());
        }
        break;
    }
    case QEvent::MouseMove:
        // Only the view counts: other widgets of the window may see moves with no button held.
        if (watched == view_ && static_cast<QMouseEvent*>(event)->buttons() == Qt::NoButton) {
            Interrupt();
        }
        break;
    default:
        break;
    }
    return false;
}

} // namespace vellix
