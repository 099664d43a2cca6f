#include "paint/TiledImage.h"

#include "PaintTesting.h"
#include "paint/PackedTiles.h"
#include "paint/TilePatch.h"

#include <cstddef>
#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

using vellix::PackedTiles;
using vellix::TiledImage;
using vellix::TileMask;
using vellix::TilePatch;

namespace {

constexpr int TILED_WIDTH = TileMask::TILE_WIDTH;

// Noise in some tiles: of any alpha, opaque, or colours under alpha 0.
QImage Scattered(unsigned seed, int tiles) {
    QImage image = EmptyLayer(Qt::transparent);
    std::mt19937 random(seed);
    for (int i = 0; i < tiles; ++i) {
        const int top = TILED_WIDTH * static_cast<int>(random() % TileMask::COUNT);
        const int left = TILED_WIDTH * static_cast<int>(random() % TileMask::COUNT);
        const quint32 keep = i % 3 == 2 ? 0x00ffffffu : 0xffffffffu;
        const quint32 add = i % 3 == 1 ? 0xff000000u : 0u;
        for (int y = top; y < top + TILED_WIDTH; ++y) {
            for (int x = left; x < left + TILED_WIDTH; ++x) {
                reinterpret_cast<quint32*>(image.scanLine(y))[x] = (quint32(random()) & keep) | add;
            }
        }
    }
    return image;
}

// A pixel in the last corner of the last tile, too.
std::vector<QImage> Layers() {
    QImage corner = EmptyLayer(Qt::transparent);
    corner.setPixel(1023, 1023, qRgba(1, 2, 3, 4));
    return {EmptyLayer(Qt::transparent), corner, Scattered(1, 3), Scattered(2, 400), Scattered(3, 20000)};
}

TileMask FilledTilesOf(const QImage& image) {
    TileMask filled;
    for (int y = 0; y < 1024; ++y) {
        const auto* row = reinterpret_cast<const quint32*>(image.constScanLine(y));
        for (int x = 0; x < 1024; ++x) {
            if (row[x] != 0) {
                filled.Add(y / TILED_WIDTH, x / TILED_WIDTH);
            }
        }
    }
    return filled;
}

void ExpectSame(const PackedTiles& tiles, const PackedTiles& expected) {
    EXPECT_EQ(tiles.Coverage().occupied, expected.Coverage().occupied);
    EXPECT_EQ(tiles.Coverage().opaque, expected.Coverage().opaque);
    EXPECT_EQ(tiles.ByteCount(), expected.ByteCount());
    expected.Coverage().occupied.ForEach([&](int row, int column) {
        if (tiles.Coverage().occupied.Contains(row, column)) {
            const PackedTiles::Tile tile = tiles.RowAt(row).At(column);
            const PackedTiles::Tile same = expected.RowAt(row).At(column);
            SCOPED_TRACE(std::to_string(row) + " " + std::to_string(column));
            ASSERT_EQ(tile.planes == nullptr, same.planes == nullptr);
            EXPECT_EQ(tile.color, same.color);
            const std::size_t planes = tile.planes ? 4 : 1;
            EXPECT_EQ(std::memcmp(tile.planes ? tile.planes : tile.alphas,
                                  same.planes ? same.planes : same.alphas,
                                  planes * TILED_WIDTH * TILED_WIDTH),
                      0);
        }
    });
}

} // namespace

TEST(TiledImageTest, KeepsEveryPixelAndNoTileOfNothing) {
    for (const QImage& layer : Layers()) {
        const TiledImage tiled(layer);
        EXPECT_EQ(tiled.Tiles(), FilledTilesOf(layer));
        EXPECT_EQ(Difference(tiled.ToImage(), layer), QRect());
    }
    EXPECT_TRUE(TiledImage(QImage(20, 20, QImage::Format_RGBA8888)).Tiles().IsEmpty());
}

// What composition reads: it must not matter in which way the picture was kept.
TEST(TiledImageTest, IsPreparedForCompositionAsTheImageIs) {
    for (const QImage& layer : Layers()) {
        ExpectSame(PackedTiles(TiledImage(layer)), PackedTiles(layer));
    }
    const QImage before = Scattered(2, 400);
    QImage after = before.copy();
    const TileMask changed = TileMask::Touching(QRect(300, 200, 400, 90));
    for (int y = 192; y < 304; ++y) {
        std::memset(after.scanLine(y) + 4 * 288, y < 250 ? 0 : 70, size_t(4 * 416));
    }
    ExpectSame(PackedTiles(TiledImage(after), PackedTiles(TiledImage(before)), changed), PackedTiles(after));
}

TEST(TiledImageTest, IsPatchedAsTheImageIs) {
    const std::vector<QImage> layers = Layers();
    for (const QImage& from : layers) {
        for (const QImage& to : layers) {
            TiledImage tiled(from);
            const TileMask first = tiled.Tiles();
            QImage image = from.copy();
            TilePatch forTiles(tiled, TileMask::All(), to, nullptr);
            TilePatch forImage(image, TileMask::All(), to, nullptr);
            const QByteArray bytes = forImage.TakeBytes();
            EXPECT_EQ(forTiles.TakeBytes(), bytes);
            TilePatch patch(bytes);
            tiled.Add(patch.Tiles());
            patch.Swap(tiled);
            EXPECT_EQ(Difference(tiled.ToImage(), to), QRect());
            EXPECT_EQ(tiled.Tiles(), FilledTilesOf(to));
            tiled.Add(patch.Tiles());
            patch.Swap(tiled);
            EXPECT_EQ(Difference(tiled.ToImage(), from), QRect());
            EXPECT_EQ(tiled.Tiles(), first);
        }
    }
}

// Where nothing is kept a stroke is copied, elsewhere it is painted over.
TEST(TiledImageTest, StrokesOnTilesAreThoseOnTheImage) {
    const QImage below = Scattered(4, 900);
    const QImage above = Scattered(5, 5000);
    TilePatch onTiles(TiledImage(below), TileMask::All(), TiledImage(below), &above);
    TilePatch onImage(below, TileMask::All(), below, &above);
    EXPECT_EQ(onTiles.TakeBytes(), onImage.TakeBytes());
}

TEST(TiledImageTest, TilesThatAreAddedAreEmpty) {
    const TileMask some = TileMask::Touching(QRect(0, 0, 300, 300));
    TiledImage tiled(Scattered(6, 20000));
    const QImage before = tiled.ToImage();
    tiled.Add(some);
    EXPECT_EQ(Difference(tiled.ToImage(), before), QRect()) << "those that are kept stay";
    some.ForEach(
        [&](int row, int column) { std::memset(tiled.Tile(row, column), 0, 4 * TILED_WIDTH * TILED_WIDTH); });
    tiled.RemoveEmpty(TileMask::All());
    const int kept = tiled.Tiles().Size();
    tiled.Add(some); // in the places of others
    EXPECT_GT(tiled.Tiles().Size(), kept);
    some.ForEach([&](int row, int column) { EXPECT_EQ(tiled.Tile(row, column)[7], 0u); });
}
