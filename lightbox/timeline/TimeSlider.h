#pragma once

#include "scene/EventSubscriptions.h"
#include "timeline/TimeChange.h"
#include "timeline/TimeScale.h"

#include <QWidget>

#include <optional>
#include <utility>
#include <vector>

class QPainter;

namespace lightbox {

class Host;
class Timeline;

/// The time slider: the frames of the playback range with their numbers, the current time, the keys of the
/// selected nodes, and the highlighted range. The timeline holds the data; the slider only shows it.
///
/// Dragging changes the time; with the middle button the scene is not evaluated. Dragging with Shift
/// highlights a range. Dragging the range moves it together with the current time and the selected nodes'
/// keys; dragging an end resizes it; a press elsewhere clears it. A double click highlights the whole
/// playback range. The right button is left to menus.
class TimeSlider : public QWidget {
    Q_OBJECT

public:
    explicit TimeSlider(Host& host, QWidget* parent = nullptr);

    TimeScale Scale() const;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    enum class Drag { None, Scrub, TimeOnly, Highlight, MoveRange, RangeStart, RangeEnd };

    Drag DragFor(const QMouseEvent& event) const;
    void DragTo(double x);
    void DragRange(double x);
    void MoveKeys(double distance) const;
    void ShowCursor(double x);

    void Subscribe();
    void PaintTicks(QPainter& painter, const TimeScale& scale) const;
    void PaintHighlight(QPainter& painter, const TimeScale& scale) const;
    void PaintKeys(QPainter& painter, const TimeScale& scale);
    void PaintCurrentTime(QPainter& painter, const TimeScale& scale) const;
    const std::vector<double>& KeyTimes();

    Host& host_;
    EventSubscriptions events_;
    Drag drag_ = Drag::None;
    Qt::MouseButton button_ = Qt::NoButton;
    /// At the press: the frame under the pointer, the current time, and the highlighted range.
    double pressFrame_ = 0.0;
    double pressTime_ = 0.0;
    std::pair<double, double> pressRange_;
    std::optional<TimeChange> change_;
    /// The cached key times; empty after a change until KeyTimes() is called.
    std::optional<std::vector<double>> keyTimes_;
};

} // namespace lightbox
