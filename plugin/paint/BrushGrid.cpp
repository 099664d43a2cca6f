#include "paint/BrushGrid.h"

#include "paint/AlphaRows.h"
#include "paint/WuPrimitives.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace vellix {

namespace {

float CentreOf(float radius, ToolType tool) {
    return tool == ToolType::Pencil ? radius + 1.0f : radius;
}

int WholeVectors(int count) {
    constexpr int vector = 16;
    return (count + vector - 1) / vector * vector;
}

} // namespace

void BrushGrid::UpdateGridWu(float hardness, float radius, float opacity, ToolType tool) {
    radius = radius > 0.0f ? std::min(radius, float(MAX_RADIUS)) : 0.0f;
    opacity = opacity > 0.0f ? std::min(opacity, 1.0f) : 0.0f;
    const bool sameShape = hardness == hardness_ && radius == radius_ && tool == tool_;
    if (sameShape && opacity == opacity_) {
        return;
    }
    if (!sameShape) {
        BuildShape(hardness, radius, tool);
        hardness_ = hardness;
        radius_ = radius;
        tool_ = tool;
        std::memset(cells_, 0, sizeof cells_);
    }
    opacity_ = opacity;
    for (int row = filledRows_.first; row < filledRows_.end; ++row) {
        const Span span = spans_[row];
        alpha_rows::Scale(weights_[row] + span.first, opacity, cells_[row] + span.first,
                          span.end - span.first);
    }
}

void BrushGrid::UpdateBrushGrid(int size, float radius, float opacity, ToolType tool) {
    if (size <= LARGEST_SMALL_BRUSH) {
        UpdateGridWu(0.0f, radius + 1.0f, opacity * 0.4f, tool);
    } else {
        UpdateGridWu(0.0f, radius, opacity, tool);
    }
}

void BrushGrid::BuildShape(float hardness, float radius, ToolType tool) {
    std::fill_n(&weights_[0][0], SIDE * STRIDE, 0.0f);
    if (radius == 1.0f) {
        for (const int column : {1, 2}) {
            weights_[1][column] = weights_[2][column] = 1.0f;
        }
    } else if (radius > 0.0f) {
        BuildOctants(hardness, radius, tool);
    }
    FindSpans();
}

// In the first octant x runs along the columns and y is the rim's row; in the second they change places. Wu
// shares a rim pixel between the rows floor(y) and floor(y) + 1. Here the fill covers floor(y), so only the
// pencil's share of floor(y) + 1 is drawn: the disc is full up to the radius and fades out over the one cell
// beyond.
void BrushGrid::BuildOctants(float hardness, float radius, ToolType tool) {
    const float square = radius * radius;
    const int q = int(std::lround(square / std::sqrt(2.0f * square)));
    for (int x = 0; x <= q; ++x) {
        const float y = radius * std::sqrt(std::max(0.0f, 1.0f - float(x * x) / square));
        const int fy = int(std::floor(y));
        if (tool == ToolType::Pencil) {
            OutlineGridWu(x, fy + 1, radius, y - float(fy), tool);
            OutlineGridWu(fy + 1, x, radius, y - float(fy), tool);
        }
        FillGridWu(x, fy, hardness, radius, tool);
        FillGridWu(fy, x, hardness, radius, tool);
    }
}

void BrushGrid::OutlineGridWu(int x, int y, float radius, float weight, ToolType tool) {
    SetMirrored(CentreOf(radius, tool), x, y, weight);
}

void BrushGrid::FillGridWu(int xmax, int y, float hardness, float radius, ToolType tool) {
    const float centre = CentreOf(radius, tool);
    for (int i = 0; i <= xmax; ++i) {
        float weight = 1.0f;
        if (tool == ToolType::Brush && radius > hardness) {
            const float distance = std::sqrt(float(i * i + y * y));
            const float t = (distance - hardness) / (radius - hardness);
            weight = 1.0f - std::min(std::max(t, 0.0f), 1.0f);
        }
        SetMirrored(centre, i, y, weight);
    }
}

// The rim of the largest discs reaches one cell past the grid, where its weight is 0. Those cells are
// skipped.
void BrushGrid::SetMirrored(float centre, int x, int y, float weight) {
    const int right = int(centre + float(x));
    const int left = int(centre - float(x));
    const int bottom = int(centre + float(y));
    const int top = int(centre - float(y));
    for (const int row : {top, bottom}) {
        for (const int column : {left, right}) {
            if (row >= 0 && row < SIDE && column >= 0 && column < SIDE) {
                weights_[row][column] = weight;
            }
        }
    }
}

void BrushGrid::FindSpans() {
    filledRows_ = {SIDE, 0};
    for (int row = 0; row < SIDE; ++row) {
        const float* begin = weights_[row];
        const float* end = begin + SIDE;
        const auto filled = [](float weight) { return weight > 0.0f; };
        const float* first = std::find_if(begin, end, filled);
        while (end != first && !filled(end[-1])) {
            --end;
        }
        spans_[row].first = int(first - begin);
        spans_[row].end = int(end - begin);
        if (end != first) {
            filledRows_.first = std::min(filledRows_.first, row);
            filledRows_.end = row + 1;
        }
    }
}

// Calls function(pixels, cells, count) for each grid row, with the cells that are filled and lie inside both
// the rectangle and the image. Rounds the count up to whole vectors where the image is wide enough: empty
// cells change no pixel.
template <typename RowFunction>
void BrushGrid::ForEachRow(const PixelView& view, int x0, int y0, int x1, int y1,
                           RowFunction function) const {
    if (x0 <= -SIDE || x0 > view.width || y0 <= -SIDE || y0 > view.height) {
        return;
    }
    const int left = x0 - 1;
    const int top = y0 - 1;
    const int firstRow = std::max(0, -top);
    const int endRow = std::min(int(SIDE), std::min(y1, view.height) - top);
    const int firstColumn = std::max(0, -left);
    const int endColumn = std::min(int(SIDE), std::min(x1, view.width) - left);
    for (int row = firstRow; row < endRow; ++row) {
        const Span span = spans_[row];
        const int first = std::max(firstColumn, span.first);
        int count = std::min(endColumn, span.end) - first;
        if (count <= 0) {
            continue;
        }
        if (first + count == span.end) {
            count = std::min(WholeVectors(count), view.width - left - first);
        }
        function(view.Row(top + row) + left + first, cells_[row] + first, count);
    }
}

void BrushGrid::Raise(const PixelView& view, int x0, int y0, int x1, int y1) const {
    ForEachRow(view, x0, y0, x1, y1, alpha_rows::Raise);
}

void BrushGrid::Add(const PixelView& view, int x0, int y0, int x1, int y1, float cap, float flow) const {
    if (!(flow * 255.0f >= 1.0f)) {
        return; // changes no alpha; also rejects NaN and the negative flows that rfpart_() gives below 0
    }
    const int limit = cap > 0.0f ? int(std::min(cap, 1.0f) * 255.0f) : 0;
    ForEachRow(view, x0, y0, x1, y1, [flow, limit](quint32* pixels, const quint8* cells, int count) {
        alpha_rows::Add(pixels, cells, count, flow, limit);
    });
}

void BrushGrid::AddAround(const PixelView& view, int x, int y, float radius, float flow, float cap) const {
    Add(view, ipart_(float(x) - radius), ipart_(float(y) - radius), ipart_(float(x) + radius + 1.0f),
        ipart_(float(y) + radius + 1.0f), cap, flow);
}

void BrushGrid::Erase(const PixelView& view, int x0, int y0, int x1, int y1) const {
    ForEachRow(view, x0, y0, x1, y1, alpha_rows::Erase);
}

} // namespace vellix
