#include "paint/WuPrimitives.h"

#include "paint/SegmentClip.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace vellix {

namespace {

constexpr float MAX_CIRCLE_RADIUS = 65536.0f;

void Plot(const PixelView& view, int x, int y, float c) {
    if (view.Contains(x, y)) {
        view.Raise(x, y, c > 0.0f ? int(double(std::min(c, 1.0f)) * 255.0) : 0);
    }
}

// fillPlot on a view. Visits only columns that can lie inside the image.
void PlotMirrored(const PixelView& view, int cx, int cy, int xmax, int y, float r, float c) {
    if (cy + y >= view.height && cy - y < 0) {
        return;
    }
    const int first = std::max({0, -cx, cx - (view.width - 1)});
    const int last = std::min(xmax, std::max(cx, view.width - 1 - cx));
    for (int i = first; i <= last; ++i) {
        const float distance = std::sqrt(float(i) * float(i) + float(y) * float(y)) / r;
        const float value = distance > 1.0f ? 0.0f : (1.0f - distance) * c;
        Plot(view, cx + i, cy + y, value);
        Plot(view, cx - i, cy - y, value);
        if (i != 0 && y != 0) {
            Plot(view, cx + i, cy - y, value);
            Plot(view, cx - i, cy + y, value);
        }
    }
}

// Remembers which spans of one circle are already filled. Spans outside the table may be filled more than
// once, which costs time but changes no pixel.
class VisitedSpans {
public:
    // Returns whether this is the first visit to the span.
    bool Enter(int x, int y) {
        if (x >= SIDE || y >= SIDE) {
            return true;
        }
        const bool first = visited_[x][y] == 0;
        visited_[x][y] = 1;
        return first;
    }

private:
    static constexpr int SIDE = 50;
    quint8 visited_[SIDE][SIDE] = {};
};

} // namespace

void plot_(QImage& image, int x, int y, float c) {
    Plot(PixelView(image), x, y, c);
}

void ciclePlot(QImage& image, float cx, float cy, float dx, float dy, float c) {
    const PixelView view(image);
    Plot(view, ipart_(cx + dx), ipart_(cy + dy), c);
    Plot(view, ipart_(cx - dx), ipart_(cy + dy), c);
    Plot(view, ipart_(cx + dx), ipart_(cy - dy), c);
    Plot(view, ipart_(cx - dx), ipart_(cy - dy), c);
}

void fillPlot(QImage& image, int cx, int cy, int xmax, int y, float r, float c) {
    PlotMirrored(PixelView(image), cx, cy, xmax, y, r, c);
}

void drawCircleWu(QImage& image, int cx, int cy, float r, float c) {
    const int farthest = int(MAX_CIRCLE_RADIUS) + IMAGE_WIDTH;
    if (!(r > 0.0f) || std::abs(double(cx)) > farthest || std::abs(double(cy)) > farthest) {
        return;
    }
    r = std::min(r, MAX_CIRCLE_RADIUS);
    const PixelView view(image);
    VisitedSpans visited;
    const float square = r * r;
    const int q = round_(square / std::sqrt(2.0f * square)); // where the two octants meet
    for (int x = 0; x <= q; ++x) {
        const float y = r * std::sqrt(std::max(0.0f, 1.0f - float(x) * float(x) / square));
        const int fy = int(std::floor(y));
        if (visited.Enter(x, fy)) {
            PlotMirrored(view, cx, cy, x, fy, r, c);
        }
        if (visited.Enter(fy, x)) {
            PlotMirrored(view, cx, cy, fy, x, r, c);
        }
    }
}

void drawLineWu(QImage& image, int x0, int y0, int x1, int y1, float c) {
    SegmentClip segment;
    segment.from = QPoint(x0, y0);
    segment.to = QPoint(x1, y1);
    if (segment.Cut()) {
        drawLineWu(PixelView(image), segment.from.x(), segment.from.y(), segment.to.x(), segment.to.y(), c);
    }
}

// The end points are whole pixels, as in Wu's paper, and get the full coverage. plot_ keeps the larger alpha,
// so the half coverage that fractional end points would get would leave a gap wherever two segments of a
// stroke meet.
void drawLineWu(const PixelView& view, int x0, int y0, int x1, int y1, float c) {
    const bool steep = std::abs(y1 - y0) > std::abs(x1 - x0);
    if (steep) {
        std::swap(x0, y0);
        std::swap(x1, y1);
    }
    if (x0 > x1) {
        std::swap(x0, x1);
        std::swap(y0, y1);
    }
    const auto plot = [&](int major, int minor, float coverage) {
        Plot(view, steep ? minor : major, steep ? major : minor, coverage);
    };
    plot(x0, y0, c);
    plot(x1, y1, c);
    // fpart_ follows Wu's algorithm only from 0 up, so the walk is shifted there.
    const int shift = std::min({0, y0, y1});
    const float gradient = x1 == x0 ? 0.0f : float(y1 - y0) / float(x1 - x0);
    float exact = float(y0 - shift) + gradient;
    for (int x = x0 + 1; x < x1; ++x, exact += gradient) {
        const int y = ipart_(exact);
        plot(x, y + shift, rfpart_(exact) * c);
        plot(x, y + shift + 1, fpart_(exact) * c);
    }
}

} // namespace vellix
