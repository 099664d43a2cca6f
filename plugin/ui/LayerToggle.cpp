#include "ui/LayerToggle.h"

#include "ui/FocusFrame.h"

#include <QColor>
#include <QEvent>
#include <QKeyEvent>
#include <QPainter>

namespace vellix {

LayerToggle::LayerToggle(QWidget* parent)
    : GuardedWidget(parent) {
    setAttribute(Qt::WA_Hover);
    setFixedSize(LayerToggle::sizeHint());
}

void LayerToggle::Show(const QString& letter, const QString& meaning) {
    if (text() != letter) {
        setText(letter);
    }
    if (toolTip() != meaning) {
        setToolTip(meaning);
        setAccessibleName(meaning);
    }
}

void LayerToggle::SetTextColor(const QColor& color) {
    textColor_ = color;
    update();
}

QSize LayerToggle::sizeHint() const {
    const QRect letter = fontMetrics().boundingRect(QLatin1Char('V'));
    return QSize(letter.width() + 8, fontMetrics().ascent() + 1).expandedTo(QSize(20, 14));
}

void LayerToggle::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange) {
        setFixedSize(sizeHint());
    }
    QAbstractButton::changeEvent(event);
}

void LayerToggle::keyPressEvent(QKeyEvent* event) {
    // The arrow keys belong to the row, which moves between rows and columns.
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Left:
    case Qt::Key_Right:
        event->ignore();
        break;
    default:
        QAbstractButton::keyPressEvent(event);
    }
}

void LayerToggle::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor ink = textColor_.isValid() ? textColor_ : palette().color(QPalette::ButtonText);
    QColor line = ink;
    QColor inside = line;
    line.setAlphaF(hasFocus() ? 1.0 : 0.6);
    inside.setAlphaF(underMouse() ? 0.22 : 0.0);
    painter.setPen(QPen(line, 1.0));
    painter.setBrush(inside);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 2.0, 2.0);
    painter.setPen(ink);
    // Capitals have no descent, so the letter is centred without it.
    const QFontMetrics metrics = fontMetrics();
    const QRect letter = metrics.tightBoundingRect(text());
    painter.drawText(QPointF((width() - metrics.size(Qt::TextSingleLine, text()).width()) / 2.0,
                             (height() + letter.height()) / 2.0),
                     text());
}

} // namespace vellix
