#include "ui/PressureField.h"

#include <QColor>
#include <QKeyEvent>
#include <QLineF>
#include <QMouseEvent>
#include <QPainter>
#include <QPolygonF>

#include <cmath>

namespace vellix {

namespace {

constexpr int FIELD_SIDE = 96;
constexpr double FIELD_MARGIN = 5.0;
constexpr double HANDLE_RADIUS = 3.5;
constexpr int FIELD_CURVE_STEPS = 48;

QColor Fainter(QColor color, double alpha) {
    color.setAlphaF(alpha);
    return color;
}

} // namespace

PressureField::PressureField(const QString& what, QWidget* parent)
    : GuardedWidget(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setToolTip(
        QStringLiteral("%1 from light to full pressure: drag the start for the least value, and the middle; "
                       "a double click makes it straight")
            .arg(what));
    setAccessibleName(QStringLiteral("%1 from light to full pressure").arg(what));
    setCursor(Qt::CrossCursor);
}

void PressureField::SetCurve(const PressureCurve& curve) {
    if (dragged_ == Handle::None && !(curve == curve_)) {
        curve_ = curve;
        update();
    }
}

QSize PressureField::sizeHint() const {
    const int side = qMax(FIELD_SIDE, fontMetrics().height() * 6);
    return QSize(side, side);
}

QRectF PressureField::Area() const {
    return QRectF(rect()).adjusted(FIELD_MARGIN, FIELD_MARGIN, -FIELD_MARGIN, -FIELD_MARGIN);
}

QPointF PressureField::PlaceOf(double pressure, double value) const {
    const QRectF area = Area();
    return QPointF(area.left() + pressure * area.width(), area.bottom() - value * area.height());
}

QPointF PressureField::StartPlace() const {
    return PlaceOf(0.0, curve_.least / 100.0);
}

QPointF PressureField::MiddlePlace() const {
    const double least = curve_.least / 100.0;
    return PlaceOf(curve_.middleAt / 100.0, least + (1.0 - least) * curve_.middle / 100.0);
}

void PressureField::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPalette& colors = palette();
    const QColor line =
        colors.color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText);
    const QRectF area = Area();
    painter.fillRect(area, colors.base());
    painter.setPen(Fainter(line, 0.15));
    for (int part = 1; part < 4; ++part) {
        painter.drawLine(PlaceOf(part / 4.0, 0.0), PlaceOf(part / 4.0, 1.0));
        painter.drawLine(PlaceOf(0.0, part / 4.0), PlaceOf(1.0, part / 4.0));
    }
    painter.setPen(Fainter(line, hasFocus() ? 0.9 : 0.4));
    painter.drawRect(area);
    QPolygonF shape;
    for (int step = 0; step <= FIELD_CURVE_STEPS; ++step) {
        const double pressure = static_cast<double>(step) / FIELD_CURVE_STEPS;
        shape.append(PlaceOf(pressure, curve_.At(static_cast<float>(pressure))));
    }
    const QColor accent = isEnabled() ? colors.highlight().color() : line;
    painter.setPen(QPen(accent, 2.0));
    painter.drawPolyline(shape);
    painter.setPen(QPen(line, 1.0));
    painter.setBrush(accent);
    for (const QPointF& place : {StartPlace(), MiddlePlace(), PlaceOf(1.0, 1.0)}) {
        painter.drawEllipse(place, HANDLE_RADIUS, HANDLE_RADIUS);
    }
}

void PressureField::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        return;
    }
    before_ = curve_;
    const double toStart = QLineF(event->localPos(), StartPlace()).length();
    const double toMiddle = QLineF(event->localPos(), MiddlePlace()).length();
    dragged_ = toStart < toMiddle ? Handle::Start : Handle::Middle;
    DragTo(event->localPos());
}

void PressureField::mouseMoveEvent(QMouseEvent* event) {
    if (dragged_ != Handle::None) {
        DragTo(event->localPos());
    }
}

void PressureField::mouseReleaseEvent(QMouseEvent* /*event*/) {
    if (dragged_ != Handle::None) {
        dragged_ = Handle::None;
        const PressureCurve chosen = curve_;
        curve_ = before_;
        Choose(chosen);
    }
}

void PressureField::mouseDoubleClickEvent(QMouseEvent* /*event*/) {
    Choose(PressureCurve());
}

void PressureField::DragTo(const QPointF& place) {
    const QRectF area = Area();
    const double pressure = (place.x() - area.left()) / area.width();
    const double value = (area.bottom() - place.y()) / area.height();
    if (dragged_ == Handle::Start) {
        curve_.least = qBound(0, static_cast<int>(std::lround(value * 100.0)), 100);
    } else {
        const int first = PressureCurve::MIN_MIDDLE_AT;
        const int last = PressureCurve::MAX_MIDDLE_AT;
        const double least = curve_.least / 100.0;
        const double share = least < 1.0 ? (value - least) / (1.0 - least) : 0.5;
        curve_.middleAt = qBound(first, static_cast<int>(std::lround(pressure * 100.0)), last);
        curve_.middle = qBound(0, static_cast<int>(std::lround(share * 100.0)), 100);
    }
    update();
    Q_EMIT Dragged();
}

void PressureField::keyPressEvent(QKeyEvent* event) {
    PressureCurve curve = curve_;
    switch (event->key()) {
    case Qt::Key_Left:
        --curve.middleAt;
        break;
    case Qt::Key_Right:
        ++curve.middleAt;
        break;
    case Qt::Key_Down:
        --curve.middle;
        break;
    case Qt::Key_Up:
        ++curve.middle;
        break;
    case Qt::Key_PageDown:
        --curve.least;
        break;
    case Qt::Key_PageUp:
        ++curve.least;
        break;
    case Qt::Key_Home:
        curve = PressureCurve();
        break;
    default:
        QWidget::keyPressEvent(event);
        return;
    }
    if (curve.IsValid()) {
        Choose(curve);
    }
}

void PressureField::Choose(const PressureCurve& curve) {
    if (curve == curve_) {
        update();
        return;
    }
    curve_ = curve;
    update();
    Q_EMIT Changed();
}

} // namespace vellix
