#pragma once

#include "paint/PixelView.h"

#include <QImage>
#include <QPoint>

/// Xiaolin Wu's anti-aliased primitives ("An Efficient Antialiasing Technique", SIGGRAPH 1991), painting into
/// the alpha channel only. Images are `QImage::Format_RGBA8888` (any other format is left alone); nothing is
/// written outside the image or its first 1024 x 1024 pixels. Coordinates are image pixels, coverages c are
/// 0..1.
namespace vellix {

/// Integer part by truncation toward zero; beyond the range of an int the nearest int, 0 for no number.
int ipart_(float x);

/// ipart_(x + 0.5): halves below zero go toward zero, on purpose.
int round_(float x);

/// Fractional part: x - ipart_(x), and 1 - (x - ipart_(x)) below zero.
float fpart_(float x);

/// 1 - fpart_(x)
float rfpart_(float x);

/// An anti-aliased line one pixel wide, both end pixels at full coverage. It is walked from end to end.
void drawLineWu(const PixelView& view, int x0, int y0, int x1, int y1, float c);

// Part of the interface for scripts and other tools; not called here.

/// Raises the alpha of a pixel to truncate(c * 255), never lowers it.
void plot_(QImage& image, int x, int y, float c);

/// plot_ at the four points (cx +- dx, cy +- dy), truncated.
void ciclePlot(QImage& image, float cx, float cy, float dx, float dy, float c);

/// Two horizontal runs, mirrored at the centre (cx, cy): columns cx - xmax .. cx + xmax of the rows cy + y
/// and cy - y. Coverage falls from c at the centre to 0 at distance r.
void fillPlot(QImage& image, int cx, int cy, int xmax, int y, float r, float c);

/// A disc with the fall-off of fillPlot. Radii above 65536 are drawn as 65536.
void drawCircleWu(QImage& image, int cx, int cy, float r, float c);

/// The same line, first cut as SegmentClip says.
void drawLineWu(QImage& image, int x0, int y0, int x1, int y1, float c);

} // namespace vellix
