#include "paint/Composite.h"

#include "paint/CompositeKernels.h"

#include <array>
#include <cstddef>
#include <cstring>

namespace vellix {
namespace Composite {
namespace {

constexpr int TILE = TileMask::TILE_WIDTH;

/// The pixels of a 1024 x 1024 image of four bytes a pixel.
struct Pixels {
    quint32* first;
    std::ptrdiff_t stride;

    quint32* At(int tileRow, int tileColumn) const {
        return first + tileRow * TILE * stride + tileColumn * TILE;
    }
};

struct ConstPixels {
    const quint32* first;
    std::ptrdiff_t stride;

    const quint32* At(int tileRow, int tileColumn) const {
        return first + tileRow * TILE * stride + tileColumn * TILE;
    }
};

Pixels PixelsOf(QImage& image) {
    return {reinterpret_cast<quint32*>(image.bits()), image.bytesPerLine() / 4};
}

ConstPixels PixelsOf(const QImage& image) {
    return {reinterpret_cast<const quint32*>(image.constBits()), image.bytesPerLine() / 4};
}

bool HasFormat(const QImage& image, QImage::Format format) {
    return image.format() == format && image.width() == IMAGE_WIDTH && image.height() == IMAGE_WIDTH;
}

quint32 PixelOf(const QColor& color) {
    return quint32(color.red()) | quint32(color.green()) << 8 | quint32(color.blue()) << 16;
}

/// One row of tiles while it is composed, premultiplied. Its stride is no power of two, so that the rows of a
/// tile do not fight for the same cache lines.
struct Band {
    static constexpr int STRIDE = IMAGE_WIDTH + TILE;

    alignas(64) std::array<quint32, TILE * STRIDE> pixels;

    quint32* At(int tileColumn) { return pixels.data() + tileColumn * TILE; }

    void Clear(quint64 tiles) {
        TileMask::ForEachRun(tiles, [this](int begin, int end) {
            for (int y = 0; y < TILE; ++y) {
                std::memset(At(begin) + y * STRIDE, 0, std::size_t(end - begin) * TILE * 4);
            }
        });
    }

    void Paint(const Picture& picture, int row, quint64 tiles) {
        if (tiles == 0) {
            return;
        }
        const ConstPixels source = PixelsOf(*picture.image);
        TileMask::ForEachRun(tiles, [&](int begin, int end) {
            const PixelBlock block{
                At(begin), STRIDE, source.At(row, begin), source.stride, (end - begin) * TILE, TILE};
            if (picture.premultiplied) {
                CompositeKernels::SourceOverPremultiplied(block, picture.opacity);
            } else {
                CompositeKernels::SourceOverStraight(block, picture.opacity);
            }
        });
    }
};

/// Composes the wanted tiles of one row of the stack; returns the tiles in which something was painted.
quint64 ComposeBand(Band& band, int row, quint64 wanted, const PictureStack& stack,
                    std::vector<quint64>& needed) {
    quint64 open = wanted;
    quint64 painted = 0;
    for (std::size_t i = stack.size(); i-- > 0;) {
        const Picture& picture = stack[i];
        needed[i] = picture.image == nullptr ? 0 : picture.coverage->occupied.Row(row) & open;
        painted |= needed[i];
        if (picture.image != nullptr && picture.opacity == 255) {
            open &= ~picture.coverage->opaque.Row(row);
        }
    }
    band.Clear(painted);
    for (std::size_t i = 0; i < stack.size(); ++i) {
        band.Paint(stack[i], row, needed[i]);
    }
    return painted;
}

void ClearTiles(const Pixels& target, int row, quint64 tiles) {
    TileMask::ForEachRun(tiles, [&](int begin, int end) {
        for (int y = 0; y < TILE; ++y) {
            std::memset(target.At(row, begin) + y * target.stride, 0, std::size_t(end - begin) * TILE * 4);
        }
    });
}

void Copy(const PixelBlock& block) {
    for (int y = 0; y < block.rows; ++y) {
        std::memcpy(block.target + y * block.targetStride, block.source + y * block.sourceStride,
                    std::size_t(block.width) * 4);
    }
}

template <typename Write>
void Compose(QImage& target, const TileMask& tiles, const PictureStack& stack, Write write) {
    if (tiles.IsEmpty()) {
        return; // without making a shared image's pixels our own
    }
    const Pixels pixels = PixelsOf(target);
    Band band;
    std::vector<quint64> needed(stack.size());
    for (int row = 0; row < TileMask::COUNT; ++row) {
        const quint64 wanted = tiles.Row(row);
        if (wanted == 0) {
            continue;
        }
        const quint64 painted = ComposeBand(band, row, wanted, stack, needed);
        ClearTiles(pixels, row, wanted & ~painted);
        TileMask::ForEachRun(painted, [&](int begin, int end) {
            write(PixelBlock{pixels.At(row, begin), pixels.stride, band.At(begin), Band::STRIDE,
                             (end - begin) * TILE, TILE});
        });
    }
}

template <typename Paint>
void ForEachBlock(QImage& target, const QImage& source, const TileMask& tiles, Paint paint) {
    const Pixels to = PixelsOf(target);
    const ConstPixels from = PixelsOf(source);
    for (int row = 0; row < TileMask::COUNT; ++row) {
        TileMask::ForEachRun(tiles.Row(row), [&](int begin, int end) {
            paint(PixelBlock{to.At(row, begin), to.stride, from.At(row, begin), from.stride,
                             (end - begin) * TILE, TILE});
        });
    }
}

} // namespace

bool IsLayerImage(const QImage& image) {
    return HasFormat(image, QImage::Format_RGBA8888);
}

QImage ToLayerImage(const QImage& image) {
    if (image.isNull() || IsLayerImage(image)) {
        return image;
    }
    return image.copy(0, 0, IMAGE_WIDTH, IMAGE_WIDTH).convertToFormat(QImage::Format_RGBA8888);
}

QImage TransparentImage(QImage::Format format) {
    QImage image(IMAGE_WIDTH, IMAGE_WIDTH, format);
    image.fill(Qt::transparent);
    return image;
}

int OpacityByte(double opacity) {
    return (int(qBound(0.0, opacity, 1.0) * 256.0) * 255) >> 8;
}

TileCoverage CoverageOf(const PictureStack& stack) {
    TileCoverage coverage;
    for (const Picture& picture : stack) {
        if (picture.image != nullptr) {
            coverage.occupied |= picture.coverage->occupied;
            if (picture.opacity == 255) {
                coverage.opaque |= picture.coverage->opaque;
            }
        }
    }
    return coverage;
}

void ComposeStraight(QImage& target, const TileMask& tiles, const PictureStack& stack) {
    if (IsLayerImage(target)) {
        Compose(target, tiles, stack, CompositeKernels::Unpremultiply);
    }
}

void ComposePremultiplied(QImage& target, const TileMask& tiles, const PictureStack& stack) {
    if (HasFormat(target, QImage::Format_RGBA8888_Premultiplied)) {
        Compose(target, tiles, stack, Copy);
    }
}

void SourceOver(QImage& target, const QImage& source, const TileMask& tiles) {
    if (IsLayerImage(target) && IsLayerImage(source)) {
        ForEachBlock(target, source, tiles, CompositeKernels::SourceOverOntoStraight);
    }
}

void DestinationOver(QImage& target, const QImage& source, const TileMask& tiles) {
    if (HasFormat(target, QImage::Format_RGBA8888_Premultiplied) &&
        HasFormat(source, QImage::Format_RGBA8888_Premultiplied)) {
        ForEachBlock(target, source, tiles, CompositeKernels::DestinationOver);
    }
}

void OverrideColor(QImage& image, const QColor& color) {
    if (image.isNull() || image.format() != QImage::Format_RGBA8888) {
        return;
    }
    for (int y = 0; y < image.height(); ++y) {
        CompositeKernels::OverrideColor(reinterpret_cast<quint32*>(image.scanLine(y)), image.width(),
                                        PixelOf(color));
    }
}

void OverrideColorPremultiplied(QImage& image, const TileMask& tiles, const QColor& color) {
    if (!HasFormat(image, QImage::Format_RGBA8888_Premultiplied)) {
        return;
    }
    const Pixels pixels = PixelsOf(image);
    for (int row = 0; row < TileMask::COUNT; ++row) {
        TileMask::ForEachRun(tiles.Row(row), [&](int begin, int end) {
            for (int y = 0; y < TILE; ++y) {
                CompositeKernels::OverrideColorPremultiplied(pixels.At(row, begin) + y * pixels.stride,
                                                             (end - begin) * TILE, PixelOf(color));
            }
        });
    }
}

} // namespace Composite
} // namespace vellix
