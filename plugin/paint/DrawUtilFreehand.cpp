// The freehand half of DrawUtil: the process's one brush grid, and the operations that paint with it.
#include "paint/BrushGrid.h"
#include "paint/DrawUtil.h"
#include "paint/FreehandPainter.h"

#include <QImage>

#include <algorithm>

namespace vellix {

namespace {

BrushGrid& SharedGrid() {
    static BrushGrid grid;
    return grid;
}

} // namespace

TileMask DrawUtil::DrawFreehand(QImage& image, const QList<StrokePoint>& points, int start, ToolType tool) {
    start = std::max(start, 0);
    if (start >= points.size() - 1) {
        return TileMask();
    }
    const PixelView view(image);
    if (!view.pixels) {
        return TileMask();
    }
    FreehandPainter painter(view, SharedGrid());
    for (int i = start + 1; i < points.size(); ++i) {
        painter.Segment(points.at(i - 1), points.at(i), tool, i == 1);
    }
    return painter.Touched();
}

TileMask DrawUtil::ReachOfFreehand(const QList<StrokePoint>& points, int start) {
    TileMask tiles;
    for (int i = std::max(start, 0) + 1; i < points.size(); ++i) {
        tiles |= FreehandPainter::ReachOf(points.at(i - 1), points.at(i));
    }
    return tiles;
}

void DrawUtil::DrawFreehandSegment(QImage& image, int x0, int y0, int x1, int y1, int size, float opacity0,
                                   float opacity1, float /*hardness*/, ToolType tool) {
    FreehandPainter painter(PixelView(image), SharedGrid());
    painter.HardSegment({QPoint(x0, y0), QPoint(x1, y1), opacity0, opacity1}, size, tool);
}

void DrawUtil::DrawFreehandSegmentBrush(QImage& image, int x0, int y0, int x1, int y1, int size,
                                        ToolType tool, float opacity0, float opacity1, float /*hardness*/,
                                        bool first) {
    FreehandPainter painter(PixelView(image), SharedGrid());
    painter.SoftSegment({QPoint(x0, y0), QPoint(x1, y1), opacity0, opacity1}, size, tool, first);
}

void DrawUtil::UpdateBrushGrid(int size, float radius, float opacity, ToolType tool) {
    SharedGrid().UpdateBrushGrid(size, radius, opacity, tool);
}

void DrawUtil::UpdateGridWu(float hardness, float radius, float opacity, ToolType tool) {
    SharedGrid().UpdateGridWu(hardness, radius, opacity, tool);
}

const BrushGrid& DrawUtil::Grid() {
    return SharedGrid();
}

void DrawUtil::PlotGrid(QImage& image, int x0, int y0, int x1, int y1) {
    SharedGrid().Raise(PixelView(image), x0, y0, x1, y1);
}

void DrawUtil::PlotGridAdditive(QImage& image, int x0, int y0, int x1, int y1, float cap, float flow) {
    SharedGrid().Add(PixelView(image), x0, y0, x1, y1, cap, flow);
}

void DrawUtil::PlotAdditiveBrush(QImage& image, int x, int y, float radius, float flow, float cap) {
    SharedGrid().AddAround(PixelView(image), x, y, radius, flow, cap);
}

void DrawUtil::EraseGrid(QImage& image, int x0, int y0, int x1, int y1) {
    SharedGrid().Erase(PixelView(image), x0, y0, x1, y1);
}

} // namespace vellix
