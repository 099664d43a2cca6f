#include "window/ColorSwatch.h"

#include <QColorDialog>
#include <QMouseEvent>
#include <QPainter>

namespace lightbox {

ColorSwatch::ColorSwatch() {
    setCursor(Qt::PointingHandCursor);
}

void ColorSwatch::SetColor(const QColor& color) {
    color_ = color;
    update();
}

QSize ColorSwatch::sizeHint() const {
    return {60, 20};
}

void ColorSwatch::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), isEnabled() ? color_ : palette().color(QPalette::Disabled, QPalette::Button));
    painter.setPen(palette().color(QPalette::Dark));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void ColorSwatch::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);
        return;
    }

    auto* const dialog = new QColorDialog(color_, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QColorDialog::colorSelected, this, [this](const QColor& color) {
        SetColor(color);
        Q_EMIT Chosen(color);
    });
    dialog->open();
}

} // namespace lightbox
