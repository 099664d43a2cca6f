#pragma once

#include <QtGlobal>

#include <cstddef>

/// The inner loops of stamping. They change only the alpha bytes of RGBA8888 pixels. Written plainly so that
/// the compiler can vectorise them; each call paints a whole stamp, since its rows are too short to call a
/// function for.
namespace vellix {
namespace alpha_rows {

/// The pixels of a row that a stamp changes, counted from the column of the stamp's first cell.
struct Run {
    int first;
    int count;
};

/// A stamp over the pixels. Coverage is a whole number, 0..255, of each cell.
struct Stamp {
    quint32* pixels; ///< under the first cell of the first row
    std::ptrdiff_t pixelStride;
    const float* coverage;
    const float* beside; ///< the cells of a second stamp over the same pixels; only AddTwo() reads it
    std::ptrdiff_t coverageStride;
    const Run* runs; ///< of each row
    int rowCount;
};

/// alpha = max(alpha, coverage)
void Raise(const Stamp& stamp);

/// alpha = max(alpha, min(cap, alpha + truncate(coverage * flow))), cap 0..255
void Add(const Stamp& stamp, float flow, int cap);

/// Add() with the coverage and then with that of the stamp beside.
void AddTwo(const Stamp& stamp, float flow, float flowBeside, int cap);

/// alpha = 0 where coverage is not 0
void Erase(const Stamp& stamp);

/// coverage = truncate(weight * opacity * 255), weights and opacity 0..1. Rows are `stride` values apart.
void Scale(const float* weights, float opacity, float* coverage, std::ptrdiff_t stride, int columns,
           int rowCount);

/// Scale() whose rows are also written upside down: the first one to `mirrored`, the next one above it.
void ScaleMirrored(const float* weights, float opacity, float* coverage, float* mirrored,
                   std::ptrdiff_t stride, int columns, int rowCount);

} // namespace alpha_rows
} // namespace vellix
