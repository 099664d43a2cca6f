#pragma once

#include "paint/Picture.h"
#include "paint/TileCoverage.h"

#include <QColor>
#include <QImage>
#include <QPoint>
#include <QtGlobal>

namespace vellix {

/// Source-over composition of 1024 x 1024 images, tile by tile: tiles where a picture is empty cost nothing,
/// and what lies under an opaque tile is not looked at. Sums have 16 bits a channel and are rounded once at
/// the end, so that a stack of any height agrees with what QPainter makes of it to 2/255 of every
/// premultiplied channel.
namespace Composite {

/// Is this a 1024 x 1024 image of Format_RGBA8888?
bool IsLayerImage(const QImage& image);
/// The image as one that IsLayerImage accepts: itself when it is one, else converted, placed at the top left
/// and cropped. Null stays null.
QImage ToLayerImage(const QImage& image);
/// A fully transparent layer image; null when memory is short.
QImage TransparentImage();

/// Replaces pixels of a layer image by those of another image, whose left top one goes to `at`, as far as
/// they lie inside. Alpha is straight, and every pixel arrives as it was.
void Replace(QImage& target, const QImage& part, const QPoint& at);

/// The opacity of a picture, from 0..1 as QPainter takes it.
int OpacityByte(double opacity);

/// Where the stack paints.
TileCoverage CoverageOf(const PictureStack& stack);

/// Composes the stack into the tiles of a layer image, from scratch: what they held is gone, fully
/// transparent pixels are 0. Other tiles are left alone.
void Compose(QImage& target, const TileMask& tiles, const PictureStack& stack);
/// The same into sums, whose coverage becomes that of the stack.
void Compose(TileSums& target, const TileMask& tiles, const PictureStack& stack);

/// Paints the tiles of a layer image over another one. Pixels under fully transparent ones stay exactly as
/// they are, whatever colour hides in them.
void SourceOver(QImage& target, const QImage& source, const TileMask& tiles);

/// Gives every pixel of an image of Format_RGBA8888 that is not fully transparent the colour's red, green and
/// blue; other images are left alone.
void OverrideColor(QImage& image, const QColor& color);

} // namespace Composite
} // namespace vellix
