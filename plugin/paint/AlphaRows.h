#pragma once

#include <QtGlobal>

/// The inner loops of stamping. Each works on one row of RGBA8888 pixels and changes only the alpha bytes.
/// Written plainly so that the compiler can vectorise them.
namespace vellix {
namespace alpha_rows {

/// alpha = max(alpha, coverage)
void Raise(quint32* __restrict pixels, const quint8* __restrict coverage, int count);

/// alpha = max(alpha, min(cap, alpha + truncate(coverage * flow))), cap 0..255
void Add(quint32* __restrict pixels, const quint8* __restrict coverage, int count, float flow, int cap);

/// alpha = 0 where coverage is not 0
void Erase(quint32* __restrict pixels, const quint8* __restrict coverage, int count);

/// coverage = truncate(weight * opacity * 255), weights and opacity 0..1
void Scale(const float* __restrict weights, float opacity, quint8* __restrict coverage, int count);

} // namespace alpha_rows
} // namespace vellix
