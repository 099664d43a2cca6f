#include "paint/Composite.h"

#include "paint/CompositeKernels.h"
#include "paint/ParallelWork.h"

#include <QtAlgorithms>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>

namespace vellix {
namespace composite {
namespace {

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

void PaintDrawing(quint16* sums, const Picture& picture, const PackedTiles::Tile& tile) {
    const bool isFaded = picture.opacity != 255;
    if (!tile.planes || picture.tinted) {
        const quint32 color = picture.tinted ? ColorBits(picture.tint) : tile.color;
        isFaded ? composite_kernels::PaintFadedFlatTile(sums, tile.alphas, color, picture.opacity)
                : composite_kernels::PaintFlatTile(sums, tile.alphas, color);
    } else {
        isFaded ? composite_kernels::PaintFadedTile(sums, tile.planes, picture.opacity)
                : composite_kernels::PaintTile(sums, tile.planes);
    }
}

/// Composes one row of tiles. Knows which pictures of the stack are needed in each tile of the row.
class StackRow {
public:
    explicit StackRow(const PictureStack& stack)
        : stack_(stack)
        , needed_(stack.size())
        , rows_(stack.size())
        , painted_(stack.size() * TileMask::COUNT) {}

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
        ListPictures();
        return painted;
    }

    void Compose(quint16* sums, int column) const {
        const quint16* const pictures = &painted_[std::size_t(column) * stack_.size()];
        const std::size_t count = counts_[std::size_t(column)];
        const TileSums* const lowest = count > 0 ? stack_[pictures[0]].merged : nullptr;
        if (lowest) { // there is nothing below
            std::memcpy(sums, lowest->Tile(row_, column), TILE_VALUES * sizeof(quint16));
        } else {
            std::memset(sums, 0, TILE_VALUES * sizeof(quint16));
        }
        for (std::size_t i = lowest ? 1 : 0; i < count; ++i) {
            Paint(sums, pictures[i], column);
        }
    }

private:
    /// Most pictures of a high stack are needed in few tiles.
    void ListPictures() {
        counts_.fill(0);
        for (std::size_t i = 0; i < stack_.size(); ++i) {
            if (needed_[i] != 0 && stack_[i].drawing) {
                rows_[i] = stack_[i].drawing->RowAt(row_);
            }
            for (quint64 bits = needed_[i]; bits != 0; bits &= bits - 1) {
                const auto column = std::size_t(qCountTrailingZeroBits(bits));
                painted_[column * stack_.size() + counts_[column]++] = quint16(i);
            }
        }
    }

    void Paint(quint16* sums, std::size_t index, int column) const {
        const Picture& picture = stack_[index];
        if (picture.drawing) {
            PaintDrawing(sums, picture, rows_[index].At(column));
        } else if (picture.merged) {
            composite_kernels::PaintSums(sums, picture.merged->Tile(row_, column));
        } else {
            quint8 bytes[TILE_VALUES];
            const Pixels<const quint32> pixels = PixelsOf(*picture.canvas);
            composite_kernels::SplitTile(bytes, pixels.At(row_, column), pixels.stride);
            composite_kernels::PaintTile(sums, bytes);
        }
    }

    const PictureStack& stack_;
    std::vector<quint64> needed_;
    std::vector<PackedTiles::Row> rows_; ///< of the drawings that are needed
    std::vector<quint16> painted_;       ///< the pictures in each tile, from the bottom
    std::array<std::size_t, TileMask::COUNT> counts_{};
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
