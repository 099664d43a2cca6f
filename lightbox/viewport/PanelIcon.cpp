#include "viewport/PanelIcon.h"

#include "controls/Icons.h"
#include "controls/Theme.h"

#include <QPainter>
#include <QPainterPath>

namespace lightbox {

namespace {

// The icons are drawn in a square of 20 units, with a margin of 2.

void DrawFilmCamera(QPainter& painter, const QColor&) {
    painter.drawRoundedRect(QRectF(2.5, 7.5, 10.0, 8.0), 1.5, 1.5);
    painter.drawPolygon(QPolygonF({{12.5, 11.5}, {17.5, 8.5}, {17.5, 14.5}}));
    painter.drawEllipse(QPointF(5.5, 5.0), 2.0, 2.0);
    painter.drawEllipse(QPointF(10.0, 5.0), 2.0, 2.0);
}

void DrawFilmGate(QPainter& painter, const QColor&) {
    painter.drawRect(QRectF(2.5, 4.5, 15.0, 11.0));
    for (const double x : {5.0, 8.3, 11.6, 15.0}) {
        painter.drawLine(QPointF(x, 6.5), QPointF(x, 7.5));
        painter.drawLine(QPointF(x, 12.5), QPointF(x, 13.5));
    }
}

void DrawResolutionGate(QPainter& painter, const QColor&) {
    painter.drawRect(QRectF(2.5, 4.5, 15.0, 11.0));
    painter.drawLine(QPointF(10.0, 8.0), QPointF(10.0, 12.0));
    painter.drawLine(QPointF(8.0, 10.0), QPointF(12.0, 10.0));
}

void DrawGateMask(QPainter& painter, const QColor& color) {
    QPainterPath frame;
    frame.addRect(QRectF(2.5, 4.5, 15.0, 11.0));
    QPainterPath gate;
    gate.addRect(QRectF(5.5, 7.5, 9.0, 5.0));
    QColor shade = color;
    shade.setAlphaF(color.alphaF() * 0.45);
    painter.fillPath(frame.subtracted(gate), shade);
    painter.drawPath(frame);
    painter.drawPath(gate);
}

void DrawPanZoom(QPainter& painter, const QColor&) {
    painter.drawEllipse(QPointF(8.5, 8.5), 5.0, 5.0);
    painter.drawLine(QPointF(12.2, 12.2), QPointF(17.0, 17.0));
    painter.drawLine(QPointF(6.0, 8.5), QPointF(11.0, 8.5));
    painter.drawLine(QPointF(8.5, 6.0), QPointF(8.5, 11.0));
}

void DrawGrid(QPainter& painter, const QColor&) {
    for (const double share : {0.0, 0.5, 1.0}) {
        const double y = 5.5 + share * 9.0;
        painter.drawLine(QPointF(6.0 - share * 3.5, y), QPointF(14.0 + share * 3.5, y));
        painter.drawLine(QPointF(6.0 + share * 8.0, 5.5), QPointF(2.5 + share * 15.0, 14.5));
    }
}

void DrawSphere(QPainter& painter, bool isFilled, bool hasWires, const QColor& color) {
    const QPointF center(10.0, 10.0);
    if (isFilled) {
        QRadialGradient light(QPointF(7.5, 7.0), 10.0);
        QColor dark = color;
        dark.setAlphaF(color.alphaF() * 0.35);
        light.setColorAt(0.0, color);
        light.setColorAt(1.0, dark);
        painter.setBrush(light);
        painter.drawEllipse(center, 7.0, 7.0);
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(Theme::Field(), painter.pen().widthF()));
    } else {
        painter.drawEllipse(center, 7.0, 7.0);
    }
    if (hasWires) {
        painter.drawEllipse(center, 3.0, 7.0);
        painter.drawEllipse(center, 7.0, 3.0);
    }
}

/// Two chevrons, for the buttons that do not fit.
void DrawMore(QPainter& painter, const QColor&) {
    for (const double x : {5.0, 10.5}) {
        painter.drawPolyline(QPolygonF({{x, 5.5}, {x + 4.5, 10.0}, {x, 14.5}}));
    }
}

/// In the order of PanelIcon::Symbol.
constexpr DrawnIcon::Draw SYMBOLS[] = {
    DrawFilmCamera,
    DrawFilmGate,
    DrawResolutionGate,
    DrawGateMask,
    DrawPanZoom,
    DrawGrid,
    [](QPainter& painter, const QColor& color) { DrawSphere(painter, false, true, color); },
    [](QPainter& painter, const QColor& color) { DrawSphere(painter, true, false, color); },
    [](QPainter& painter, const QColor& color) { DrawSphere(painter, true, true, color); },
    DrawMore,
};

} // namespace

QIcon PanelIcon::Make(Symbol symbol) {
    return QIcon(new DrawnIcon(SYMBOLS[static_cast<int>(symbol)], 20.0, 1.2));
}

} // namespace lightbox
