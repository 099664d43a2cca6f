#include "controls/ColorSwatch.h"

#include <QColorDialog>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace lightbox {

ColorSwatch::ColorSwatch() {
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
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
    // Filled rectangles end where the widget ends at any scale of the screen, and lines do not.
    const int edge = hasFocus() ? 2 : 1;
    painter.fillRect(rect(), palette().color(hasFocus() ? QPalette::Highlight : QPalette::Dark));
    painter.fillRect(rect().adjusted(edge, edge, -edge, -edge),
                     isEnabled() ? color_ : palette().color(QPalette::Disabled, QPalette::Button));
}

void ColorSwatch::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    AskForColor();
}

void ColorSwatch::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space || event->key() == Qt::Key_Select) {
        AskForColor();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void ColorSwatch::AskForColor() {
    auto* const dialog = new QColorDialog(color_, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QColorDialog::colorSelected, this, [this](const QColor& color) {
        SetColor(color);
        Q_EMIT Chosen(color);
    });
    dialog->open();
}

} // namespace lightbox
