#pragma once

#include "paint/BrushPreset.h"
#include "ui/BrushSample.h"
#include "ui/GuardedWidget.h"

#include <QImage>
#include <QWidget>

namespace vellix {

/// A strip to try a brush on. Shows a stroke with pressure that rises from left to right, until somebody
/// draws: with a pen, or with the mouse, whose pressure is light at the left and full at the right. Nothing
/// of the scene changes.
class PressureStrip : public GuardedWidget<QWidget> {
    Q_OBJECT

public:
    explicit PressureStrip(QWidget* parent = nullptr);

    /// Paints what is on the strip with this brush.
    void SetBrush(const BrushPreset& brush);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void tabletEvent(QTabletEvent* event) override;

private:
    void Touch(const QPointF& place, float pressure, bool begins);
    void Repaint();

    BrushPreset brush_;
    QVector<BrushSample::Path> strokes_; ///< drawn by hand; empty: the wave is shown
    QImage coverage_;
    float penPressure_ = 1.0f;
};

} // namespace vellix
