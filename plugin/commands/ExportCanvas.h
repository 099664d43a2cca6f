#pragma once

#include <QImage>
#include <QSize>

namespace vellix {

/// The picture that is exported, and where the square drawing lies on it: in its middle.
class ExportCanvas {
public:
    /// The drawing itself.
    ExportCanvas();
    /// A picture of this size; the side of the drawing on it, in pixels.
    ExportCanvas(const QSize& size, double side);

    const QSize& Size() const { return size_; }
    /// Whether pictures stay as they are drawn.
    bool IsDrawing() const { return isDrawing_; }
    /// The picture with a drawing on it: straight alpha, Format_RGBA8888. Throws std::bad_alloc when memory
    /// is short.
    QImage Place(const QImage& drawing) const;

private:
    QSize size_;
    double side_;
    bool isDrawing_;
};

} // namespace vellix
