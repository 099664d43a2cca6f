#include "exchange/CanvasFit.h"

#include "paint/Composite.h"
#include "paint/ImageSize.h"
#include "paint/PngCodec.h"
#include "paint/PngStructure.h"

#include <QSizeF>

#include <algorithm>
#include <cmath>

namespace vellix {

namespace {

constexpr double SIDE = IMAGE_WIDTH;

/// The size of the canvas on the drawing, in pixels of the drawing.
QSizeF FittedSize(CanvasFit::Mode mode, const QSizeF& canvas, double gateAspect) {
    const double gateHeight = gateAspect > 0.0 ? SIDE / gateAspect : SIDE;
    double scale = 1.0;
    switch (mode) {
    case CanvasFit::Mode::Width:
        scale = SIDE / canvas.width();
        break;
    case CanvasFit::Mode::Height:
        scale = gateHeight / canvas.height();
        break;
    case CanvasFit::Mode::Square:
        scale = std::min(SIDE / canvas.width(), SIDE / canvas.height());
        break;
    default:
        scale = std::min(SIDE / canvas.width(), gateHeight / canvas.height());
        break;
    }
    return canvas * scale;
}

/// A side in whole pixels: at least one, and no more than is ever drawn.
int WholeSide(double side) {
    constexpr double largest = 16.0 * SIDE;
    return std::max(1, static_cast<int>(std::lround(std::min(side, largest))));
}

void MultiplyAlpha(QImage& image, double factor) {
    uchar table[256];
    for (int alpha = 0; alpha < 256; ++alpha) {
        table[alpha] = static_cast<uchar>(std::lround(alpha * factor));
    }
    for (int y = 0; y < image.height(); ++y) {
        uchar* const row = image.scanLine(y);
        for (int x = 0; x < image.width(); ++x) {
            row[4 * x + 3] = table[row[4 * x + 3]];
        }
    }
}

} // namespace

CanvasFit::CanvasFit(Mode mode, const QSize& canvas, double gateAspect, double strength)
    : canvas_(canvas)
    , strength_(strength) {
    if (mode == Mode::Automatic) {
        mode = canvas.width() == canvas.height() ? Mode::Square : Mode::Gate;
    }
    const QSizeF size = FittedSize(mode, canvas, gateAspect);
    const int width = WholeSide(size.width());
    const int height = WholeSide(size.height());
    const int side = IMAGE_WIDTH;
    target_ = QRect((side - width) / 2, (side - height) / 2, width, height);
}

/// Whether a pixel of the canvas is a pixel of the drawing.
bool CanvasFit::IsWholeDrawing() const {
    return canvas_ == target_.size() && target_ == QRect(0, 0, IMAGE_WIDTH, IMAGE_WIDTH);
}

QByteArray CanvasFit::Place(const QByteArray& png, const QPoint& position, double opacity) const {
    QImage image;
    if (!PngCodec::Decode(png, image)) {
        return QByteArray();
    }
    const PngStructure::Header header = PngStructure::HeaderOf(png);
    constexpr int trueColorAlpha = 6;
    const bool isDrawing = image.size() == QSize(IMAGE_WIDTH, IMAGE_WIDTH) && header.depth == 8 &&
                           header.colorType == trueColorAlpha;
    if (isDrawing && IsWholeDrawing() && position.isNull() && opacity * strength_ >= 1.0) {
        return png;
    }
    return Place(image, position, opacity);
}

/// The canvas with the picture, in its size on the drawing.
QImage CanvasFit::Scaled(const QImage& image, const QPoint& position) const {
    using composite::OrBadAlloc;
    QImage canvas = image;
    if (!position.isNull() || image.size() != canvas_) {
        canvas = OrBadAlloc(image.convertToFormat(QImage::Format_RGBA8888));
        // What lies beside the canvas is left out.
        canvas = OrBadAlloc(canvas.copy(QRect(-position, canvas_)));
    }
    if (canvas.size() != target_.size()) {
        // Scaling has to weigh colours by their alpha.
        canvas = OrBadAlloc(canvas.convertToFormat(QImage::Format_RGBA8888_Premultiplied));
        canvas = OrBadAlloc(canvas.scaled(target_.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    }
    return canvas;
}

QByteArray CanvasFit::Place(const QImage& image, const QPoint& position, double opacity) const {
    using composite::OrBadAlloc;
    QImage drawing;
    if (IsWholeDrawing() && position.isNull() && image.size() == canvas_) {
        drawing = OrBadAlloc(image.convertToFormat(QImage::Format_RGBA8888));
    } else {
        drawing = OrBadAlloc(composite::TransparentImage());
        const QImage part = IsWholeDrawing() ? image : Scaled(image, position);
        composite::Replace(drawing, OrBadAlloc(part.convertToFormat(QImage::Format_RGBA8888)),
                           IsWholeDrawing() ? position : target_.topLeft());
    }
    const double factor = std::min(1.0, std::max(0.0, opacity)) * strength_;
    if (factor < 1.0) {
        MultiplyAlpha(drawing, factor);
    }
    return PngCodec::Encoded(drawing);
}

QByteArray CanvasFit::Blank() {
    return PngCodec::Encoded(composite::OrBadAlloc(composite::TransparentImage()));
}

} // namespace vellix
