#include "viewport/PanelIcon.h"

#include "controls/Theme.h"

#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>

namespace lightbox {

namespace {

/// The side of the square that the icons are drawn in, with a margin of 2 units.
constexpr double SIDE = 20.0;

void DrawFilmCamera(QPainter& painter) {
    painter.drawRoundedRect(QRectF(2.5, 7.5, 10.0, 8.0), 1.5, 1.5);
    painter.drawPolygon(QPolygonF({{12.5, 11.5}, {17.5, 8.5}, {17.5, 14.5}}));
    painter.drawEllipse(QPointF(5.5, 5.0), 2.0, 2.0);
    painter.drawEllipse(QPointF(10.0, 5.0), 2.0, 2.0);
}

void DrawFilmGate(QPainter& painter) {
    painter.drawRect(QRectF(2.5, 4.5, 15.0, 11.0));
    for (const double x : {5.0, 8.3, 11.6, 15.0}) {
        painter.drawLine(QPointF(x, 6.5), QPointF(x, 7.5));
        painter.drawLine(QPointF(x, 12.5), QPointF(x, 13.5));
    }
}

void DrawResolutionGate(QPainter& painter) {
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

void DrawPanZoom(QPainter& painter) {
    painter.drawEllipse(QPointF(8.5, 8.5), 5.0, 5.0);
    painter.drawLine(QPointF(12.2, 12.2), QPointF(17.0, 17.0));
    painter.drawLine(QPointF(6.0, 8.5), QPointF(11.0, 8.5));
    painter.drawLine(QPointF(8.5, 6.0), QPointF(8.5, 11.0));
}

void DrawGrid(QPainter& painter) {
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
void DrawMore(QPainter& painter) {
    for (const double x : {5.0, 10.5}) {
        painter.drawPolyline(QPolygonF({{x, 5.5}, {x + 4.5, 10.0}, {x, 14.5}}));
    }
}

/// Draws an icon at the requested size, so that its lines are sharp at every scale of the screen.
class Engine : public QIconEngine {
public:
    explicit Engine(PanelIcon::Symbol symbol)
        : symbol_(symbol) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const QColor color = mode == QIcon::Disabled ? Theme::FaintText() : Theme::Text();
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.topLeft());
        painter->scale(rect.width() / SIDE, rect.height() / SIDE);
        painter->setPen(QPen(color, 1.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter->setBrush(Qt::NoBrush);
        Draw(*painter, color);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    QIconEngine* clone() const override { return new Engine(symbol_); }

private:
    void Draw(QPainter& painter, const QColor& color) const {
        switch (symbol_) {
        case PanelIcon::Symbol::Camera:
            DrawFilmCamera(painter);
            break;
        case PanelIcon::Symbol::FilmGate:
            DrawFilmGate(painter);
            break;
        case PanelIcon::Symbol::ResolutionGate:
            DrawResolutionGate(painter);
            break;
        case PanelIcon::Symbol::GateMask:
            DrawGateMask(painter, color);
            break;
        case PanelIcon::Symbol::PanZoom:
            DrawPanZoom(painter);
            break;
        case PanelIcon::Symbol::Grid:
            DrawGrid(painter);
            break;
        case PanelIcon::Symbol::Wireframe:
            DrawSphere(painter, false, true, color);
            break;
        case PanelIcon::Symbol::Shaded:
            DrawSphere(painter, true, false, color);
            break;
        case PanelIcon::Symbol::WireOnShaded:
            DrawSphere(painter, true, true, color);
            break;
        case PanelIcon::Symbol::More:
            DrawMore(painter);
            break;
        }
    }

    PanelIcon::Symbol symbol_;
};

} // namespace

QIcon PanelIcon::Make(Symbol symbol) {
    return QIcon(new Engine(symbol));
}

} // namespace lightbox
