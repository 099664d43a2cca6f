#pragma once

#include "paint/Stroke.h"
#include "paint/TileMask.h"

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QPoint>
#include <QRect>

class QPainter;

namespace vellix {

class BrushGrid;

/// Paints strokes into layer images, and packs images as PNG.
///
/// Layer images are `QImage::Format_RGBA8888`, 1024 x 1024 pixels. Positions and sizes are image pixels, y
/// down. The freehand tools write alpha only: the caller first fills the image with the stroke's colour at
/// alpha 0 or, for the eraser, with the picture to erase from. They leave images of another format alone.
///
/// The whole process shares one brush grid, so all freehand painting must stay on one thread. PNG packing may
/// run on any thread.
class DrawUtil {
public:
    // --- whole strokes

    /// Clears the image and draws a shape or text stroke into it. Other tools leave it empty. `editing` draws
    /// a frame around text that is still being typed, and the caret if the stroke has one.
    static void DrawStroke(QImage& image, const Stroke& stroke, bool editing);

    /// Rasterises a pencil, brush or eraser stroke from point `start` on: the segments (start, start + 1) and
    /// so on. Returns the tiles outside which no pixel was touched; none if none was.
    /// Sizes above 100 are painted as 100, and opacities are clamped to 0..1. Segments from far outside the
    /// image are cut first (SegmentClip), so that a stray position costs no more than a long line.
    static TileMask DrawFreehand(QImage& image, const QList<StrokePoint>& points, int start, ToolType tool);

    /// The tiles that DrawFreehand() may touch.
    static TileMask ReachOfFreehand(const QList<StrokePoint>& points, int start);

    // --- shapes, text and transform, through a painter on the image

    static void DrawLine(QPainter& painter, const QList<StrokePoint>& points, const QColor& color);
    static void DrawArrow(QPainter& painter, const QList<StrokePoint>& points, const QColor& color);
    static void DrawEllipse(QPainter& painter, const QList<StrokePoint>& points, const QColor& color);
    static void DrawRectangle(QPainter& painter, const QList<StrokePoint>& points, const QColor& color);
    static void DrawTextString(QPainter& painter, const QList<StrokePoint>& points, const QColor& color,
                               const QString& text, const QString& fontFamily, bool editing);

    /// Draws the lifted region moved, rotated and scaled by the stroke's values. A pasted region is moved
    /// only.
    static void DrawTransform(QPainter& painter, const Stroke& stroke, const QImage& lifted);
    /// Returns the image that DrawTransform() draws, and sets `leftTop` to the place of its top left pixel.
    /// Returns a null image when there is nothing to draw, when the rotation or a scale is not finite, or
    /// when a side of the transformed region is longer than 4096 pixels.
    static QImage TransformLifted(const Stroke& stroke, const QImage& lifted, QPoint& leftTop);

    /// Returns the far end of one head line of an arrow from p0 to p1, `angle` radians off the shaft. Head
    /// lines are 40 pixels long, proportionally shorter on shafts below 200 pixels. Returns p1 when the shaft
    /// has no length.
    static QPoint GetArrowHeadPoint(const QPoint& p0, const QPoint& p1, float angle);

    /// Euclidean distance between two points.
    static float Distance(int x0, int y0, int x1, int y1);

    // --- PNG

    /// Encodes the image as PNG. Leaves `packed` empty on failure, such as for a null image.
    static void PackPngBuffer(const QImage& image, QByteArray& packed);

    /// Decodes PNG bytes into a 1024 x 1024 `Format_RGBA8888` image. Places a picture of another size at the
    /// top left and crops it. Returns false, and leaves a null image, if the bytes cannot be decoded. Throws
    /// std::bad_alloc when memory is short: then the bytes may be good.
    static bool UnpackPngBuffer(const QByteArray& packed, QImage& image);

    // --- freehand segments and the brush grid
    // Part of the interface for scripts and other tools; not called here.

    /// Walks one segment with Bresenham's algorithm and stamps the grid along it.
    static void DrawFreehandSegment(QImage& image, int x0, int y0, int x1, int y1, int size, float opacity0,
                                    float opacity1, float hardness, ToolType tool);

    /// Walks one segment with Wu's algorithm and puts a soft stamp on every plotted point. `first` adds the
    /// stroke's starting dab.
    static void DrawFreehandSegmentBrush(QImage& image, int x0, int y0, int x1, int y1, int size,
                                         ToolType tool, float opacity0, float opacity1, float hardness,
                                         bool first);

    /// Builds the grid of a soft brush. Sizes up to 19 get one pixel more radius and 40 % of the opacity.
    static void UpdateBrushGrid(int size, float radius, float opacity, ToolType tool);

    /// Builds the grid for a disc; see BrushGrid.
    static void UpdateGridWu(float hardness, float radius, float opacity, ToolType tool);

    /// The grid that the next stamp uses.
    static const BrushGrid& Grid();

    // Stamps cover the columns x0 - 1 .. x1 - 1 and the rows y0 - 1 .. y1 - 1; grid cell [i][j] falls on the
    // pixel (x0 - 1 + i, y0 - 1 + j).

    /// Raises every alpha to the grid's coverage.
    static void PlotGrid(QImage& image, int x0, int y0, int x1, int y1);

    /// Adds coverage * flow to every alpha, up to cap (0..1); never lowers an alpha.
    static void PlotGridAdditive(QImage& image, int x0, int y0, int x1, int y1, float cap, float flow);

    /// PlotGridAdditive on the square around (x, y).
    static void PlotAdditiveBrush(QImage& image, int x, int y, float radius, float flow, float cap);

    /// Clears every alpha under the grid.
    static void EraseGrid(QImage& image, int x0, int y0, int x1, int y1);
};

} // namespace vellix
