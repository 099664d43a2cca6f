#include "tools/InputWorker.h"

#include "host/Settings.h"

#include <QCoreApplication>
#include <QCursor>
#include <QThread>
#include <QWidget>

#include <limits>

namespace vellix {

namespace {

constexpr unsigned long SAMPLE_PERIOD = 8; // milliseconds
constexpr int NOWHERE = std::numeric_limits<int>::max();

} // namespace

InputWorker::InputWorker(const QWidget& view, ToolType tool)
    : m_lastPosition(NOWHERE, NOWHERE)
    , m_size(Settings::GetToolSize(tool))
    , m_opacity(static_cast<float>(Settings::GetToolOpacity(tool)) / 100.0f)
    , m_hardness(static_cast<float>(Settings::GetToolHardness(tool)) / 100.0f)
    , m_pressureEnabled(Settings::IsTabletPressureEnabled(tool)) {
    SetView(view);
}

void InputWorker::SetView(const QWidget& view) {
    const QPoint corner = view.mapToGlobal(QPoint(0, 0));
    m_viewLeft = corner.x();
    m_viewTop = corner.y();
    m_viewHeight = view.height();
}

void InputWorker::Run() {
    m_running = true;
    while (m_running) {
        QCoreApplication::processEvents(); // delivers Shutdown()
        UpdatePosition();
        QThread::msleep(SAMPLE_PERIOD);
    }
}

void InputWorker::Shutdown() {
    m_running = false;
    QThread::currentThread()->exit(0);
}

void InputWorker::UpdatePosition() {
    const QPoint onScreen = QCursor::pos();
    const int x = onScreen.x() - m_viewLeft;
    const int y = (m_viewHeight - 1) - (onScreen.y() - m_viewTop) + 2;
    const QPoint position(x + 1, y);
    if (position == m_lastPosition) {
        return;
    }
    if (m_lastPosition == QPoint(NOWHERE, NOWHERE)) {
        // Two samples one pixel apart, so that a click without a move makes a dot.
        Send(QPoint(x, y));
    }
    m_lastPosition = position;
    Send(position);
}

void InputWorker::Send(const QPoint& position) {
    const float pressure = m_pressureEnabled ? Settings::tabletPressure.load() : 1.0f;
    Q_EMIT MousePositionChanged(position, m_size, m_opacity * pressure, m_hardness);
}

} // namespace vellix
