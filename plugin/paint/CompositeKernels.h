#pragma once

#include "paint/TileMask.h"

#include <QtGlobal>

#include <cstddef>

namespace vellix {

/// The loops over pixels of composition, written so that compilers turn them into vector instructions; where
/// the platform allows, each is compiled for AVX2 as well, and chosen when the program starts.
///
/// Pixels in images are 32-bit words of the bytes red, green, blue, alpha, straight alpha; strides count
/// pixels. Inside composition a tile is planar: all of its reds, then greens, blues and alphas, row by row.
/// "Bytes" are straight alpha, 0..255. "Sums" are premultiplied with 16 bits a channel, 0..65025 (255 x 255),
/// which keeps the rounding errors of tall stacks far below one step of 8 bits.
namespace CompositeKernels {

constexpr int TILE_PIXELS = TileMask::TILE_WIDTH * TileMask::TILE_WIDTH;
constexpr int TILE_VALUES = 4 * TILE_PIXELS; ///< bytes or sums of one tile

/// Parts a tile of an image into planes.
void SplitTile(quint8* bytes, const quint32* pixels, std::ptrdiff_t stride);
/// Paints a tile over sums.
void PaintTile(quint16* sums, const quint8* bytes);
/// The same at an opacity of 0..255.
void PaintFadedTile(quint16* sums, const quint8* bytes, int opacity);
/// Paints sums over sums.
void PaintSums(quint16* sums, const quint16* source);
/// Writes sums into a tile of an image; fully transparent pixels become 0.
void WriteTile(quint32* pixels, std::ptrdiff_t stride, const quint16* sums);

/// Paints pixels over pixels of the same kind; those under fully transparent ones keep their bytes.
void SourceOver(quint32* target, const quint32* source, int count);
/// Gives the pixels that are not fully transparent the red, green and blue of `color`.
void OverrideColor(quint32* pixels, int count, quint32 color);
/// Ors and ands pixels into running results.
void Gather(const quint32* pixels, int count, quint32* anyBits, quint32* allBits);

} // namespace CompositeKernels
} // namespace vellix
