#pragma once

#include "scene/EventSubscriptions.h"

#include <QWidget>

#include <utility>

namespace lightbox {

class Host;

/// The range slider: the playback range as a bar within the animation range. Dragging the bar moves the
/// range, dragging its ends resizes it; a double click plays all of the animation range, and another one goes
/// back. A drag is undone in one step.
class RangeSlider : public QWidget {
    Q_OBJECT

public:
    explicit RangeSlider(Host& host, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    using Range = std::pair<double, double>;
    enum class Part { None, Bar, Start, End };

    QRectF BarRect() const;
    double PixelsPerFrame() const;
    Part PartAt(double x) const;
    Range Playback() const;
    void Record(const Range& before, const Range& after);

    Host& host_;
    EventSubscriptions events_;
    Part drag_ = Part::None;
    double pressX_ = 0.0;
    Range pressRange_;
    /// What a double click goes back to.
    Range smaller_{0.0, -1.0};
};

} // namespace lightbox
