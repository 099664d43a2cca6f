#pragma once

#include "paint/BrushGrid.h"
#include "paint/PixelView.h"
#include "paint/SegmentClip.h"
#include "paint/Stroke.h"

#include <QRect>

namespace vellix {

/// Rasterises segments of freehand strokes into one image with one grid, both borrowed.
class FreehandPainter {
public:
    /// Sizes above this are painted as this: the largest that the grid holds.
    static constexpr int MAX_SIZE = 100;

    FreehandPainter(const PixelView& view, BrushGrid& grid)
        : m_view(view)
        , m_grid(grid) {}

    /// The segment between two consecutive samples, as the tool draws it. `first`: it is the first of the
    /// stroke.
    void Segment(const StrokePoint& from, const StrokePoint& to, ToolType tool, bool first);

    /// Bresenham's walk: the pencil, the eraser, and the other tools when they are asked for this kind of
    /// segment.
    void HardSegment(SegmentClip segment, int size, ToolType tool);

    /// Wu's walk with soft stamps. `first` adds the stroke's starting dab.
    void SoftSegment(SegmentClip segment, int size, ToolType tool, bool first);

    /// What may have been touched so far, inside the image.
    QRect Touched() const;

private:
    struct SoftWalk;

    void WuLine(SegmentClip segment);
    template <typename Visit>
    static void WalkBresenham(const SegmentClip& segment, Visit visit);
    template <typename Stamp>
    void WalkStamps(const SegmentClip& segment, int size, Stamp stamp);
    void SinglePixels(const SegmentClip& segment, ToolType tool);
    void HardStamps(const SegmentClip& segment, int size, ToolType tool);
    void BrushStamps(const SegmentClip& segment, int size);
    void SoftStamp(const SoftWalk& walk, int major, int minor, float flow, float cap);
    void SoftEnd(const SoftWalk& walk, const QPoint& end, float gap, float cap);
    void SoftInterior(const SoftWalk& walk);
    void Touch(const SegmentClip& segment, int reach);

    PixelView m_view;
    BrushGrid& m_grid;
    QRect m_touched;
};

} // namespace vellix
