#include "paint/TextCaret.h"

#include "paint/ImageSize.h"
#include "paint/Stroke.h"

#include <QFontMetricsF>
#include <QPointF>
#include <QSizeF>
#include <QTextLayout>
#include <QTextLine>

#include <algorithm>

namespace vellix {

namespace {

constexpr double LONGEST_LINE = 1 << 20; // pixels

} // namespace

QFont TextCaret::FontOf(const QString& fontFamily, const StrokePoint& point) {
    QFont font(fontFamily);
    font.setPointSize(std::min(std::max(int(point.size), 1), IMAGE_WIDTH));
    return font;
}

QRectF TextCaret::Place(const Stroke& stroke, QPaintDevice& device) {
    if (stroke.caret < 0 || stroke.points.isEmpty()) {
        return QRectF();
    }
    // The lines lie as QPainter::drawText() lays them, which shows a tab as a blank.
    QString text = stroke.text;
    text.replace(QLatin1Char('\n'), QChar(QChar::LineSeparator)).replace(QLatin1Char('\t'), QLatin1Char(' '));
    const QFont font = FontOf(stroke.fontFamily, stroke.points.at(0));
    const double leading = QFontMetricsF(font, &device).leading();
    QTextLayout layout(text, font, &device);
    double height = 0.0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(LONGEST_LINE);
        line.setPosition(QPointF(0.0, height));
        height += line.height() + leading;
    }
    layout.endLayout();
    const int place = std::min(int(stroke.caret), text.size());
    const QTextLine line = layout.lineForTextPosition(place);
    if (!line.isValid()) {
        return QRectF();
    }
    const QPointF corner(stroke.points.at(0).position);
    double left = corner.x();
    if (text.isRightToLeft()) { // such lines end where the text is put
        left += 1.0 - line.naturalTextWidth();
    }
    return QRectF(QPointF(left + line.cursorToX(place), corner.y() + line.y()), QSizeF(0.0, line.height()));
}

} // namespace vellix
