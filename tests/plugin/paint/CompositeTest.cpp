#include "paint/Composite.h"

#include "paint/TileSums.h"
#include "plugin/core/PlainComposer.h"

#include <gtest/gtest.h>
#include <random>

namespace vellix {
namespace {

/// Pixels of every kind: with small and large, none and full alpha.
QImage Noise(unsigned seed) {
    std::mt19937 random(seed);
    QImage image = PlainComposer::Blank();
    for (int y = 0; y < image.height(); ++y) {
        auto* row = reinterpret_cast<quint32*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const quint32 kind = random() % 8;
            const quint32 alpha = kind == 0 ? 0 : kind == 1 ? 255 : random() % (kind < 5 ? 32 : 256);
            row[x] = (random() & 0xffffff) | alpha << 24;
        }
    }
    return image;
}

Picture DrawingOf(const QImage& image, int opacity = 255) {
    Picture picture;
    picture.drawing = std::make_shared<PackedTiles>(image);
    picture.opacity = opacity;
    picture.key = image.cacheKey();
    return picture;
}

/// Pixels at which `differ(first, second)` holds for the words of the two images.
template <typename Differ>
int CountPixels(const QImage& first, const QImage& second, Differ differ) {
    int count = 0;
    for (int y = 0; y < first.height(); ++y) {
        const auto* a = reinterpret_cast<const quint32*>(first.constScanLine(y));
        const auto* b = reinterpret_cast<const quint32*>(second.constScanLine(y));
        for (int x = 0; x < first.width(); ++x) {
            count += differ(a[x], b[x]) ? 1 : 0;
        }
    }
    return count;
}

TEST(CompositeTest, AgreesWithThePainterOnAnyPixels) {
    const QImage bottom = Noise(1);
    const QImage top = Noise(2);
    const TileCoverage topCoverage = TileCoverage::Of(top);
    Picture canvas;
    canvas.canvas = &top;
    canvas.canvasCoverage = &topCoverage;
    for (const double opacity : {1.0, 0.4, 0.1333}) {
        QImage expected = PlainComposer::Blank();
        QPainter painter(&expected);
        painter.setOpacity(opacity);
        painter.drawImage(0, 0, bottom);
        painter.setOpacity(1);
        painter.drawImage(0, 0, top);
        painter.end();
        const Picture faded = DrawingOf(bottom, composite::OpacityByte(opacity));
        QImage composed = Noise(3); // what was there before must not shine through
        composite::Compose(composed, TileMask::All(), {faded, canvas});
        EXPECT_LE(PlainComposer::Difference(composed, expected), 2) << opacity;

        TileSums sums;
        composite::Compose(sums, TileMask::All(), {faded});
        Picture merged;
        merged.merged = &sums;
        QImage again = PlainComposer::Blank();
        composite::Compose(again, TileMask::All(), {merged, DrawingOf(top)});
        EXPECT_EQ(again, composed) << "by way of a merged picture, " << opacity;
    }
}

// What is opaque stays so under many faint pictures, but for what their rounding takes off.
TEST(CompositeTest, HighStacksLoseNoMoreThanIsSaid) {
    QImage white = PlainComposer::Blank();
    white.fill(Qt::white);
    QImage faint = PlainComposer::Blank();
    for (int x = 0; x < 256; ++x) {
        faint.setPixelColor(x, 0, QColor(255, 255, 255, x));
    }
    const struct {
        std::size_t height;
        int least;
    } rows[] = {{50, 254}, {100, 253}, {400, 250}};
    for (const auto& row : rows) {
        PictureStack stack(row.height, DrawingOf(faint));
        stack.insert(stack.begin(), DrawingOf(white));
        QImage composed = PlainComposer::Blank();
        composite::Compose(composed, TileMask::Touching(QRect(0, 0, 256, 1)), stack);
        int least = 255;
        for (int x = 0; x < 256; ++x) {
            least = std::min(least, composed.pixelColor(x, 0).alpha());
            EXPECT_GE(composed.pixelColor(x, 0).red(), 253) << "the colour stays";
        }
        EXPECT_GE(least, row.least) << row.height;
    }
}

// So much that several processors share it, and a row of tiles at a time, which one does.
TEST(CompositeTest, SharedWorkComesToTheSame) {
    PictureStack stack;
    for (unsigned seed = 0; seed < 5; ++seed) {
        stack.push_back(DrawingOf(Noise(seed), seed == 2 ? 90 : 255));
    }
    QImage whole = PlainComposer::Blank();
    composite::Compose(whole, TileMask::All(), stack);
    TileSums sums;
    composite::Compose(sums, TileMask::All(), stack);
    Picture merged;
    merged.merged = &sums;
    QImage ofSums = PlainComposer::Blank();
    QImage byRows = PlainComposer::Blank();
    for (int row = 0; row < TileMask::COUNT; ++row) {
        TileMask tiles;
        tiles.SetRow(row, ~quint64(0));
        composite::Compose(byRows, tiles, stack);
        composite::Compose(ofSums, tiles, {merged});
    }
    EXPECT_EQ(whole, byRows);
    EXPECT_EQ(whole, ofSums);
}

TEST(CompositeTest, GivesBackASingleDrawing) {
    const QImage drawing = Noise(4);
    QImage composed = PlainComposer::Blank();
    composite::Compose(composed, TileMask::All(), {DrawingOf(drawing)});
    EXPECT_EQ(
        CountPixels(drawing, composed, [](quint32 a, quint32 b) { return b != (a >> 24 == 0 ? 0 : a); }), 0);
}

// Most tiles of a line have one colour, and are kept and painted in another way than others.
TEST(CompositeTest, TilesOfOneColourLookLikeOthers) {
    const QRgb color = qRgb(200, 130, 7);
    QImage flat = Noise(11);
    for (int y = 0; y < 1024; ++y) {
        auto* row = reinterpret_cast<quint32*>(flat.scanLine(y));
        for (int x = 0; x < 1024; ++x) {
            row[x] = (row[x] & 0xff000000u) | 7u << 16 | 130u << 8 | 200u;
        }
    }
    flat.setPixel(3, 3, qRgba(1, 2, 3, 0)); // is not seen
    QImage mixed = flat.copy();
    for (int y = 5; y < 1024; y += 16) {
        for (int x = 5; x < 1024; x += 16) {
            mixed.setPixel(x, y, qRgba(10, 20, 30, 90));
            flat.setPixel(x, y, qRgba(qRed(color), qGreen(color), qBlue(color), 90));
        }
    }
    ASSERT_LT(PackedTiles(flat).ByteCount(), PackedTiles(mixed).ByteCount() / 3);
    for (const int opacity : {255, 101, 3}) {
        for (const bool tinted : {false, true}) {
            QImage composed[2] = {PlainComposer::Blank(), PlainComposer::Blank()};
            for (const bool isFlat : {false, true}) {
                Picture picture = DrawingOf(isFlat ? flat : mixed, opacity);
                picture.tinted = tinted;
                picture.tint = QColor(9, 210, 80);
                composite::Compose(composed[isFlat ? 1 : 0], TileMask::All(),
                                   {DrawingOf(Noise(12)), picture});
            }
            const auto differ = [](quint32 a, quint32 b) { return a != b; };
            const int others = CountPixels(composed[0], composed[1], differ);
            EXPECT_LE(others, tinted ? 0 : 64 * 64) << opacity << tinted;
            EXPECT_EQ(composed[0].pixel(6, 5), composed[1].pixel(6, 5));
        }
    }
    // Only what a stroke changed is packed again, among tiles of both kinds.
    QImage later = mixed.copy();
    QPainter(&later).fillRect(QRect(100, 100, 200, 20), QColor(9, 9, 9));
    const PackedTiles earlier(mixed);
    const TileMask changed = TileMask::Touching(QRect(100, 100, 200, 20));
    Picture picture = DrawingOf(later);
    QImage whole = PlainComposer::Blank();
    composite::Compose(whole, TileMask::All(), {picture});
    const auto again = std::make_shared<PackedTiles>(later, earlier, changed);
    EXPECT_EQ(again->ByteCount(), PackedTiles(later).ByteCount());
    EXPECT_TRUE(PackedTiles::Differences(earlier, *again) == changed);
    picture.drawing = again;
    QImage parts = PlainComposer::Blank();
    composite::Compose(parts, TileMask::All(), {picture});
    EXPECT_EQ(parts, whole);
}

TEST(CompositeTest, PaintsOnlyTheTilesItIsAskedFor) {
    const QImage before = Noise(5);
    const QImage drawing = Noise(6);
    QImage whole = PlainComposer::Blank();
    composite::Compose(whole, TileMask::All(), {DrawingOf(drawing)});
    QImage part = before.copy();
    composite::Compose(part, TileMask::Touching(QRect(100, 200, 30, 1)), {DrawingOf(drawing)});
    const QRect tiles(96, 192, 48, 16);
    EXPECT_EQ(part.copy(tiles), whole.copy(tiles));
    for (const QRect& outside : {QRect(0, 0, 1024, 192), QRect(0, 208, 1024, 816), QRect(0, 192, 96, 16),
                                 QRect(144, 192, 880, 16)}) {
        EXPECT_EQ(part.copy(outside), before.copy(outside));
    }
}

TEST(CompositeTest, SourceOverLeavesPixelsUnderTransparencyAlone) {
    const QImage source = Noise(7);
    const QImage before = Noise(8);
    QImage target = before.copy();
    composite::SourceOver(target, source, TileMask::All());
    QImage expected = before.copy();
    QPainter(&expected).drawImage(0, 0, source);
    EXPECT_LE(PlainComposer::Difference(target, expected), 1);
    QImage unchanged =
        source.copy(); // where the source is transparent, what was there before; else the source
    for (int y = 0; y < 1024; ++y) {
        auto* row = reinterpret_cast<quint32*>(unchanged.scanLine(y));
        const auto* old = reinterpret_cast<const quint32*>(before.constScanLine(y));
        for (int x = 0; x < 1024; ++x) {
            row[x] = row[x] >> 24 == 0 ? old[x] : row[x] >> 24 == 255 || old[x] >> 24 == 0 ? row[x] : 0;
        }
    }
    EXPECT_EQ(CountPixels(unchanged, target, [](quint32 a, quint32 b) { return a != 0 && a != b; }), 0);
}

TEST(CompositeTest, FindsWhereImagesHavePixels) {
    QImage image = PlainComposer::Blank();
    image.setPixel(0, 0, qRgba(0, 0, 0, 1));
    image.setPixel(1023, 1023, qRgba(0, 0, 0, 1));
    image.setPixel(500, 500, qRgba(255, 255, 255, 0)); // colour without alpha is nothing
    QPainter(&image).fillRect(QRect(30, 32, 34, 16), Qt::black);
    const TileCoverage coverage = TileCoverage::Of(image);
    EXPECT_TRUE(coverage.occupied ==
                (TileMask::Touching(QRect(0, 0, 1, 1)) | TileMask::Touching(QRect(1023, 1023, 1, 1)) |
                 TileMask::Touching(QRect(30, 32, 34, 16))));
    EXPECT_TRUE(coverage.opaque == TileMask::Touching(QRect(32, 32, 32, 16)));
    EXPECT_EQ(PackedTiles(image).ByteCount() - PackedTiles(QImage()).ByteCount(), 5u * 260 + 3 * 128)
        << "tiles of one colour keep their alphas alone";
    EXPECT_TRUE(TileCoverage::Of(QImage(64, 64, QImage::Format_RGBA8888)).occupied.IsEmpty());
}

TEST(CompositeTest, MasksHoldTheTilesOfRectangles) {
    const struct {
        QRect rectangle;
        int tiles;
    } cases[] = {
        {QRect(0, 0, 1024, 1024), 4096}, {QRect(-500, -500, 4000, 4000), 4096},
        {QRect(15, 15, 2, 2), 4},        {QRect(16, 0, 16, 16), 1},
        {QRect(2000, 0, 5, 5), 0},       {QRect(), 0},
        {QRect(1008, 0, 900, 17), 2},
    };
    for (const auto& c : cases) {
        const TileMask mask = TileMask::Touching(c.rectangle);
        int visited = 0;
        for (int row = 0; row < TileMask::COUNT; ++row) {
            TileMask::ForEachRun(mask.Row(row), [&visited](int begin, int end) { visited += end - begin; });
        }
        EXPECT_EQ(visited, c.tiles);
        EXPECT_EQ(mask.IsEmpty(), c.tiles == 0);
    }
}

} // namespace
} // namespace vellix
