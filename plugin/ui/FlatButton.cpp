#include "ui/FlatButton.h"

#include <QEvent>
#include <QPainter>

namespace vellix {

namespace {

constexpr int FLAT_SIDE = 24;
constexpr double FLAT_RADIUS = 2.0;

} // namespace

FlatButton::FlatButton(QWidget* parent)
    : QAbstractButton(parent) {
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void FlatButton::SetColor(const QColor& color) {
    if (color != color_) {
        color_ = color;
        update();
    }
}

QSize FlatButton::sizeHint() const {
    return QSize(FLAT_SIDE, FLAT_SIDE);
}

void FlatButton::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPalette& colors = palette();
    const bool marked = underMouse() || hasFocus();
    // The edge separates the field from a panel of the same colour.
    QColor edge = marked ? colors.highlight().color() : colors.windowText().color();
    if (!marked) {
        edge.setAlphaF(0.35);
    }
    const double width = marked ? 2.0 : 1.0;
    const double inset = isDown() ? 2.0 : width / 2;
    painter.setPen(QPen(edge, width));
    painter.setBrush(color_.isValid() && isEnabled() ? QBrush(color_) : QBrush(Qt::NoBrush));
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), FLAT_RADIUS, FLAT_RADIUS);
}

} // namespace vellix
