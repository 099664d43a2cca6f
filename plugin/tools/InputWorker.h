#pragma once

#include "paint/ToolType.h"

#include <QObject>
#include <QPoint>

class QWidget;

namespace vellix {

/// Samples the pointer on its own thread while a stroke is drawn, so that a busy main thread loses no
/// samples. Takes the tool's values and the view's place on the screen at construction. Does not know the
/// widget, which may be deleted at any time.
class InputWorker : public QObject {
    Q_OBJECT

public:
    InputWorker(const QWidget& view, ToolType tool);

    /// The position that is sent for a place on the screen.
    QPoint ToView(const QPoint& onScreen) const;

Q_SIGNALS:
    /// Position in view pixels from the bottom left, size in image pixels, opacity 0..1 with the pen's
    /// pressure applied, hardness 0..1.
    void MousePositionChanged(const QPoint& position, int size, float opacity, float hardness);

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
    int size_;
    float opacity_;
    float hardness_;
    bool pressureEnabled_;
};

} // namespace vellix
