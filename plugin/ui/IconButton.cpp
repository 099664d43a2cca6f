#include "ui/IconButton.h"

#include <QColor>
#include <QContextMenuEvent>
#include <QMetaMethod>
#include <QPainter>
#include <QStyle>

namespace vellix {

namespace {

constexpr int ICON_MARGIN = 4;
constexpr double CORNER_RADIUS = 3.0;
/// Line height of a font of usual size, in pixels.
constexpr int USUAL_LINE = 16;

} // namespace

IconButton::IconButton(Icon icon, const QString& toolTip, int size, QWidget* parent)
    : GuardedWidget(parent)
    , size_(size) {
    setIcon(Icons::Get(icon));
    setToolTip(toolTip);
    setAccessibleName(toolTip);
    setAutoRaise(true);
    setFocusPolicy(Qt::StrongFocus);
}

int IconButton::IconSide() const {
    return qMax(size_, size_ * fontMetrics().height() / USUAL_LINE);
}

QSize IconButton::sizeHint() const {
    const int side = IconSide() + 2 * ICON_MARGIN;
    return QSize(side, side);
}

void IconButton::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF area = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    const QPalette& colors = palette();
    const bool filled = isChecked() || isDown();
    if (filled) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(isDown() ? colors.highlight().color().darker(120) : colors.highlight().color());
        painter.drawRoundedRect(area, CORNER_RADIUS, CORNER_RADIUS);
    } else if (isEnabled() && underMouse()) {
        QColor hover = colors.buttonText().color();
        hover.setAlphaF(0.12);
        painter.setPen(Qt::NoPen);
        painter.setBrush(hover);
        painter.drawRoundedRect(area, CORNER_RADIUS, CORNER_RADIUS);
    }
    const int side = IconSide();
    QRect place(0, 0, side, side);
    place.moveTopLeft(QPoint((width() - side) / 2, (height() - side) / 2));
    icon().paint(&painter, place, Qt::AlignCenter,
                 !isEnabled() ? QIcon::Disabled
                 : filled     ? QIcon::Selected
                              : QIcon::Normal);
    if (hasFocus() && window()->testAttribute(Qt::WA_KeyboardFocusChange)) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(filled ? colors.highlightedText().color() : colors.highlight().color(), 1.0));
        painter.drawRoundedRect(area.adjusted(1, 1, -1, -1), CORNER_RADIUS, CORNER_RADIUS);
    }
}

void IconButton::contextMenuEvent(QContextMenuEvent* event) {
    if (isSignalConnected(QMetaMethod::fromSignal(&IconButton::MenuWanted))) {
        event->accept();
        Q_EMIT MenuWanted(event->reason() == QContextMenuEvent::Mouse ? event->globalPos()
                                                                      : mapToGlobal(rect().bottomLeft()));
    } else {
        QToolButton::contextMenuEvent(event);
    }
}

void IconButton::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange) {
        updateGeometry();
    }
    QToolButton::changeEvent(event);
}

} // namespace vellix
