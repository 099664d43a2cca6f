#include "ui/PressureStrip.h"

#include "paint/ImageSize.h"
#include "paint/TabletPressure.h"

#include <QMouseEvent>
#include <QPainter>
#include <QTabletEvent>

#include <algorithm>

namespace vellix {

namespace {

constexpr int STRIP_HEIGHT = 56;
constexpr int STRIP_LEAST_WIDTH = 160;
constexpr int MOST_STROKES = 20;
constexpr int MOST_TOUCHES = 4000;

} // namespace

PressureStrip::PressureStrip(QWidget* parent)
    : GuardedWidget(parent) {
    setToolTip(
        QStringLiteral("Try the tool here with the pen; with the mouse, from light at the left to full "
                       "pressure at the right. A double click clears the strip"));
    setAccessibleName(QStringLiteral("A strip to try the tool"));
    setCursor(Qt::CrossCursor);
}

void PressureStrip::SetBrush(const BrushPreset& brush) {
    if (brush.ToText() != brush_.ToText()) {
        brush_ = brush;
        Repaint();
    }
}

QSize PressureStrip::sizeHint() const {
    return QSize(STRIP_LEAST_WIDTH, STRIP_HEIGHT);
}

void PressureStrip::Repaint() {
    const QSize size = this->size().boundedTo(QSize(IMAGE_WIDTH, IMAGE_WIDTH));
    const bool isEmpty = strokes_.isEmpty();
    coverage_ = BrushSample::Paint(
        size, brush_, isEmpty ? QVector<BrushSample::Path>{BrushSample::RisingWave(size)} : strokes_);
    update();
}

void PressureStrip::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const QPalette& colors = palette();
    painter.fillRect(rect(), colors.base());
    if (!coverage_.isNull()) {
        painter.drawImage(0, 0, BrushSample::InColor(coverage_, colors.text().color()));
    }
    QColor edge = colors.windowText().color();
    edge.setAlphaF(0.4);
    painter.setPen(edge);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void PressureStrip::resizeEvent(QResizeEvent* /*event*/) {
    Repaint();
}

void PressureStrip::Touch(const QPointF& place, float pressure, bool begins) {
    if (begins || strokes_.isEmpty()) {
        if (strokes_.size() == MOST_STROKES) {
            strokes_.removeFirst();
        }
        strokes_.append(BrushSample::Path());
    }
    if (strokes_.last().size() < MOST_TOUCHES) {
        strokes_.last().append({place, pressure});
        Repaint();
    }
}

void PressureStrip::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        Touch(event->localPos(), static_cast<float>(event->localPos().x() / qMax(1, width())), true);
    }
}

void PressureStrip::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons().testFlag(Qt::LeftButton)) {
        const double share = event->localPos().x() / qMax(1, width());
        Touch(event->localPos(), static_cast<float>(std::min(std::max(share, 0.0), 1.0)), false);
    }
}

void PressureStrip::mouseDoubleClickEvent(QMouseEvent* /*event*/) {
    strokes_.clear();
    Repaint();
}

void PressureStrip::tabletEvent(QTabletEvent* event) {
    penPressure_ = TabletPressure::Curve(event->pressure(), penPressure_);
    if (event->type() == QEvent::TabletPress) {
        Touch(event->posF(), penPressure_, true);
    } else if (event->type() == QEvent::TabletMove && event->buttons().testFlag(Qt::LeftButton)) {
        Touch(event->posF(), penPressure_, false);
    }
    event->accept(); // or it would come again as an event of the mouse
}

} // namespace vellix
