#include "tools/InputWorker.h"

#include "host/Settings.h"

#include <QCoreApplication>
#include <QCursor>
#include <QThread>
#include <QWidget>

#include <limits>
#include <new>

namespace vellix {

namespace {

constexpr unsigned long SAMPLE_PERIOD = 8; // milliseconds
constexpr int NOWHERE = std::numeric_limits<int>::max();

} // namespace

InputWorker::InputWorker(const QWidget& view, ToolType tool)
    : lastPosition_(NOWHERE, NOWHERE)
    , size_(Settings::GetToolSize(tool))
    , opacity_(static_cast<float>(Settings::GetToolOpacity(tool)) / 100.0f)
    , hardness_(static_cast<float>(Settings::GetToolHardness(tool)) / 100.0f)
    , pressureEnabled_(Settings::IsTabletPressureEnabled(tool)) {
    SetView(view);
}

void InputWorker::SetView(const QWidget& view) {
    const QPoint corner = view.mapToGlobal(QPoint(0, 0));
    viewLeft_ = corner.x();
    viewTop_ = corner.y();
    viewHeight_ = view.height();
}

void InputWorker::Run() {
    running_ = true;
    while (running_) {
        QCoreApplication::processEvents(); // delivers Shutdown()
        try {
            UpdatePosition();
        } catch (const std::bad_alloc&) {
            // the next round tries again
        }
        QThread::msleep(SAMPLE_PERIOD);
    }
}

void InputWorker::Shutdown() {
    running_ = false;
    QThread::currentThread()->exit(0);
}

void InputWorker::UpdatePosition() {
    const QPoint onScreen = QCursor::pos();
    const int x = onScreen.x() - viewLeft_;
    const int y = (viewHeight_ - 1) - (onScreen.y() - viewTop_) + 2;
    const QPoint position(x + 1, y);
    if (position == lastPosition_) {
        return;
    }
    if (lastPosition_ == QPoint(NOWHERE, NOWHERE)) {
        // Two samples one pixel apart, so that a click without a move makes a dot.
        Send(QPoint(x, y));
    }
    Send(position);
    lastPosition_ = position;
}

void InputWorker::Send(const QPoint& position) {
    const float pressure = pressureEnabled_ ? Settings::tabletPressure.load() : 1.0f;
    Q_EMIT MousePositionChanged(position, size_, opacity_ * pressure, hardness_);
}

} // namespace vellix
