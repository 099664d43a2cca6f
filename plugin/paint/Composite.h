#pragma once

#include "paint/Picture.h"
#include "paint/TileCoverage.h"

#include <QColor>
#include <QImage>
#include <QPoint>
#include <QtGlobal>

namespace vellix {

/// Source-over composition of 1024 x 1024 images, tile by tile. Empty tiles cost nothing, and pixels under an
/// opaque tile are not read. Sums keep 16 bits per channel and are rounded once at the end. A stack of up to
/// 100 pictures therefore matches QPainter's result to within 2/255 in every premultiplied channel. Each
/// picture may take off 1/65025 of what lies below, so that 400 faint ones over an opaque one leave an alpha
/// of 250.
namespace composite {

/// Returns whether this is a 1024 x 1024 image of Format_RGBA8888.
bool IsLayerImage(const QImage& image);
/// Converts an image to one that IsLayerImage accepts, placed at the top left and cropped. Returns a layer
/// image unchanged, and a null image for a null one.
QImage ToLayerImage(const QImage& image);
/// Returns a fully transparent layer image; a null image when memory is short.
QImage TransparentImage();

/// Returns the image; throws std::bad_alloc for a null one, which operations on images answer when memory is
/// short.
QImage OrBadAlloc(const QImage& image);

/// Copies `part` into a layer image with its top left pixel at `at`, cropped to the layer image. Pixels are
/// replaced, not blended, and keep their straight alpha. Does nothing if `target` is no layer image.
void Replace(QImage& target, const QImage& part, const QPoint& at);

/// Converts an opacity of 0..1 to 0..255 with the same rounding as QPainter.
int OpacityByte(double opacity);

/// Returns the tiles that the stack covers, and those that one of its pictures makes opaque.
TileCoverage CoverageOf(const PictureStack& stack);

/// Composes the stack into the given tiles of a layer image. Replaces their former content; fully transparent
/// pixels become 0. Leaves other tiles alone.
void Compose(QImage& target, const TileMask& tiles, const PictureStack& stack);
/// The same into sums. Sets their coverage to that of the stack.
void Compose(TileSums& target, const TileMask& tiles, const PictureStack& stack);

/// Paints the given tiles of one layer image over another. Where the source is fully transparent, the target
/// keeps its exact bytes, colour included.
void SourceOver(QImage& target, const QImage& source, const TileMask& tiles);

/// Clears the given tiles of a layer image.
void Clear(QImage& target, const TileMask& tiles);

/// The red, green and blue of a colour as a pixel of alpha 0.
quint32 ColorBits(const QColor& color);
/// Sets red, green and blue of every pixel that is not fully transparent to those of `color`. Leaves images
/// of another format than Format_RGBA8888 alone.
void OverrideColor(QImage& image, const QColor& color);
/// The same in the given tiles of a layer image.
void OverrideColor(QImage& image, const TileMask& tiles, const QColor& color);

} // namespace composite
} // namespace vellix
