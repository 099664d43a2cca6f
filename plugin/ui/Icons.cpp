#include "ui/Icons.h"

#include "ui/IconDrawing.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>

namespace vellix {

namespace {

constexpr double UNITS = 24.0;
constexpr double LINE_WIDTH = 1.5;

class DrawnIcon : public QIconEngine {
public:
    explicit DrawnIcon(Icon icon)
        : icon_(icon) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State /*state*/) override {
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
        painter->translate(
            QPoint(rect.x() + (rect.width() - side) / 2, rect.y() + (rect.height() - side) / 2));
        painter->scale(side / UNITS, side / UNITS);
        Icons::Draw(icon_, *painter, line, accent);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    QIconEngine* clone() const override { return new DrawnIcon(*this); }

private:
    Icon icon_;
};

} // namespace

QIcon Icons::Get(Icon icon) {
    return QIcon(new DrawnIcon(icon));
}

void Icons::Draw(Icon icon, QPainter& painter, const QColor& line, const QColor& accent) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(line, LINE_WIDTH, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    IconDrawing::Draw(icon, painter, accent);
}

} // namespace vellix
