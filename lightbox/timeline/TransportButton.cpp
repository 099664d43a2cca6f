#include "timeline/TransportButton.h"

#include <QPainter>
#include <QPainterPath>

namespace lightbox {

namespace {

constexpr int WIDTH = 26;
constexpr int BUTTON_HEIGHT = 26;

using Sign = TransportButton::Sign;

/// All signs are drawn in a square of 16 units, pointing right.
void AddTriangle(QPainterPath& path, double left, double right, double half) {
    path.moveTo(left, 8.0 - half);
    path.lineTo(right, 8.0);
    path.lineTo(left, 8.0 + half);
    path.closeSubpath();
}

void AddBar(QPainterPath& path, double left) {
    path.addRect(left, 3.5, 2.0, 9.0);
}

QPainterPath Filled(Sign sign) {
    QPainterPath path;
    switch (sign) {
    case Sign::PlayForward:
    case Sign::PlayBack:
        AddTriangle(path, 4.0, 13.0, 5.5);
        break;
    case Sign::ToStart:
    case Sign::ToEnd:
        AddTriangle(path, 2.0, 7.0, 4.5);
        AddTriangle(path, 7.0, 12.0, 4.5);
        AddBar(path, 12.0);
        break;
    case Sign::StepBack:
    case Sign::StepForward:
        AddTriangle(path, 4.0, 9.5, 4.5);
        AddBar(path, 10.5);
        break;
    case Sign::Stop:
        path.addRoundedRect(QRectF(3.5, 3.5, 9.0, 9.0), 1.0, 1.0);
        break;
    default:
        break;
    }
    return path;
}

bool PointsLeft(Sign sign) {
    return sign == Sign::ToStart || sign == Sign::StepBack || sign == Sign::KeyBack || sign == Sign::PlayBack;
}

void PaintKeyStep(QPainter& painter, const QColor& ink) {
    QPainterPath path;
    AddTriangle(path, 2.5, 7.5, 4.5);
    painter.fillPath(path, ink);
    QPainterPath key;
    key.moveTo(11.5, 4.0);
    key.lineTo(14.5, 8.0);
    key.lineTo(11.5, 12.0);
    key.lineTo(8.5, 8.0);
    key.closeSubpath();
    painter.fillPath(key, QColor(232, 72, 60));
}

void PaintHead(QPainter& painter, const QColor& ink, double tip, double y, double direction) {
    QPainterPath head;
    head.moveTo(tip, y);
    head.lineTo(tip - direction * 4.0, y - 3.0);
    head.lineTo(tip - direction * 4.0, y + 3.0);
    head.closeSubpath();
    painter.fillPath(head, ink);
}

void PaintLoop(QPainter& painter, Sign sign, const QColor& ink) {
    painter.setPen(QPen(ink, 1.5, Qt::SolidLine, Qt::FlatCap));
    painter.setBrush(Qt::NoBrush);
    if (sign == Sign::LoopOnce) {
        painter.drawLine(QPointF(2.0, 8.0), QPointF(10.0, 8.0));
        PaintHead(painter, ink, 12.5, 8.0, 1.0);
        painter.fillRect(QRectF(12.5, 4.0, 1.6, 8.0), ink);
    } else if (sign == Sign::LoopContinuous) {
        painter.drawArc(QRectF(3.0, 3.5, 10.0, 9.0), 60 * 16, 300 * 16);
        PaintHead(painter, ink, 12.6, 4.4, 1.0);
    } else {
        painter.drawLine(QPointF(2.0, 5.5), QPointF(10.5, 5.5));
        painter.drawLine(QPointF(5.5, 10.5), QPointF(14.0, 10.5));
        PaintHead(painter, ink, 14.0, 5.5, 1.0);
        PaintHead(painter, ink, 2.0, 10.5, -1.0);
    }
}

} // namespace

TransportButton::TransportButton(Sign sign, const QString& tip, QWidget* parent)
    : QAbstractButton(parent)
    , sign_(sign) {
    setToolTip(tip);
    setAccessibleName(tip);
    setFocusPolicy(Qt::NoFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void TransportButton::SetSign(Sign sign) {
    sign_ = sign;
    update();
}

QSize TransportButton::sizeHint() const {
    return {WIDTH, BUTTON_HEIGHT};
}

void TransportButton::enterEvent(QEvent* event) {
    QAbstractButton::enterEvent(event);
    update();
}

void TransportButton::leaveEvent(QEvent* event) {
    QAbstractButton::leaveEvent(event);
    update();
}

void TransportButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (isDown() || underMouse()) {
        const QColor button = palette().color(QPalette::Button);
        painter.setPen(Qt::NoPen);
        painter.setBrush(isDown() ? button.darker(130) : button.lighter(125));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1.0, 1.0, -1.0, -1.0), 3.0, 3.0);
    }
    painter.translate((width() - 16.0) / 2.0, (height() - 16.0) / 2.0);
    QColor ink = palette().color(QPalette::ButtonText);
    ink.setAlpha(isEnabled() ? 225 : 90);
    if (sign_ >= Sign::LoopOnce) {
        PaintLoop(painter, sign_, ink);
        return;
    }
    if (PointsLeft(sign_)) {
        painter.translate(16.0, 0.0);
        painter.scale(-1.0, 1.0);
    }
    if (sign_ == Sign::KeyBack || sign_ == Sign::KeyForward) {
        PaintKeyStep(painter, ink);
    } else {
        painter.fillPath(Filled(sign_), ink);
    }
}

} // namespace lightbox
