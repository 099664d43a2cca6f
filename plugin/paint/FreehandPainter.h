#pragma once

#include "paint/BrushGrid.h"
#include "paint/PixelView.h"
#include "paint/SegmentClip.h"
#include "paint/Stroke.h"
#include "paint/TileMask.h"

namespace vellix {

/// Rasterises segments of freehand strokes into one image with one brush grid. Borrows both.
class FreehandPainter {
public:
    /// The largest size, in image pixels, that the grid holds. Larger sizes are painted as this.
    static constexpr int MAX_SIZE = 100;

    FreehandPainter(const PixelView& view, BrushGrid& grid)
        : view_(view)
        , grid_(grid) {}

    /// Paints the segment between two consecutive samples as the tool requires. `first` says that it is the
    /// stroke's first.
    void Segment(const StrokePoint& from, const StrokePoint& to, ToolType tool, bool first);

    /// The tiles that the segment may touch, whatever the tool.
    static TileMask ReachOf(const StrokePoint& from, const StrokePoint& to);

    /// Paints a segment along Bresenham's walk. For the pencil and the eraser, and for other tools through
    /// DrawUtil::DrawFreehandSegment.
    void HardSegment(SegmentClip segment, int size, ToolType tool);

    /// Paints a segment along Wu's walk with soft stamps. `first` adds the stroke's starting dab.
    void SoftSegment(SegmentClip segment, int size, ToolType tool, bool first);

    /// Returns the tiles that hold every pixel touched so far.
    const TileMask& Touched() const { return touched_; }

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

    PixelView view_;
    BrushGrid& grid_;
    TileMask touched_;
};

} // namespace vellix
