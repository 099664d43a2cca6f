#include "paint/TilePatch.h"

#include "PaintTesting.h"
#include "paint/Composite.h"
#include "paint/TiledImage.h"

#include <QColor>
#include <QImage>

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <initializer_list>
#include <random>

using vellix::TiledImage;
using vellix::TileMask;
using vellix::TilePatch;
using vellix::TileSource;

namespace composite = vellix::composite;

namespace {

constexpr int WIDTH = TileMask::TILE_WIDTH;
constexpr qint64 FIRST = -71;
constexpr qint64 SECOND = -72;
constexpr qint64 THIRD = -73;

QImage NoisyLayer(unsigned seed) {
    std::mt19937 random(seed);
    QImage image = EmptyLayer();
    for (int y = 0; y < 1024; ++y) {
        auto* row = reinterpret_cast<quint32*>(image.scanLine(y));
        std::generate(row, row + 1024, std::ref(random));
    }
    return image;
}

TileMask Some(std::initializer_list<QPoint> tiles) {
    TileMask mask;
    for (const QPoint& tile : tiles) {
        mask.Add(tile.y(), tile.x());
    }
    return mask;
}

QImage WithTiles(const QImage& image, const TileMask& tiles, const QImage& from) {
    QImage mixed = image.copy();
    tiles.ForEach([&](int row, int column) {
        for (int y = row * WIDTH; y < (row + 1) * WIDTH; ++y) {
            for (int x = column * WIDTH; x < (column + 1) * WIDTH; ++x) {
                mixed.setPixel(x, y, from.pixel(x, y));
            }
        }
    });
    return mixed;
}

TilePatch Patch(const QImage& from, const TileMask& tiles, const QImage& to, qint64 before, qint64 after) {
    TilePatch patch(from, tiles, to, nullptr);
    patch.SetKeys(before, after);
    return patch;
}

} // namespace

TEST(TilePatch, LeadsForthAndBack) {
    const QImage first = NoisyLayer(1);
    const QImage other = NoisyLayer(2);
    for (const TileMask& tiles :
         {TileMask(), Some({{0, 0}}), Some({{63, 63}, {63, 0}, {0, 63}, {5, 9}, {6, 9}}), TileMask::All()}) {
        QImage shown = first.copy();
        TilePatch patch = Patch(first, tiles, other, FIRST, SECOND);
        EXPECT_EQ(patch.Tiles(), tiles);
        for (int round = 0; round < 2; ++round) {
            patch = TilePatch(patch.TakeBytes());
            ASSERT_FALSE(patch.IsNull());
            EXPECT_EQ(patch.Before(), FIRST);
            patch.Swap(shown);
            EXPECT_EQ(shown, WithTiles(first, tiles, other));
            EXPECT_EQ(patch.Before(), SECOND);
            patch.Swap(shown);
            EXPECT_EQ(shown, first);
        }
    }
}

TEST(TilePatch, HoldsWhatDiffersOnly) {
    const QImage picture = NoisyLayer(1);
    QImage changed = picture.copy();
    changed.setPixel(16 * 7 + 15, 16 * 3, ~picture.pixel(16 * 7 + 15, 16 * 3));
    TilePatch patch(picture, TileMask::All(), changed, nullptr);
    EXPECT_EQ(patch.Tiles(), Some({{7, 3}}));
    EXPECT_LT(patch.TakeBytes().size(), 1200);

    QImage above = EmptyLayer();
    above.setPixel(1023, 0, qRgba(9, 8, 7, 255));
    TilePatch painted(picture, TileMask::All(), picture, &above);
    EXPECT_EQ(painted.Tiles(), Some({{63, 0}})) << "a transparent pixel paints nothing";
    QImage shown = picture.copy();
    painted.Swap(shown);
    EXPECT_EQ(shown.pixel(1023, 0), qRgba(9, 8, 7, 255));
    EXPECT_EQ(Difference(shown, picture), QRect(1023, 0, 1, 1));
}

TEST(TilePatch, JoinsStrokesOnOnePicture) {
    const QImage first = NoisyLayer(1);
    const QImage second = WithTiles(first, Some({{1, 1}, {2, 1}}), NoisyLayer(2));
    const QImage third = WithTiles(second, Some({{2, 1}, {3, 1}}), NoisyLayer(3));
    QImage shown = first.copy();
    TilePatch all = Patch(first, TileMask::All(), second, FIRST, SECOND);
    all.Swap(shown);
    TilePatch later = Patch(second, TileMask::All(), third, SECOND, THIRD);
    EXPECT_FALSE(all.Append(later)) << "it leads away yet";
    later.Swap(shown);
    ASSERT_TRUE(all.Append(later));
    EXPECT_EQ(all.Before(), THIRD);
    EXPECT_EQ(all.After(), FIRST);
    EXPECT_FALSE(all.Append(later)) << "it belongs to the third picture now";
    all = TilePatch(all.TakeBytes());
    ASSERT_FALSE(all.IsNull());
    all.Swap(shown);
    EXPECT_EQ(shown, first);
    all.Swap(shown);
    EXPECT_EQ(shown, third);
}

TEST(TilePatch, PaintsInAColorAsIfTheImageHadIt) {
    const QImage alphas = NoisyLayer(4);
    const QColor color(30, 60, 160);
    QImage colored = alphas.copy();
    composite::OverrideColor(colored, color);
    const TiledImage nothing = TiledImage();
    const QImage drawing = NoisyLayer(5);
    for (const TileSource& below : {TileSource(nothing), TileSource(drawing)}) {
        TilePatch patch(below, TileMask::All(), below, &alphas, &color);
        EXPECT_EQ(patch.Tiles(), TileMask::All());
        EXPECT_EQ(patch.TakeBytes(), TilePatch(below, TileMask::All(), below, &colored).TakeBytes());
    }
}

TEST(TilePatch, IsTheSameSqueezed) {
    QImage picture = EmptyLayer();
    picture.setPixel(500, 500, qRgba(1, 2, 3, 4));
    QImage shown = NoisyLayer(1);
    const QImage before = shown.copy();
    const QByteArray plain =
        Patch(shown, TileMask::Touching(QRect(0, 0, 1024, 900)), picture, FIRST, SECOND).TakeBytes();
    const QByteArray squeezed = TilePatch::Squeezed(plain);
    EXPECT_LT(squeezed.size(), plain.size() / 50);
    EXPECT_EQ(TilePatch(squeezed).TakeBytes(), plain);
    TilePatch patch(squeezed);
    patch.Swap(shown);
    EXPECT_EQ(shown.pixel(500, 500), qRgba(1, 2, 3, 4));
    const QByteArray noise = patch.TakeBytes();
    EXPECT_EQ(TilePatch::Squeezed(noise), noise) << "nothing is gained";
    TilePatch(noise).Swap(shown);
    EXPECT_EQ(shown, before);

    std::mt19937 random(5);
    for (int i = 0; i < 200; ++i) {
        QByteArray damaged = squeezed;
        const int place = i < 40 ? i : static_cast<int>(random() % static_cast<unsigned>(squeezed.size()));
        damaged[place] = static_cast<char>(damaged[place] ^ (1 << i % 8));
        TilePatch none(damaged);
        EXPECT_TRUE(none.IsNull()) << place;
        EXPECT_EQ(none.TakeBytes(), damaged);
        EXPECT_TRUE(TilePatch(squeezed.left(place)).IsNull()) << place;
    }
}

TEST(TilePatch, BytesThatAreNoneAreRefused) {
    const QByteArray sound =
        Patch(NoisyLayer(1), Some({{4, 4}, {60, 2}}), NoisyLayer(2), FIRST, SECOND).TakeBytes();
    ASSERT_FALSE(TilePatch(sound).IsNull());
    for (int i = 0; i < sound.size(); ++i) {
        QByteArray bytes = sound;
        bytes[i] = static_cast<char>(bytes[i] ^ (1 << i % 8));
        EXPECT_TRUE(TilePatch(bytes).IsNull()) << "bit " << i % 8 << " of byte " << i;
    }
    for (int size = 0; size < sound.size(); ++size) {
        EXPECT_TRUE(TilePatch(sound.left(size)).IsNull() || (size - 24) % 1032 == 0) << size;
    }
    EXPECT_TRUE(TilePatch(sound + sound.right(1032)).IsNull()) << "a tile twice";
    EXPECT_TRUE(TilePatch(sound + sound).IsNull());
    EXPECT_EQ(TilePatch(QByteArray("no patch")).TakeBytes(), "no patch");
}
