#pragma once

#include <QColor>
#include <QImage>
#include <QPainter>

#include <vector>

namespace vellix {

/// A plain reference for the composition of a drawing: redraws everything with one QPainter on straight-alpha
/// images.
struct PlainComposer {
    std::vector<const QImage*> previous; ///< ghosts, farthest key first
    std::vector<const QImage*> next;
    int previousCount = 0; ///< number of ghosts over which the opacity falls off
    int nextCount = 0;
    const QColor* previousColor = nullptr;
    const QColor* nextColor = nullptr;
    std::vector<const QImage*> layers; ///< bottom first, with the strokes in progress

    static QImage Blank() {
        QImage image(1024, 1024, QImage::Format_RGBA8888);
        image.fill(Qt::transparent);
        return image;
    }

    static void Override(QImage& image, const QColor& color) {
        for (int y = 0; y < image.height(); ++y) {
            uchar* pixel = image.scanLine(y);
            for (int x = 0; x < image.width(); ++x, pixel += 4) {
                if (pixel[3] != 0) {
                    pixel[0] = uchar(color.red());
                    pixel[1] = uchar(color.green());
                    pixel[2] = uchar(color.blue());
                }
            }
        }
    }

    static void DrawGhosts(QImage& image, const std::vector<const QImage*>& ghosts, int count,
                           const QColor* color) {
        image.fill(Qt::transparent);
        {
            QPainter painter(&image);
            int k = int(ghosts.size());
            for (const QImage* ghost : ghosts) {
                painter.setOpacity(0.4 - (k - 1) * 0.4 / count);
                painter.drawImage(0, 0, *ghost);
                --k;
            }
        }
        if (color) {
            Override(image, *color);
        }
    }

    void Compose(QImage& image, QImage& previousGhosts, QImage& ghosts) const {
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        if (previousCount > 0 || nextCount > 0) {
            DrawGhosts(previousGhosts, previous, previousCount, previousColor);
            DrawGhosts(ghosts, next, nextCount, nextColor);
            QPainter under(&ghosts);
            under.setCompositionMode(QPainter::CompositionMode_DestinationOver);
            under.drawImage(0, 0, previousGhosts);
            under.end();
            painter.drawImage(0, 0, ghosts);
        }
        for (const QImage* layer : layers) {
            painter.drawImage(0, 0, *layer);
        }
    }

    QImage Compose() const {
        QImage image = Blank();
        QImage previousGhosts = Blank();
        QImage ghosts = Blank();
        Compose(image, previousGhosts, ghosts);
        return image;
    }

    /// The largest difference of any premultiplied channel of two images.
    static int Difference(const QImage& a, const QImage& b) {
        const QImage x = a.convertToFormat(QImage::Format_RGBA8888_Premultiplied);
        const QImage y = b.convertToFormat(QImage::Format_RGBA8888_Premultiplied);
        int largest = x.size() == y.size() ? 0 : 256;
        for (int row = 0; row < x.height() && largest < 256; ++row) {
            const uchar* p = x.constScanLine(row);
            const uchar* q = y.constScanLine(row);
            for (int i = 0; i < x.bytesPerLine(); ++i) {
                largest = qMax(largest, qAbs(int(p[i]) - int(q[i])));
            }
        }
        return largest;
    }
};

} // namespace vellix
