#pragma once

#include "paint/TileCoverage.h"

#include <QColor>
#include <QImage>
#include <QtGlobal>

#include <vector>

namespace vellix {

/// One picture of a stack: a layer image, where it has pixels, and how strongly it is painted. The image and
/// its coverage are borrowed.
struct Picture {
    const QImage* image = nullptr; ///< null paints nothing
    const TileCoverage* coverage = nullptr;
    bool premultiplied = false;
    int opacity = 255; ///< 0..255
    qint64 key = 0;    ///< as long as it stays the same, so do the pixels
};

/// Pictures from the bottom to the top.
using PictureStack = std::vector<Picture>;

/// Source-over composition of 1024 x 1024 images with four bytes a pixel (red, green, blue, alpha), tile by
/// tile: tiles where a picture is empty cost nothing, and what lies under an opaque tile is not looked at.
/// Straight alpha is converted on the way, so no premultiplied copies are needed.
///
/// The arithmetic is that of QPainter with 8 bits a channel; results agree with it to 2/255 of every
/// premultiplied channel.
namespace Composite {

/// Is this a 1024 x 1024 image of Format_RGBA8888?
bool IsLayerImage(const QImage& image);
/// The image as one that IsLayerImage accepts: itself when it is one, else converted, placed at the top left
/// and cropped.
QImage ToLayerImage(const QImage& image);
/// A fully transparent 1024 x 1024 image of the format; null when memory is short.
QImage TransparentImage(QImage::Format format = QImage::Format_RGBA8888);

/// The opacity of a picture, from 0..1 as painters take it.
int OpacityByte(double opacity);

/// Where the stack paints.
TileCoverage CoverageOf(const PictureStack& stack);

/// Composes the stack into the tiles of a straight-alpha image, from scratch: what they held is gone, fully
/// transparent pixels are 0. Other tiles are left alone.
void ComposeStraight(QImage& target, const TileMask& tiles, const PictureStack& stack);
/// The same into a premultiplied image.
void ComposePremultiplied(QImage& target, const TileMask& tiles, const PictureStack& stack);

/// Paints a straight-alpha image over another one. Pixels under fully transparent ones stay exactly as they
/// are, whatever colour hides in them.
void SourceOver(QImage& target, const QImage& source, const TileMask& tiles);
/// Paints a premultiplied image under another premultiplied one.
void DestinationOver(QImage& target, const QImage& source, const TileMask& tiles);

/// Gives every pixel of a straight-alpha image that is not fully transparent the colour's red, green and
/// blue.
void OverrideColor(QImage& image, const QColor& color);
/// The same for the tiles of a premultiplied image.
void OverrideColorPremultiplied(QImage& image, const TileMask& tiles, const QColor& color);

} // namespace Composite
} // namespace vellix
