#pragma once

#include "paint/PenPressure.h"
#include "paint/ToolType.h"

#include <QObject>
#include <QPoint>
#include <QPointF>
#include <QtGlobal>

class QWidget;

namespace vellix {

/// Samples the pointer on its own thread while a stroke is drawn, so that a busy main thread loses no
/// samples. Takes the tool's values and the view's place on the screen at construction. Does not know the
/// widget, which may be deleted at any time.
class InputWorker : public QObject {
    Q_OBJECT

public:
    /// Milliseconds.
    static constexpr unsigned long SAMPLE_PERIOD = 8;

    /// A sample's values; see MousePositionChanged.
    struct Values {
        int size;
        float opacity;
        float hardness;
    };

    InputWorker(const QWidget& view, ToolType tool);

    /// The position that is sent for a place on the screen.
    QPoint ToView(const QPoint& onScreen) const;
    /// The same for a place between pixels.
    QPointF ToView(const QPointF& onScreen) const;
    /// What a sample has at the pen's pressure of now.
    Values ValuesNow() const;

Q_SIGNALS:
    /// Position in view pixels from the bottom left, size in image pixels, opacity 0..1, hardness 0..1, with
    /// the pen's pressure applied, and the time of the sample by EventClock.
    void MousePositionChanged(const QPoint& position, int size, float opacity, float hardness, qint64 time);

public Q_SLOTS:
    /// Samples until Shutdown().
    void Run();
    /// Ends Run() and the thread's event loop.
    void Shutdown();

private:
    void UpdatePosition();
    void Send(const QPoint& position);

    const QPoint viewCorner_; ///< screen pixels
    const int viewHeight_;
    bool running_ = false;
    QPoint lastPosition_; ///< the last position sent
    const int size_;
    const float opacity_;
    const float hardness_;
    const bool pressureEnabled_;
    const PenPressure pressure_;
};

} // namespace vellix
