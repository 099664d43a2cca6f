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
    constexpr int vector = 8;
    return (count + vector - 1) / vector * vector;
}

// Whether the flow changes an alpha; also rejects NaN and the negative flows that rfpart_() gives below 0.
bool Flows(float flow) {
    return flow * 255.0f >= 1.0f;
}

int LimitOf(float cap) {
    return cap > 0.0f ? int(std::min(cap, 1.0f) * 255.0f) : 0;
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
    ScaleRows();
}

void BrushGrid::ScaleRows() {
    if (filledRows_.first >= filledRows_.end) {
        return;
    }
    const int column = filledColumns_.first;
    const int columns = WholeVectors(filledColumns_.end - column);
    int begin = filledRows_.first;
    int end = filledRows_.end;
    if (isMirrored_) {
        const int above = (end - begin) / 2;
        alpha_rows::ScaleMirrored(weights_[begin] + column, opacity_, Cells(begin) + column,
                                  Cells(end - 1) + column, STRIDE, columns, above);
        begin += above;
        end -= above;
    }
    alpha_rows::Scale(weights_[begin] + column, opacity_, Cells(begin) + column, STRIDE, columns,
                      end - begin);
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
    filledColumns_ = {SIDE, 0};
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
            filledColumns_.first = std::min(filledColumns_.first, spans_[row].first);
            filledColumns_.end = std::max(filledColumns_.end, spans_[row].end);
        }
    }
    isMirrored_ = true;
    for (int row = filledRows_.first; row < filledRows_.end; ++row) {
        const int other = filledRows_.end - 1 - (row - filledRows_.first);
        isMirrored_ = isMirrored_ && std::equal(weights_[row], weights_[row] + SIDE, weights_[other]);
    }
    FindRuns();
}

void BrushGrid::FindRuns() {
    const auto run = [](int first, int end) { return alpha_rows::Run{first, WholeVectors(end - first)}; };
    const int count = filledRows_.end - filledRows_.first;
    for (int i = 0; i < count; ++i) {
        const Span span = spans_[filledRows_.first + i];
        runs_[i] = run(span.first, span.end);
        runsWithRight_[i] = run(span.first, span.end + 1);
    }
    for (int i = 0; i <= count && count > 0; ++i) {
        const Span span = spans_[filledRows_.first + std::min(i, count - 1)];
        const Span above = spans_[filledRows_.first + std::max(i - 1, 0)];
        runsWithBelow_[i] = run(std::min(span.first, above.first), std::max(span.end, above.end));
    }
}

BrushGrid::Place BrushGrid::PlaceOf(int x0, int y0, int x1, int y1) {
    for (int* const edge : {&x0, &y0, &x1, &y1}) {
        constexpr int farOut = 1 << 20;
        *edge = std::min(std::max(*edge, -farOut), farOut);
    }
    return {x0 - 1, y0 - 1, std::min(int(SIDE), x1 - (x0 - 1)), std::min(int(SIDE), y1 - (y0 - 1))};
}

BrushGrid::Place BrushGrid::PlaceAround(int x, int y, float radius) {
    return PlaceOf(ipart_(float(x) - radius), ipart_(float(y) - radius), ipart_(float(x) + radius + 1.0f),
                   ipart_(float(y) + radius + 1.0f));
}

alpha_rows::Stamp BrushGrid::StampOn(const PixelView& view, const Place& place, int firstRow,
                                     const alpha_rows::Run* runs, int rowCount) const {
    // The first cell may lie outside the image; the runs do not.
    quint32* const pixels = view.pixels + qptrdiff(place.top + firstRow) * view.stride + place.left;
    return {pixels, view.stride, Cells(firstRow), nullptr, STRIDE, runs, rowCount};
}

// Whether neither its rectangle nor the image cuts the stamp, nor one that lies a pixel lower or to the
// right, whole vectors included.
bool BrushGrid::IsWhole(const PixelView& view, const Place& place) const {
    return filledColumns_.end <= place.columns && filledRows_.end <= place.rows && place.left >= 0 &&
           place.top >= 0 && place.left + filledColumns_.end + WholeVectors(1) <= view.width &&
           place.top + filledRows_.end < view.height;
}

// For each row, the cells that are filled and lie inside both the rectangle and the image. Rounds the count
// up to whole vectors where the image is wide enough: empty cells change no pixel.
alpha_rows::Stamp BrushGrid::FindRows(const PixelView& view, const Place& place, CutRows& cut) const {
    if (IsWhole(view, place)) {
        return StampOn(view, place, filledRows_.first, runs_, filledRows_.end - filledRows_.first);
    }
    if (place.left < -SIDE || place.left >= view.width || place.top < -SIDE || place.top >= view.height) {
        return StampOn(view, {0, 0, 0, 0}, 0, runs_, 0);
    }
    const int firstRow = std::max(filledRows_.first, -place.top);
    const int endRow = std::min(std::min(filledRows_.end, place.rows), view.height - place.top);
    const int firstColumn = std::max(0, -place.left);
    const int endColumn = std::min(place.columns, view.width - place.left);
    for (int row = firstRow; row < endRow; ++row) {
        const Span span = spans_[row];
        const int first = std::max(firstColumn, span.first);
        int count = std::min(endColumn, span.end) - first;
        if (count > 0 && first + count == span.end) {
            count = std::min(WholeVectors(count), view.width - place.left - first);
        }
        cut.rows[row - firstRow] = {first, count};
    }
    return StampOn(view, place, firstRow, cut.rows, endRow - firstRow);
}

// The rows of two stamps, the second one a pixel lower or further right. Returns false where one of them is
// cut off; elsewhere their rectangles are a pixel apart too.
bool BrushGrid::FindRowsOfTwo(const PixelView& view, const Place& place, bool isRight,
                              alpha_rows::Stamp& stamp) const {
    if (!IsWhole(view, place)) {
        return false;
    }
    const int rows = filledRows_.end - filledRows_.first;
    stamp = isRight ? StampOn(view, place, filledRows_.first, runsWithRight_, rows)
                    : StampOn(view, place, filledRows_.first, runsWithBelow_, rows == 0 ? 0 : rows + 1);
    stamp.beside = stamp.coverage - (isRight ? 1 : STRIDE);
    return true;
}

void BrushGrid::Raise(const PixelView& view, int x0, int y0, int x1, int y1) const {
    CutRows cut;
    alpha_rows::Raise(FindRows(view, PlaceOf(x0, y0, x1, y1), cut));
}

void BrushGrid::Add(const PixelView& view, int x0, int y0, int x1, int y1, float cap, float flow) const {
    Add(view, PlaceOf(x0, y0, x1, y1), flow, cap);
}

void BrushGrid::Add(const PixelView& view, const Place& place, float flow, float cap) const {
    if (Flows(flow)) {
        CutRows cut;
        alpha_rows::Add(FindRows(view, place, cut), flow, LimitOf(cap));
    }
}

void BrushGrid::AddAround(const PixelView& view, int x, int y, float radius, float flow, float cap) const {
    Add(view, PlaceAround(x, y, radius), flow, cap);
}

void BrushGrid::AddAroundTwo(const PixelView& view, int x, int y, bool isRight, float radius, float flow,
                             float flowBeside, float cap) const {
    const Place place = PlaceAround(x, y, radius);
    alpha_rows::Stamp stamp;
    if (Flows(flow) && Flows(flowBeside) && FindRowsOfTwo(view, place, isRight, stamp)) {
        alpha_rows::AddTwo(stamp, flow, flowBeside, LimitOf(cap));
    } else {
        Add(view, place, flow, cap);
        AddAround(view, isRight ? x + 1 : x, isRight ? y : y + 1, radius, flowBeside, cap);
    }
}

void BrushGrid::Erase(const PixelView& view, int x0, int y0, int x1, int y1) const {
    CutRows cut;
    alpha_rows::Erase(FindRows(view, PlaceOf(x0, y0, x1, y1), cut));
}

} // namespace vellix
