#pragma once

#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <functional>

namespace vellix {

/// Watches the view in which a stroke is drawn and reports when the release that ends the stroke will not
/// come: the view is hidden or closed, a modal dialog blocks its window, or the pointer moves with no button
/// held. The same when the view got another place, size or camera: the pointer would draw elsewhere. A window
/// that only loses the focus does not count, since the view keeps the mouse grab.
class StrokeGuard : public QObject {
    Q_OBJECT

public:
    /// Calls `interrupted` once, later from the event loop, and never after Release().
    explicit StrokeGuard(std::function<void()> interrupted);

    void Watch(QWidget* view);
    void Release();
    /// Whether the left button was released over the view, and where on the screen.
    bool HasEnd() const { return hasEnd_; }
    const QPoint& End() const { return end_; }
    /// When it was released; see EventClock::TimeOf.
    qint64 EndTime() const { return endTime_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Interrupt();

    std::function<void()> interrupted_;
    QPointer<QWidget> view_;
    QPointer<QWidget> window_;
    QTimer due_;
    bool hasEnd_ = false;
    QPoint end_;         ///< screen pixels
    qint64 endTime_ = 0; ///< by EventClock
};

} // namespace vellix
