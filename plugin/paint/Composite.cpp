#include "paint/Composite.h"

#include "paint/CompositeKernels.h"
#include "paint/ParallelWork.h"

#include <QtAlgorithms>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>

namespace vellix {
namespace composite {
namespace {

using composite_kernels::TILE_PIXELS;
using composite_kernels::TILE_VALUES;

constexpr int TILE_WIDTH = TileMask::TILE_WIDTH;

/// The pixels of a layer image, addressed by tile.
template <typename Word>
struct Pixels {
    Word* first;
    std::ptrdiff_t stride;

    Word* At(int tileRow, int tileColumn) const {
        return first + tileRow * TILE_WIDTH * stride + tileColumn * TILE_WIDTH;
    }
};

Pixels<quint32> PixelsOf(QImage& image) {
    return {reinterpret_cast<quint32*>(image.bits()), image.bytesPerLine() / 4};
}

Pixels<const quint32> PixelsOf(const QImage& image) {
    return {reinterpret_cast<const quint32*>(image.constBits()), image.bytesPerLine() / 4};
}

void PaintBytes(quint16* sums, const quint8* bytes, int opacity) {
    if (opacity == 255) {
        composite_kernels::PaintTile(sums, bytes);
    } else {
        composite_kernels::PaintFadedTile(sums, bytes, opacity);
    }
}

void PaintDrawing(quint16* sums, const Picture& picture, int row, int column) {
    const quint8* tile = picture.drawing->Tile(row, column);
    if (!picture.tinted) {
        PaintBytes(sums, tile, picture.opacity);
        return;
    }
    quint8 tinted[TILE_VALUES];
    std::memset(tinted, picture.tint.red(), TILE_PIXELS);
    std::memset(tinted + TILE_PIXELS, picture.tint.green(), TILE_PIXELS);
    std::memset(tinted + 2 * TILE_PIXELS, picture.tint.blue(), TILE_PIXELS);
    std::memcpy(tinted + 3 * TILE_PIXELS, tile + 3 * TILE_PIXELS, TILE_PIXELS);
    PaintBytes(sums, tinted, picture.opacity);
}

void Paint(quint16* sums, const Picture& picture, int row, int column) {
    if (picture.drawing) {
        PaintDrawing(sums, picture, row, column);
    } else if (picture.merged) {
        composite_kernels::PaintSums(sums, picture.merged->Tile(row, column));
    } else {
        quint8 bytes[TILE_VALUES];
        const Pixels<const quint32> pixels = PixelsOf(*picture.canvas);
        composite_kernels::SplitTile(bytes, pixels.At(row, column), pixels.stride);
        composite_kernels::PaintTile(sums, bytes);
    }
}

/// Composes one row of tiles. Knows in which tiles of the row each picture of the stack is needed.
class StackRow {
public:
    explicit StackRow(const PictureStack& stack)
        : stack_(stack)
        , needed_(stack.size()) {}

    /// Prepares the row `row`: a picture is not needed under an opaque tile. Returns the wanted tiles in
    /// which at least one picture is needed.
    quint64 Begin(int row, quint64 wanted) {
        row_ = row;
        quint64 open = wanted;
        quint64 painted = 0;
        for (std::size_t i = stack_.size(); i-- > 0;) {
            const TileCoverage* coverage = stack_[i].Coverage();
            needed_[i] = coverage ? coverage->occupied.Row(row) & open : 0;
            painted |= needed_[i];
            if (coverage && stack_[i].opacity == 255) {
                open &= ~coverage->opaque.Row(row);
            }
        }
        return painted;
    }

    void Compose(quint16* sums, int column) const {
        std::memset(sums, 0, TILE_VALUES * sizeof(quint16));
        for (std::size_t i = 0; i < stack_.size(); ++i) {
            if ((needed_[i] >> column & 1) != 0) {
                Paint(sums, stack_[i], row_, column);
            }
        }
    }

private:
    const PictureStack& stack_;
    std::vector<quint64> needed_;
    int row_ = 0;
};

int CountTiles(quint64 tiles) {
    return tiles == 0 ? 0 : int(qPopulationCount(tiles));
}

/// Whether so much is composed that several processors are done sooner than one, although they have to be
/// started.
bool IsWorthSharing(const TileMask& tiles, const PictureStack& stack) {
    constexpr int fewest = 10000; // tiles read and written; some milliseconds
    int written = 0;
    for (int row = 0; row < TileMask::COUNT; ++row) {
        written += CountTiles(tiles.Row(row));
    }
    if (written * (int(stack.size()) + 1) < fewest) {
        return false; // most refreshes: the rest of the counting is saved
    }
    int read = 0;
    for (const Picture& picture : stack) {
        const TileCoverage* const coverage = picture.Coverage();
        for (int row = 0; coverage && row < TileMask::COUNT; ++row) {
            read += CountTiles(coverage->occupied.Row(row) & tiles.Row(row));
        }
    }
    return read + written >= fewest;
}

/// Calls `compose` with a StackRow and the row, for every row of tiles.
template <typename Function>
void ComposeRows(const TileMask& tiles, const PictureStack& stack, Function compose) {
    if (IsWorthSharing(tiles, stack)) {
        DoInParallel(TileMask::COUNT, [&](std::size_t row) {
            StackRow stackRow(stack);
            compose(stackRow, int(row));
        });
        return;
    }
    StackRow stackRow(stack);
    for (int row = 0; row < TileMask::COUNT; ++row) {
        compose(stackRow, row);
    }
}

void ClearTiles(const Pixels<quint32>& target, int row, quint64 tiles) {
    TileMask::ForEachRun(tiles, [&](int begin, int end) {
        for (int y = 0; y < TILE_WIDTH; ++y) {
            std::fill_n(target.At(row, begin) + y * target.stride, (end - begin) * TILE_WIDTH, 0);
        }
    });
}

} // namespace

bool IsLayerImage(const QImage& image) {
    return image.format() == QImage::Format_RGBA8888 && image.width() == IMAGE_WIDTH &&
           image.height() == IMAGE_WIDTH;
}

QImage ToLayerImage(const QImage& image) {
    if (image.isNull() || IsLayerImage(image)) {
        return image;
    }
    return image.copy(0, 0, IMAGE_WIDTH, IMAGE_WIDTH).convertToFormat(QImage::Format_RGBA8888);
}

QImage OrBadAlloc(const QImage& image) {
    if (image.isNull()) {
        throw std::bad_alloc();
    }
    return image;
}

QImage TransparentImage() {
    // Cleared memory of the system takes up room only where something is painted.
    constexpr int rowBytes = IMAGE_WIDTH * 4;
    void* const pixels = std::calloc(IMAGE_WIDTH, rowBytes);
    return pixels == nullptr ? QImage()
                             : QImage(static_cast<uchar*>(pixels), IMAGE_WIDTH, IMAGE_WIDTH, rowBytes,
                                      QImage::Format_RGBA8888, std::free, pixels);
}

void Replace(QImage& target, const QImage& part, const QPoint& at) {
    const QRect place = QRect(at, part.size()).intersected(target.rect());
    if (!IsLayerImage(target) || place.isEmpty()) {
        return;
    }
    const QImage visible = part.copy(place.translated(-at)).convertToFormat(QImage::Format_RGBA8888);
    constexpr int pixelSize = 4;
    for (int row = 0; row < visible.height(); ++row) {
        std::memcpy(target.scanLine(place.top() + row) + std::ptrdiff_t(place.left()) * pixelSize,
                    visible.constScanLine(row), size_t(visible.width()) * pixelSize);
    }
}

int OpacityByte(double opacity) {
    return (int(qBound(0.0, opacity, 1.0) * 256.0) * 255) >> 8;
}

TileCoverage CoverageOf(const PictureStack& stack) {
    TileCoverage sum;
    for (const Picture& picture : stack) {
        if (const TileCoverage* coverage = picture.Coverage()) {
            sum.occupied |= coverage->occupied;
            if (picture.opacity == 255) {
                sum.opaque |= coverage->opaque;
            }
        }
    }
    return sum;
}

void Compose(QImage& target, const TileMask& tiles, const PictureStack& stack) {
    if (!IsLayerImage(target) || tiles.IsEmpty()) {
        return;
    }
    const Pixels<quint32> pixels = PixelsOf(target);
    ComposeRows(tiles, stack, [&](StackRow& stackRow, int row) {
        const quint64 wanted = tiles.Row(row);
        if (wanted == 0) {
            return;
        }
        const quint64 painted = stackRow.Begin(row, wanted);
        ClearTiles(pixels, row, wanted & ~painted);
        quint16 sums[TILE_VALUES];
        TileMask::ForEachRun(painted, [&](int begin, int end) {
            for (int column = begin; column < end; ++column) {
                stackRow.Compose(sums, column);
                composite_kernels::WriteTile(pixels.At(row, column), pixels.stride, sums);
            }
        });
    });
}

void Compose(TileSums& target, const TileMask& tiles, const PictureStack& stack) {
    ComposeRows(tiles, stack, [&](StackRow& stackRow, int row) {
        TileMask::ForEachRun(stackRow.Begin(row, tiles.Row(row)), [&](int begin, int end) {
            for (int column = begin; column < end; ++column) {
                stackRow.Compose(target.Tile(row, column), column);
            }
        });
    });
    target.coverage = CoverageOf(stack);
}

void SourceOver(QImage& target, const QImage& source, const TileMask& tiles) {
    if (!IsLayerImage(target) || !IsLayerImage(source)) {
        return;
    }
    const Pixels<quint32> to = PixelsOf(target);
    const Pixels<const quint32> from = PixelsOf(source);
    for (int row = 0; row < TileMask::COUNT; ++row) {
        TileMask::ForEachRun(tiles.Row(row), [&](int begin, int end) {
            for (int y = 0; y < TILE_WIDTH; ++y) {
                composite_kernels::SourceOver(to.At(row, begin) + y * to.stride,
                                              from.At(row, begin) + y * from.stride,
                                              (end - begin) * TILE_WIDTH);
            }
        });
    }
}

void Clear(QImage& target, const TileMask& tiles) {
    if (!IsLayerImage(target)) {
        return;
    }
    const Pixels<quint32> pixels = PixelsOf(target);
    for (int row = 0; row < TileMask::COUNT; ++row) {
        ClearTiles(pixels, row, tiles.Row(row));
    }
}

quint32 ColorBits(const QColor& color) {
    return quint32(color.red()) | quint32(color.green()) << 8 | quint32(color.blue()) << 16;
}

void OverrideColor(QImage& image, const QColor& color) {
    if (image.isNull() || image.format() != QImage::Format_RGBA8888) {
        return;
    }
    for (int y = 0; y < image.height(); ++y) {
        composite_kernels::OverrideColor(reinterpret_cast<quint32*>(image.scanLine(y)), image.width(),
                                         ColorBits(color));
    }
}

void OverrideColor(QImage& image, const TileMask& tiles, const QColor& color) {
    if (!IsLayerImage(image)) {
        return;
    }
    const Pixels<quint32> pixels = PixelsOf(image);
    for (int row = 0; row < TileMask::COUNT; ++row) {
        TileMask::ForEachRun(tiles.Row(row), [&](int begin, int end) {
            for (int y = 0; y < TILE_WIDTH; ++y) {
                composite_kernels::OverrideColor(pixels.At(row, begin) + y * pixels.stride,
                                                 (end - begin) * TILE_WIDTH, ColorBits(color));
            }
        });
    }
}

} // namespace composite
} // namespace vellix
