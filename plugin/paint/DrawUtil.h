#pragma once

#include "paint/Stroke.h"

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QPoint>
#include <QRect>

class QPainter;

namespace vellix {

class BrushGrid;

/// Paints strokes into layer images and packs images as PNG.
///
/// Layer images are `QImage::Format_RGBA8888`, 1024 x 1024 pixels; positions and sizes are image pixels, y
/// down. The freehand tools write alpha only: the caller has filled the image with the stroke's colour at
/// alpha 0, or, for the eraser, with the picture to erase from. An image of another format is left alone by
/// them.
///
/// One brush grid serves the whole process, so all of the freehand painting belongs to one thread. PNG
/// packing may be done on any thread.
class DrawUtil {
public:
    // --- whole strokes

    /// Clears the image and draws a shape or text stroke into it; other tools leave the image empty.
    /// `editing` frames the text that is being typed.
    static void DrawStroke(QImage& image, const Stroke& stroke, bool editing);

    /// Rasterises the segments after point `start` of a pencil, brush or eraser stroke: (start, start + 1)
    /// and so on. Returns the rectangle outside which no pixel was touched, inside the image; empty if
    /// nothing was. Sizes above 100 are painted as 100, opacities outside 0..1 as the nearest bound; segments
    /// from far outside the image are cut first (SegmentClip), so that a wild position costs no more than a
    /// long line.
    static QRect DrawFreehand(QImage& image, const QList<StrokePoint>& points, int start, ToolType tool);

    // --- shapes, text and transform, through a painter on the image

    static void DrawLine(QPainter& painter, const QList<StrokePoint>& points, const QColor& color);
    static void DrawArrow(QPainter& painter, const QList<StrokePoint>& points, const QColor& color);
    static void DrawEllipse(QPainter& painter, const QList<StrokePoint>& points, const QColor& color);
    static void DrawRectangle(QPainter& painter, const QList<StrokePoint>& points, const QColor& color);
    static void DrawTextString(QPainter& painter, const QList<StrokePoint>& points, const QColor& color,
                               const QString& text, const QString& fontFamily, bool editing);

    /// Draws the lifted region moved, rotated and scaled as the stroke says, or untransformed for a pasted
    /// one.
    static void DrawTransform(QPainter& painter, const Stroke& stroke, const QImage& lifted);
    /// What DrawTransform() draws, and where its left top pixel goes. Null when there is nothing to draw, or
    /// when the transformed region is too large for an image.
    static QImage TransformLifted(const Stroke& stroke, const QImage& lifted, QPoint& leftTop);

    /// End of one head line of an arrow from p0 to p1, `angle` radians off the shaft. Heads are 40 pixels
    /// long, and shorter in proportion on shafts below 200 pixels; p1 itself when the shaft has no length.
    static QPoint GetArrowHeadPoint(const QPoint& p0, const QPoint& p1, float angle);

    /// Euclidean distance of two points.
    static float Distance(int x0, int y0, int x1, int y1);

    // --- PNG

    /// What PNG bytes would become.
    enum class PngContent {
        Undecodable, ///< no PNG, a damaged one, or one with a side above 8192 pixels
        OtherSize,   ///< decodes, but not to 1024 x 1024
        LayerSize,   ///< decodes to 1024 x 1024
    };

    /// Encodes the image as PNG; a failure (a null image) leaves `packed` empty.
    static void PackPngBuffer(const QImage& image, QByteArray& packed);

    /// Decodes PNG bytes into a 1024 x 1024 `Format_RGBA8888` image. A picture of another size is placed at
    /// the top left and cropped. What cannot be decoded leaves a null image; returns whether it could.
    static bool UnpackPngBuffer(const QByteArray& packed, QImage& image);

    /// Tells whether UnpackPngBuffer would succeed, and whether the picture has the size of a layer already.
    /// Decodes the bytes to know.
    static PngContent CheckPngBuffer(const QByteArray& packed);

    /// Makes sure that `packed` holds a decodable PNG of 1024 x 1024: packs a picture of another size anew.
    /// Returns false, and leaves the bytes as they are, if they cannot be decoded.
    static bool NormalisePngBuffer(QByteArray& packed);

    // --- freehand segments and the brush grid
    // Part of the interface for scripts and other tools; not called here.

    /// Walks one segment with Bresenham's algorithm and stamps the grid along it.
    static void DrawFreehandSegment(QImage& image, int x0, int y0, int x1, int y1, int size, float opacity0,
                                    float opacity1, float hardness, ToolType tool);

    /// Walks one segment with Wu's algorithm, every plotted point being a soft stamp. `first` adds the
    /// stroke's starting dab.
    static void DrawFreehandSegmentBrush(QImage& image, int x0, int y0, int x1, int y1, int size,
                                         ToolType tool, float opacity0, float opacity1, float hardness,
                                         bool first);

    /// Builds the grid of a soft brush: sizes up to 19 get one pixel more radius and 40 % of the opacity.
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

    /// PlotGridAdditive around (x, y).
    static void PlotAdditiveBrush(QImage& image, int x, int y, float radius, float flow, float cap);

    /// Clears every alpha under the grid.
    static void EraseGrid(QImage& image, int x0, int y0, int x1, int y1);
};

} // namespace vellix
