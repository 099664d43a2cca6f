#pragma once

#include "paint/PixelView.h"

#include <QImage>
#include <QPoint>

#include <limits>

/// Xiaolin Wu's anti-aliased primitives ("An Efficient Antialiasing Technique", SIGGRAPH 1991), painting into
/// the alpha channel only. Images are `QImage::Format_RGBA8888`; any other format is left alone. Nothing is
/// written outside the image or its first 1024 x 1024 pixels. Coordinates are image pixels; a coverage c is
/// 0..1.
namespace vellix {

/// Integer part, truncated toward zero. Clamped to the range of int; 0 for NaN.
inline int ipart_(float x) {
    constexpr float limit = 2147483648.0f;
    if (x >= limit) {
        return std::numeric_limits<int>::max();
    }
    if (x < -limit) {
        return std::numeric_limits<int>::min();
    }
    return x == x ? int(x) : 0;
}

/// ipart_(x + 0.5). Intentionally truncates, so negative values round toward zero.
inline int round_(float x) {
    return ipart_(x + 0.5f);
}

/// Fractional part: x - ipart_(x) from 0 up, 1 - (x - ipart_(x)) below 0.
inline float fpart_(float x) {
    const float rest = x - float(ipart_(x));
    return x < 0.0f ? 1.0f - rest : rest;
}

/// 1 - fpart_(x)
inline float rfpart_(float x) {
    return 1.0f - fpart_(x);
}

/// Draws an anti-aliased line one pixel wide, both end pixels at full coverage. Walks its whole length
/// without clipping.
void drawLineWu(const PixelView& view, int x0, int y0, int x1, int y1, float c);

// Part of the interface for scripts and other tools; not called here.

/// Raises the alpha of a pixel to truncate(c * 255); never lowers it.
void plot_(QImage& image, int x, int y, float c);

/// Calls plot_ at the four points (cx +- dx, cy +- dy), truncated.
void ciclePlot(QImage& image, float cx, float cy, float dx, float dy, float c);

/// Draws two horizontal runs, mirrored at the centre (cx, cy): columns cx - xmax .. cx + xmax of the rows cy
/// + y and cy - y. Coverage falls from c at the centre to 0 at distance r.
void fillPlot(QImage& image, int cx, int cy, int xmax, int y, float r, float c);

/// Draws a disc with the fall-off of fillPlot. Radii above 65536 are drawn as 65536.
void drawCircleWu(QImage& image, int cx, int cy, float r, float c);

/// Draws the line of the overload above, first cut by SegmentClip.
void drawLineWu(QImage& image, int x0, int y0, int x1, int y1, float c);

} // namespace vellix
