#include "commands/ExportCanvas.h"

#include "paint/Composite.h"
#include "paint/ImageSize.h"

#include <QPainter>
#include <QRectF>

#include <cmath>

namespace vellix {

ExportCanvas::ExportCanvas()
    : size_(IMAGE_WIDTH, IMAGE_WIDTH)
    , side_(IMAGE_WIDTH)
    , isDrawing_(true) {}

ExportCanvas::ExportCanvas(const QSize& size, double side)
    : size_(size)
    , side_(side)
    , isDrawing_(false) {}

QImage ExportCanvas::Place(const QImage& drawing) const {
    if (isDrawing_) {
        return drawing;
    }
    QImage picture = composite::OrBadAlloc(QImage(size_, QImage::Format_RGBA8888_Premultiplied));
    picture.fill(Qt::transparent);
    if (!drawing.isNull() && side_ > 0.0) {
        QImage source = drawing.convertToFormat(QImage::Format_RGBA8888_Premultiplied);
        // Made smaller by the mean of all pixels: between four of them thin lines would be lost.
        const int whole = static_cast<int>(std::ceil(side_));
        if (whole < source.width()) {
            source = source.scaled(whole, whole, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        }
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(QRectF((size_.width() - side_) / 2.0, (size_.height() - side_) / 2.0, side_, side_),
                          source);
    }
    return composite::OrBadAlloc(picture.convertToFormat(QImage::Format_RGBA8888));
}

} // namespace vellix
