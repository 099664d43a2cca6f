#pragma once

#include "paint/Stroke.h"

#include <QImage>
#include <QList>

/// An empty layer image in a colour that reveals changes of R, G or B.
inline QImage EmptyLayer(const QColor& color = QColor(10, 20, 30, 0)) {
    QImage image(1024, 1024, QImage::Format_RGBA8888);
    image.fill(color);
    return image;
}

inline vellix::StrokePoint Sample(int x, int y, int size = 1, float opacity = 1.0f) {
    vellix::StrokePoint point;
    point.position = QPoint(x, y);
    point.size = size;
    point.opacity = opacity;
    return point;
}

inline int AlphaAt(const QImage& image, int x, int y) {
    return image.constScanLine(y)[4 * x + 3];
}

/// The sum of all alphas, in full pixels.
inline double Coverage(const QImage& image) {
    double sum = 0.0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            sum += AlphaAt(image, x, y);
        }
    }
    return sum / 255.0;
}

/// The smallest rectangle around all pixels in which the images differ.
inline QRect Difference(const QImage& a, const QImage& b) {
    QRect changed;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            if (reinterpret_cast<const quint32*>(a.constScanLine(y))[x] !=
                reinterpret_cast<const quint32*>(b.constScanLine(y))[x]) {
                changed |= QRect(x, y, 1, 1);
            }
        }
    }
    return changed;
}
