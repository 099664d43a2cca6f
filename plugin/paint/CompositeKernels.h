#pragma once

#include "paint/TileMask.h"

#include <QtGlobal>

#include <cstddef>

namespace vellix {

/// The pixel loops of composition, written so that compilers vectorise them. Where the platform allows, each
/// is also compiled for AVX2, and the loader picks the version when the program starts.
///
/// Pixels in images are 32-bit words of the bytes red, green, blue, alpha, with straight alpha; strides count
/// pixels. Inside composition a tile is planar: all reds, then all greens, blues and alphas, row by row.
/// "Bytes" are straight alpha, 0..255. "Sums" are premultiplied with 16 bits per channel, 0..65025 (255 x
/// 255), which keeps the rounding errors of tall stacks far below one 8-bit step.
namespace composite_kernels {

constexpr int TILE_PIXELS = TileMask::TILE_WIDTH * TileMask::TILE_WIDTH;
constexpr int TILE_VALUES = 4 * TILE_PIXELS; ///< number of bytes or sums in one tile

/// Splits a tile of an image into planes.
void SplitTile(quint8* bytes, const quint32* pixels, std::ptrdiff_t stride);
/// The alphas alone of a tile of an image.
void SplitAlphas(quint8* alphas, const quint32* pixels, std::ptrdiff_t stride);
/// Whether all pixels of the tile that are not fully transparent have the red, green and blue of `color`.
bool IsFlat(const quint32* pixels, std::ptrdiff_t stride, quint32 color);
/// Paints the bytes of a tile over sums.
void PaintTile(quint16* sums, const quint8* bytes);
/// PaintTile() at an opacity of 0..255.
void PaintFadedTile(quint16* sums, const quint8* bytes, int opacity);
/// PaintTile() for a tile whose pixels all have the red, green and blue of `color`.
void PaintFlatTile(quint16* sums, const quint8* alphas, quint32 color);
/// PaintFlatTile() at an opacity of 0..255.
void PaintFadedFlatTile(quint16* sums, const quint8* alphas, quint32 color, int opacity);
/// Paints sums over sums.
void PaintSums(quint16* sums, const quint16* source);
/// Writes sums into a tile of an image; fully transparent pixels become 0.
void WriteTile(quint32* pixels, std::ptrdiff_t stride, const quint16* sums);

/// Paints image pixels over image pixels. A target pixel under a fully transparent source pixel keeps its
/// bytes.
void SourceOver(quint32* target, const quint32* source, int count);
/// Sets red, green and blue of the pixels that are not fully transparent to those of `color`.
void OverrideColor(quint32* pixels, int count, quint32 color);
/// Copies a tile of an image, row by row, with fully transparent pixels as 0. The others become
/// `pixel & keep | set`.
void CopyVisible(quint32* tile, const quint32* pixels, std::ptrdiff_t stride, quint32 keep, quint32 set);
/// ORs pixels into `anyBits` and ANDs them into `allBits`, element by element.
void Gather(const quint32* pixels, int count, quint32* anyBits, quint32* allBits);

} // namespace composite_kernels
} // namespace vellix
