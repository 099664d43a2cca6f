#include "tools/StrokeGuard.h"

#include <QEvent>
#include <QMouseEvent>

namespace vellix {

StrokeGuard::StrokeGuard(std::function<void()> interrupted)
    : m_interrupted(std::move(interrupted)) {
    m_due.setSingleShot(true);
    m_due.setInterval(0);
    connect(&m_due, &QTimer::timeout, this, [this] {
        Release();
        m_interrupted();
    });
}

void StrokeGuard::Watch(QWidget* view) {
    Release();
    if (view == nullptr) {
        return;
    }
    m_view = view;
    m_window = view->window();
    view->installEventFilter(this);
    connect(view, &QObject::destroyed, &m_due, static_cast<void (QTimer::*)()>(&QTimer::start));
    if (m_window != view) {
        m_window->installEventFilter(this);
    }
}

void StrokeGuard::Release() {
    m_due.stop();
    for (const QPointer<QWidget>& widget : {m_view, m_window}) {
        if (widget != nullptr) {
            widget->removeEventFilter(this);
        }
    }
    if (m_view != nullptr) {
        disconnect(m_view, nullptr, &m_due, nullptr);
    }
    m_view.clear();
    m_window.clear();
}

bool StrokeGuard::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::Hide:
    case QEvent::Close:
    case QEvent::WindowBlocked:
        m_due.start();
        break;
    case QEvent::MouseMove:
        // Only the view counts: other widgets of the window may see moves with no button held.
        if (watched == m_view && static_cast<QMouseEvent*>(event)->buttons() == Qt::NoButton) {
            m_due.start();
        }
        break;
    default:
        break;
    }
    return false;
}

} // namespace vellix
