#include "paint/FreehandPainter.h"

#include "paint/DrawUtil.h"
#include "paint/WuPrimitives.h"

#include <QRect>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace vellix {

namespace {

// Returns whether a stamp at (x, y) can reach the image. A stamp reaches half of the largest size to each
// side, plus a few pixels for the rounding of its rectangle.
bool StampReaches(const PixelView& view, int x, int y) {
    constexpr int reach = FreehandPainter::MAX_SIZE / 2 + 4;
    return x >= -reach && x < view.width + reach && y >= -reach && y < view.height + reach;
}

float Bounded(float opacity) {
    return opacity > 0.0f ? std::min(opacity, 1.0f) : 0.0f;
}

// How far a stamp of this size reaches from the segment.
int Reach(int size) {
    return qBound(0, size, int(FreehandPainter::MAX_SIZE)) / 2 + 4;
}

TileMask TilesAround(const SegmentClip& segment, int reach) {
    const int left = std::min(segment.from.x(), segment.to.x()) - reach;
    const int top = std::min(segment.from.y(), segment.to.y()) - reach;
    const int right = std::max(segment.from.x(), segment.to.x()) + reach;
    const int bottom = std::max(segment.from.y(), segment.to.y()) + reach;
    return TileMask::Touching(QRect(QPoint(left, top), QPoint(right, bottom)));
}

} // namespace

void FreehandPainter::Segment(const StrokePoint& from, const StrokePoint& to, ToolType tool, bool first) {
    const SegmentClip segment = {from.position, to.position, Bounded(from.opacity), Bounded(to.opacity)};
    if (tool != ToolType::Brush) {
        HardSegment(segment, from.size, tool);
    } else if (from.size == 1) {
        WuLine(segment);
    } else {
        SoftSegment(segment, from.size, tool, first);
    }
}

TileMask FreehandPainter::ReachOf(const StrokePoint& from, const StrokePoint& to) {
    SegmentClip segment = {from.position, to.position};
    return segment.Cut() ? TilesAround(segment, Reach(from.size)) : TileMask();
}

void FreehandPainter::WuLine(SegmentClip segment) {
    const float opacity = segment.opacityFrom; // all along the line, also where it is cut
    if (segment.Cut()) {
        touched_ |= TilesAround(segment, 1);
        drawLineWu(view_, segment.from.x(), segment.from.y(), segment.to.x(), segment.to.y(), opacity);
    }
}

// --- Bresenham's walk -------------------------------------------------------------------------------------

void FreehandPainter::HardSegment(SegmentClip segment, int size, ToolType tool) {
    if (!segment.Cut()) {
        return;
    }
    size = std::min(size, int(MAX_SIZE));
    if (tool == ToolType::Brush) {
        BrushStamps(segment, std::max(size, 1));
    } else if (size <= 1) {
        SinglePixels(segment, tool);
    } else {
        HardStamps(segment, size, tool);
    }
    touched_ |= TilesAround(segment, Reach(size));
}

// Calls `visit` for every pixel of the segment with the opacity there. The opacity changes by the same amount
// with every step along either axis.
template <typename Visit>
void FreehandPainter::WalkBresenham(const SegmentClip& segment, Visit visit) {
    int x = segment.from.x();
    int y = segment.from.y();
    const int endX = segment.to.x();
    const int endY = segment.to.y();
    const int dx = std::abs(endX - x);
    const int dy = std::abs(endY - y);
    const int sx = endX > x ? 1 : -1;
    const int sy = endY > y ? 1 : -1;
    int error = dx > dy ? dx / 2 : -(dy / 2);
    const float step = dx + dy == 0 ? 0.0f : (segment.opacityTo - segment.opacityFrom) / float(dx + dy);
    float opacity = segment.opacityFrom;
    for (;;) {
        visit(x, y, opacity);
        if (x == endX && y == endY) {
            return;
        }
        const int before = error;
        if (before > -dx) {
            error -= dy;
            x += sx;
            opacity += step;
        }
        if (before < dy) {
            error += dx;
            y += sy;
            opacity += step;
        }
    }
}

// Calls `stamp` at the start of the segment and then at intervals of a tenth of the size, at least one pixel.
// A soft brush above size 1 is stamped at every pixel instead (SoftInterior).
// Skips stamps that do not reach the image.
template <typename Stamp>
void FreehandPainter::WalkStamps(const SegmentClip& segment, int size, Stamp stamp) {
    const int spacing = std::max(size / 10, 1);
    int walked = 0;
    WalkBresenham(segment, [&](int x, int y, float opacity) {
        if (walked++ % spacing == 0 && StampReaches(view_, x, y)) {
            stamp(x, y, opacity);
        }
    });
}

// Column 0 is never painted here.
void FreehandPainter::SinglePixels(const SegmentClip& segment, ToolType tool) {
    WalkBresenham(segment, [&](int x, int y, float opacity) {
        if (x == 0 || !view_.Contains(x, y)) {
            return;
        }
        if (tool == ToolType::Eraser) {
            view_.Clear(x, y);
        } else {
            view_.Raise(x, y, int(double(Bounded(opacity)) * 255.0));
        }
    });
}

void FreehandPainter::HardStamps(const SegmentClip& segment, int size, ToolType tool) {
    const float radius = 0.5f * float(size);
    const int half = (size + 1) / 2;
    WalkStamps(segment, size, [&](int x, int y, float opacity) {
        grid_.UpdateGridWu(0.0f, radius, opacity, tool);
        if (tool == ToolType::Eraser) {
            grid_.Erase(view_, x - half, y - half, x + half + 1, y + half + 1);
        } else {
            grid_.Raise(view_, x - half, y - half, x + half + 1, y + half + 1);
        }
    });
}

void FreehandPainter::BrushStamps(const SegmentClip& segment, int size) {
    const bool small = size <= BrushGrid::LARGEST_SMALL_BRUSH;
    const float widened = !small ? 0.0f : size <= 2 ? 1.5f : size == 3 ? 1.25f : 1.0f;
    const float radius = 0.5f * float(size) + widened;
    const int half = (size + 1) / 2;
    WalkStamps(segment, size, [&](int x, int y, float opacity) {
        grid_.UpdateGridWu(0.0f, radius, small ? 0.4f * opacity : opacity, ToolType::Brush);
        if (small && QPoint(x, y) == segment.from) {
            grid_.Raise(view_, x - half, y - half, x + half + 1, y + half + 1);
        } else {
            grid_.Add(view_, x - half, y - half, x + half + 1, y + half + 1, opacity, 1.0f);
        }
    });
}

// --- Wu's walk --------------------------------------------------------------------------------------------

// A segment with its axes swapped and its ends exchanged as needed, so that it runs along rising x. Here x is
// always the major axis, whichever axis that is in the image.
struct FreehandPainter::SoftWalk {
    SoftWalk(const SegmentClip& segment, int brushSize, ToolType brushTool)
        : from(segment.from)
        , to(segment.to)
        , opacityFrom(segment.opacityFrom)
        , opacityTo(segment.opacityTo)
        , length(DrawUtil::Distance(from.x(), from.y(), to.x(), to.y()))
        , size(brushSize)
        , tool(brushTool) {
        steep = std::abs(to.y() - from.y()) > std::abs(to.x() - from.x());
        if (steep) {
            from = QPoint(from.y(), from.x());
            to = QPoint(to.y(), to.x());
        }
        strokeStart = from;
        strokeOpacity = opacityFrom;
        strokeOpacityChange = opacityTo - opacityFrom;
        if (from.x() > to.x()) {
            std::swap(from, to);
            std::swap(opacityFrom, opacityTo);
        }
    }

    bool Ramps() const { return length > 0.0f && strokeOpacityChange != 0.0f; }

    // The cap on alpha at a point of the walk. It changes with the distance from the stroke's own start,
    // whichever way the walk goes.
    float OpacityAt(int x, int y) const {
        const float walked = DrawUtil::Distance(strokeStart.x(), strokeStart.y(), x, y);
        return Bounded(strokeOpacity + strokeOpacityChange * walked / length);
    }

    float Radius() const { return 0.5f * float(size); }

    QPoint from;
    QPoint to;
    float opacityFrom;
    float opacityTo;
    float length;
    int size;
    ToolType tool;
    bool steep = false;
    QPoint strokeStart;
    float strokeOpacity = 1.0f;
    float strokeOpacityChange = 0.0f;
};

void FreehandPainter::SoftSegment(SegmentClip segment, int size, ToolType tool, bool first) {
    if (!segment.Cut()) {
        return;
    }
    size = std::min(std::max(size, 0), int(MAX_SIZE));
    touched_ |= TilesAround(segment, Reach(size));
    const SoftWalk walk(segment, size, tool);
    if (first) {
        grid_.UpdateBrushGrid(size, walk.Radius(), walk.strokeOpacity, tool);
        SoftStamp(walk, walk.strokeStart.x(), walk.strokeStart.y(), walk.strokeOpacity, walk.strokeOpacity);
    }
    SoftEnd(walk, walk.from, rfpart_(float(walk.from.x()) + 0.5f), walk.opacityFrom);
    SoftEnd(walk, walk.to, fpart_(float(walk.to.x()) + 0.5f), walk.opacityTo);
    SoftInterior(walk);
}

void FreehandPainter::SoftStamp(const SoftWalk& walk, int major, int minor, float flow, float cap) {
    const int x = walk.steep ? minor : major;
    const int y = walk.steep ? major : minor;
    grid_.AddAround(view_, x, y, walk.Radius(), flow, cap);
}

void FreehandPainter::SoftEnd(const SoftWalk& walk, const QPoint& end, float gap, float cap) {
    grid_.UpdateBrushGrid(walk.size, walk.Radius(), cap, walk.tool);
    const float minor = float(end.y());
    SoftStamp(walk, end.x(), ipart_(minor), gap * rfpart_(minor), cap);
    SoftStamp(walk, end.x(), ipart_(minor) + 1, gap * fpart_(minor), cap);
}

void FreehandPainter::SoftInterior(const SoftWalk& walk) {
    const bool ramps = walk.Ramps();
    const float gradient = float(walk.to.y() - walk.from.y()) / float(walk.to.x() - walk.from.x());
    float cap = walk.opacityTo;
    float exact = float(walk.from.y()) + gradient;
    for (int major = walk.from.x() + 1; major < walk.to.x(); ++major, exact += gradient) {
        const int minor = ipart_(exact);
        if (!StampReaches(view_, walk.steep ? minor : major, walk.steep ? major : minor)) {
            continue;
        }
        if (ramps) {
            cap = walk.OpacityAt(major, minor);
            grid_.UpdateBrushGrid(walk.size, walk.Radius(), cap, walk.tool);
        }
        grid_.AddAroundTwo(view_, walk.steep ? minor : major, walk.steep ? major : minor, walk.steep,
                           walk.Radius(), rfpart_(exact), fpart_(exact), cap);
    }
}

} // namespace vellix
