#pragma once

#include "paint/PenPressure.h"
#include "ui/GuardedWidget.h"

#include <QWidget>

namespace vellix {

/// Shows a curve of pressure, from the lightest touch at the left to full pressure at the right, and lets it
/// be dragged: its start up and down, which sets the least value, and its middle point. The arrow keys move
/// the middle point, page up and page down the start; a double click or Home makes the curve straight.
class PressureField : public GuardedWidget<QWidget> {
    Q_OBJECT

public:
    /// `what` names what the pressure sets, for the tooltip and the accessible name.
    explicit PressureField(const QString& what, QWidget* parent = nullptr);

    const PressureCurve& GetCurve() const { return curve_; }
    /// Shows the curve without emitting Changed(). Does nothing while it is dragged.
    void SetCurve(const PressureCurve& curve);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    /// The curve is being dragged.
    void Dragged();
    /// The user has chosen another curve.
    void Changed();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    enum class Handle { None, Start, Middle };

    QRectF Area() const;
    QPointF PlaceOf(double pressure, double value) const;
    QPointF StartPlace() const;
    QPointF MiddlePlace() const;
    void DragTo(const QPointF& place);
    void Choose(const PressureCurve& curve);

    PressureCurve curve_;
    PressureCurve before_; ///< when the drag began
    Handle dragged_ = Handle::None;
};

} // namespace vellix
