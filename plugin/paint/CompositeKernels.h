#pragma once

#include <QtGlobal>

#include <cstddef>

namespace vellix {

/// Pixels in a row of tiles: `rows` rows of `width` pixels in two buffers. A pixel is one 32-bit word of the
/// bytes red, green, blue, alpha; strides count pixels. The buffers must not overlap, unless they are the
/// same one.
struct PixelBlock {
    quint32* target;
    std::ptrdiff_t targetStride;
    const quint32* source;
    std::ptrdiff_t sourceStride;
    int width;
    int rows;
};

/// The loops over pixels, written so that compilers turn them into vector instructions; where the platform
/// allows, each is compiled for AVX2 as well and chosen when the program starts.
namespace CompositeKernels {

/// Paints a straight-alpha source over a premultiplied target, at an opacity of 0..255.
void SourceOverStraight(PixelBlock block, int opacity);
/// Paints a premultiplied source over a premultiplied target, at an opacity of 0..255.
void SourceOverPremultiplied(PixelBlock block, int opacity);
/// Paints a premultiplied source under a premultiplied target.
void DestinationOver(PixelBlock block);
/// Paints a straight-alpha source over a straight-alpha target; pixels under transparent ones keep their
/// bytes.
void SourceOverOntoStraight(PixelBlock block);
/// Writes a premultiplied source to a straight-alpha target.
void Unpremultiply(PixelBlock block);
/// Gives the pixels of a target that are not transparent the red, green and blue of `color`.
void OverrideColor(quint32* target, int count, quint32 color);
/// The same for premultiplied pixels.
void OverrideColorPremultiplied(quint32* target, int count, quint32 color);

/// Ands and ors the pixels of a row into running results.
void Gather(const quint32* source, int count, quint32* anyBits, quint32* allBits);

} // namespace CompositeKernels
} // namespace vellix
