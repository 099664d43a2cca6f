#pragma once

#include <QtGlobal>

#include <cstddef>

namespace vellix {

/// The filters of PNG (ISO/IEC 15948, clause 9) and the loops over rows of bytes. Where the platform allows,
/// the loops are also compiled for AVX2 (see CompositeKernels).
namespace png_filters {

enum Filter : quint8 { NONE, SUB, UP, AVERAGE, PAETH };

/// Returns whether all bytes are 0.
bool IsZero(const uchar* bytes, std::size_t count);

/// Returns how many pixels of a row differ from the one before.
std::size_t CountChanges(const quint32* pixels, std::size_t count);

/// Writes the red, green and blue of `Format_RGB32` pixels, three bytes each.
void TakeColors(const quint32* pixels, uchar* out, int count);

/// Writes a row of `count` bytes to `out` as the filter's number and the filtered bytes. Takes the one of
/// NONE, SUB and UP that leaves the smallest differences; the others would gain a few hundredths and take
/// longer to undo. `above` is the row before, or zeros.
void Apply(const uchar* row, const uchar* above, std::size_t count, std::size_t pixelBytes, uchar* out);

/// Turns a filtered row of pixels of four bytes back, in its place. Returns false for an unknown filter.
bool Undo(int filter, uchar* row, const uchar* above, std::size_t count);

} // namespace png_filters
} // namespace vellix
