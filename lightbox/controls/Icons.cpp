#include "controls/Icons.h"

#include "scene/Host.h"

#include <QApplication>
#include <QFileInfo>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

#include <cstdlib>

namespace lightbox {

namespace {

// All icons are drawn on a square of 24, in one colour with one width of line.

void DrawPencil(QPainter& painter, const QColor&) {
    QPainterPath pencil;
    pencil.moveTo(4.5, 19.5);
    pencil.lineTo(6, 14.5);
    pencil.lineTo(15.5, 5);
    pencil.quadTo(17.25, 3.25, 19, 5);
    pencil.quadTo(20.75, 6.75, 19, 8.5);
    pencil.lineTo(9.5, 18);
    pencil.closeSubpath();
    painter.drawPath(pencil);
    painter.drawLine(QPointF(13.5, 7), QPointF(17, 10.5));
}

void DrawTransform(QPainter& painter, const QColor& color) {
    painter.drawRect(QRectF(6, 6, 12, 12));
    painter.setBrush(color);
    for (const QPointF corner : {QPointF(6, 6), QPointF(18, 6), QPointF(6, 18), QPointF(18, 18)}) {
        painter.drawRect(QRectF(corner - QPointF(1.5, 1.5), QSizeF(3, 3)));
    }
}

void DrawScript(QPainter& painter, const QColor&) {
    painter.drawRoundedRect(QRectF(3.5, 4.5, 17, 15), 2, 2);
    painter.drawPolyline(QPolygonF(QVector<QPointF>{QPointF(7, 9), QPointF(10, 12), QPointF(7, 15)}));
    painter.drawLine(QPointF(12, 15), QPointF(17, 15));
}

void DrawCube(QPainter& painter, const QColor&) {
    painter.drawPolygon(
        QPolygonF(QVector<QPointF>{QPointF(12, 3.5), QPointF(19.5, 7.5), QPointF(19.5, 16.5),
                                   QPointF(12, 20.5), QPointF(4.5, 16.5), QPointF(4.5, 7.5)}));
    painter.drawPolyline(
        QPolygonF(QVector<QPointF>{QPointF(4.5, 7.5), QPointF(12, 11.5), QPointF(19.5, 7.5)}));
    painter.drawLine(QPointF(12, 11.5), QPointF(12, 20.5));
}

void DrawSphere(QPainter& painter, const QColor&) {
    painter.drawEllipse(QPointF(12, 12), 8, 8);
    painter.drawEllipse(QPointF(12, 12), 8, 3);
    painter.drawEllipse(QPointF(12, 12), 3, 8);
}

void DrawCylinder(QPainter& painter, const QColor&) {
    painter.drawEllipse(QPointF(12, 6.5), 6.5, 2.5);
    painter.drawLine(QPointF(5.5, 6.5), QPointF(5.5, 17.5));
    painter.drawLine(QPointF(18.5, 6.5), QPointF(18.5, 17.5));
    painter.drawArc(QRectF(5.5, 15, 13, 5), 180 * 16, 180 * 16);
}

void DrawPlane(QPainter& painter, const QColor&) {
    painter.drawPolygon(
        QPolygonF(QVector<QPointF>{QPointF(12, 7), QPointF(21, 12), QPointF(12, 17), QPointF(3, 12)}));
    painter.drawLine(QPointF(7.5, 9.5), QPointF(16.5, 14.5));
    painter.drawLine(QPointF(16.5, 9.5), QPointF(7.5, 14.5));
}

void DrawCamera(QPainter& painter, const QColor&) {
    painter.drawRoundedRect(QRectF(3.5, 8.5, 11, 9), 1.5, 1.5);
    painter.drawPolygon(QPolygonF(
        QVector<QPointF>{QPointF(14.5, 12), QPointF(20, 8.5), QPointF(20, 17.5), QPointF(14.5, 14)}));
}

void DrawCone(QPainter& painter, const QColor&) {
    painter.drawEllipse(QPointF(12, 17.5), 7.5, 2.5);
    painter.drawPolyline(QPolygonF(QVector<QPointF>{QPointF(4.5, 17), QPointF(12, 3.5), QPointF(19.5, 17)}));
}

void DrawLocator(QPainter& painter, const QColor&) {
    painter.drawLine(QPointF(12, 3.5), QPointF(12, 20.5));
    painter.drawLine(QPointF(3.5, 12), QPointF(20.5, 12));
    painter.drawLine(QPointF(7, 17), QPointF(17, 7));
}

struct Row {
    const char* name;
    DrawnIcon::Draw draw;
};

constexpr Row ROWS[] = {{"draw", DrawPencil},    {"transform", DrawTransform}, {"scriptEditor", DrawScript},
                        {"cube", DrawCube},      {"sphere", DrawSphere},       {"cylinder", DrawCylinder},
                        {"plane", DrawPlane},    {"camera", DrawCamera},       {"cone", DrawCone},
                        {"locator", DrawLocator}};

QString FileFor(const QString& name) {
    QStringList folders{QString()};
    if (const Host* const host = Host::Current()) {
        folders << QString::fromStdString(host->options().prefsFolder) + QStringLiteral("/icons/");
    }
    if (const char* const list = std::getenv("XBMLANGPATH")) {
        for (QString folder : QString::fromUtf8(list).split(QLatin1Char(':'), Qt::SkipEmptyParts)) {
            folders << folder.remove(QStringLiteral("%B")) + QLatin1Char('/');
        }
    }
    for (const QString& folder : folders) {
        QString path = folder + name;
        if (QFileInfo(path).isFile()) {
            return path;
        }
    }
    return QString();
}

} // namespace

void DrawnIcon::paint(QPainter* painter, const QRect& rectangle, QIcon::Mode mode, QIcon::State) {
    const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
    const QColor color = QApplication::palette().color(group, QPalette::ButtonText);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(rectangle.topLeft());
    painter->scale(rectangle.width() / side_, rectangle.height() / side_);
    painter->setPen(QPen(color, lineWidth_, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->setBrush(Qt::NoBrush);
    draw_(*painter, color);
    painter->restore();
}

QPixmap DrawnIcon::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    return pixmap;
}

QIcon Icons::Named(const QString& name) {
    const QString base = QFileInfo(name).completeBaseName();
    for (const Row& row : ROWS) {
        if (base == QLatin1String(row.name) && !name.contains(QLatin1Char('/'))) {
            return QIcon(new DrawnIcon(row.draw, 24.0, 1.5));
        }
    }
    const QString file = name.isEmpty() ? QString() : FileFor(name);
    return file.isEmpty() ? QIcon() : QIcon(file);
}

} // namespace lightbox
