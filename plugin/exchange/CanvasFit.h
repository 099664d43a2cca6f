#pragma once

#include <QByteArray>
#include <QImage>
#include <QPoint>
#include <QRect>
#include <QSize>

namespace vellix {

/// Puts pictures of any size on the square drawing. The drawing is as wide as the camera's gate, and the gate
/// lies in the middle of its height. Pictures keep their proportions and are centred.
class CanvasFit {
public:
    enum class Mode {
        Automatic, ///< Square for a square canvas, Gate for any other
        Gate,      ///< as large as fits into the gate
        Width,     ///< as wide as the gate
        Height,    ///< as high as the gate
        Square,    ///< as large as fits into the drawing
    };

    /// `canvas` is the whole picture, in pixels, with sides of at most MAX_PNG_SIDE. `gateAspect` is the
    /// gate's width over its height. `strength`, 0..1, is multiplied into the alpha of every pixel.
    CanvasFit(Mode mode, const QSize& canvas, double gateAspect, double strength);

    /// Where the canvas lies on the drawing, in pixels of the drawing; it may reach beyond.
    QRect Target() const { return target_; }

    /// The drawing with a picture of the canvas whose top left pixel is at `position`, as PNG bytes. Bytes
    /// that are such a drawing already are returned unchanged. Empty if the bytes are no PNG that can be
    /// decoded. Throws std::bad_alloc when memory is short.
    QByteArray Place(const QByteArray& png, const QPoint& position, double opacity = 1.0) const;
    /// The same for pixels, straight or premultiplied. The image must not be null.
    QByteArray Place(const QImage& image, const QPoint& position, double opacity = 1.0) const;

    /// The PNG bytes that Place makes of nothing: a transparent drawing.
    static QByteArray Blank();

private:
    bool IsWholeDrawing() const;
    QImage Scaled(const QImage& image, const QPoint& position) const;

    QSize canvas_;
    QRect target_;
    double strength_;
};

} // namespace vellix
