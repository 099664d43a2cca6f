#pragma once

#include <QPainter>
#include <QPalette>

namespace vellix {

/// Draws the focus frame of widgets that paint themselves.
struct FocusFrame {
    static void Draw(QPainter& painter, const QRect& rect, const QPalette& palette,
                     QPalette::ColorRole role = QPalette::Highlight) {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(palette.color(role), 1.0));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5), 2.5, 2.5);
        painter.restore();
    }
};

} // namespace vellix
