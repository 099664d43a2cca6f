#pragma once

#include "scene/EventSubscriptions.h"

#include <QWidget>

#include <utility>

namespace lightbox {

class Host;

/// The range slider: the playback range as a bar within the animation range. Dragging the bar moves the
/// range, dragging its ends resizes it; a double click sets it to the whole animation range, and a second one
/// restores it. A drag is one undo step.
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
    /// The playback range that the second double click restores.
    Range smaller_{0.0, -1.0};
};

} // namespace lightbox
