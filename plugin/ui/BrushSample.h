#pragma once

#include <QImage>
#include <QPointF>
#include <QSize>
#include <QVector>

class QColor;

namespace vellix {

struct BrushPreset;

/// Strokes that show what a brush does, in pictures of their own: nothing of the scene changes.
class BrushSample {
public:
    /// Where a pen was, in pixels of the picture, and its pressure, 0..1.
    struct Touch {
        QPointF position;
        float pressure;
    };
    using Path = QVector<Touch>;

    /// A wave across a picture of this size, with pressure that rises from the left to the right, or that
    /// rises and falls.
    static Path RisingWave(const QSize& size);
    static Path SwellingWave(const QSize& size);

    /// Paints the strokes with the brush, as the tool would. Returns how much of each pixel is covered: in
    /// the alpha of a Format_RGBA8888 image whose colours are black. The eraser takes from a full picture. At
    /// most 1024 x 1024 pixels; null for a tool that does not draw freehand.
    static QImage Paint(const QSize& size, const BrushPreset& brush, const QVector<Path>& strokes);
    /// Gives all covered pixels the colour.
    static QImage InColor(const QImage& coverage, const QColor& color);
};

} // namespace vellix
