#include "ui/FlatButton.h"

#include <QEvent>
#include <QPainter>

namespace vellix {

namespace {

constexpr int FLAT_SIDE = 24;
constexpr double FLAT_RADIUS = 2.0;

} // namespace

FlatButton::FlatButton(QWidget* parent)
    : GuardedWidget(parent) {
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
    const double inset = isDown() ? 2.0 : 0.5;
    const QRectF field = QRectF(rect()).adjusted(inset, inset, -inset, -inset);
    if (color_.isValid() && isEnabled()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(color_);
        painter.drawRoundedRect(field.adjusted(0.5, 0.5, -0.5, -0.5), FLAT_RADIUS, FLAT_RADIUS);
    }
    // The edge separates the field from a panel of the same colour.
    QColor edge = colors.windowText().color();
    edge.setAlphaF(underMouse() ? 1.0 : 0.6);
    painter.setPen(QPen(edge, 1.0));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(field, FLAT_RADIUS, FLAT_RADIUS);
    if (hasFocus() && window()->testAttribute(Qt::WA_KeyboardFocusChange)) {
        // Dotted, so that it does not look like the chosen one, and of two colours, to be seen on any.
        const QRectF ring = field.adjusted(3, 3, -3, -3);
        painter.setPen(QPen(Qt::white, 1.0));
        painter.drawRect(ring);
        painter.setPen(QPen(Qt::black, 1.0, Qt::DotLine));
        painter.drawRect(ring);
    }
}

} // namespace vellix
