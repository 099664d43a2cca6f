#include "tools/InputWorker.h"

#include "host/Settings.h"
#include "tools/EventClock.h"

#include <QCoreApplication>
#include <QCursor>
#include <QThread>
#include <QWidget>

#include <limits>
#include <new>

namespace vellix {

namespace {

constexpr int NOWHERE = std::numeric_limits<int>::max();

} // namespace

InputWorker::InputWorker(const QWidget& view, ToolType tool)
    : viewCorner_(view.mapToGlobal(QPoint(0, 0)))
    , viewHeight_(view.height())
    , lastPosition_(NOWHERE, NOWHERE)
    , size_(Settings::GetToolSize(tool))
    , opacity_(static_cast<float>(Settings::GetToolOpacity(tool)) / 100.0f)
    , hardness_(static_cast<float>(Settings::GetToolHardness(tool)) / 100.0f)
    , pressureEnabled_(Settings::IsTabletPressureEnabled(tool))
    , pressure_(Settings::GetPenPressure(tool)) {}

QPoint InputWorker::ToView(const QPoint& onScreen) const {
    const QPoint place = onScreen - viewCorner_;
    return QPoint(place.x() + 1, (viewHeight_ - 1) - place.y() + 2);
}

QPointF InputWorker::ToView(const QPointF& onScreen) const {
    const QPointF place = onScreen - viewCorner_;
    return QPointF(place.x() + 1.0, (viewHeight_ - 1) - place.y() + 2.0);
}

InputWorker::Values InputWorker::ValuesNow() const {
    const float pressure = Settings::tabletPressure.load();
    return {pressure_.SizeAt(size_, pressure),
            opacity_ * (pressureEnabled_ ? pressure_.opacity.At(pressure) : 1.0f), hardness_};
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
    const QPoint position = ToView(QCursor::pos());
    if (position == lastPosition_) {
        return;
    }
    if (lastPosition_ == QPoint(NOWHERE, NOWHERE)) {
        // Two samples one pixel apart, so that a click without a move makes a dot.
        Send(position - QPoint(1, 0));
    }
    Send(position);
    lastPosition_ = position;
}

void InputWorker::Send(const QPoint& position) {
    const Values values = ValuesNow();
    Q_EMIT MousePositionChanged(position, values.size, values.opacity, values.hardness, EventClock::Now());
}

} // namespace vellix
