#include "ui/IconEngine.h"

#include <QColor>
#include <QGuiApplication>
#include <QPainter>
#include <QPalette>

namespace vellix {

namespace {

constexpr double UNITS = 24.0;

} // namespace

void IconEngine::paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State /*state*/) {
    const QPalette palette = QGuiApplication::palette();
    QColor line = palette.color(QPalette::Active, QPalette::ButtonText);
    QColor accent = Icons::Accent();
    if (mode == QIcon::Disabled) {
        line = accent = palette.color(QPalette::Disabled, QPalette::ButtonText);
    } else if (mode == QIcon::Selected) {
        line = accent = palette.color(QPalette::Active, QPalette::HighlightedText);
    }
    const int side = qMin(rect.width(), rect.height());
    painter->save();
    // An offset of whole pixels keeps the lines sharp.
    painter->translate(QPoint(rect.x() + (rect.width() - side) / 2, rect.y() + (rect.height() - side) / 2));
    painter->scale(side / UNITS, side / UNITS);
    Icons::Draw(icon_, *painter, line, accent);
    painter->restore();
}

QPixmap IconEngine::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, QRect(QPoint(), size), mode, state);
    return pixmap;
}

} // namespace vellix
