#include "paint/PngCodec.h"

#include "PaintTesting.h"
#include "paint/DrawUtil.h"
#include "plugin/paint/PngBytes.h"

#include <QColorSpace>
#include <QFile>
#include <QPainter>
#include <QProcess>
#include <QStandardPaths>
#include <QStringList>
#include <QTemporaryDir>
#include <QtEndian>

#include <algorithm>
#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <random>
#include <utility>
#include <vector>

using vellix::PngCodec;
using namespace vellix::png_bytes;

namespace {

// --- pictures

QImage Filled(int width, int height, const std::function<quint32(int, int)>& pixel,
              QImage::Format format = QImage::Format_RGBA8888) {
    QImage image(width, height, format);
    for (int y = 0; y < height; ++y) {
        auto* row = reinterpret_cast<quint32*>(image.scanLine(y));
        for (int x = 0; x < width; ++x) {
            row[x] = pixel(x, y);
        }
    }
    return image;
}

QImage Noise(int width, int height, quint32 mask = 0xffffffffu) {
    std::mt19937 random(unsigned(width * 31 + height));
    return Filled(width, height, [&](int, int) { return quint32(random()) & mask; });
}

QImage Strokes(int count, vellix::ToolType tool) {
    QImage image = EmptyLayer(QColor(200, 30, 90, 0)); // colours under alpha 0
    std::mt19937 random(5);
    for (int i = 0; i < count; ++i) {
        QList<vellix::StrokePoint> points;
        for (int j = 0; j < 6; ++j) {
            points.append(Sample(int(random() % 1024), int(random() % 1024), 3 + int(random() % 60), 0.7f));
        }
        vellix::DrawUtil::DrawFreehand(image, points, 0, tool);
    }
    return image;
}

QImage Painted() {
    QImage image = EmptyLayer(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient gradient(0, 0, 700, 900);
    gradient.setColorAt(0, Qt::red);
    gradient.setColorAt(1, QColor(0, 90, 200, 60));
    painter.fillRect(100, 100, 500, 700, gradient);
    for (int i = 0; i < 40; ++i) { // the same again and again
        painter.drawText(100 + 90 * (i % 8), 60 + 190 * (i / 8), "frame 12");
        painter.drawEllipse(20 + 120 * (i % 8), 400 + 100 * (i / 8), 70, 70);
    }
    return image;
}

// The same rows at distances near the end of the window, and rows longer than it.
QImage Repeated(int width, int rows, int period) {
    return Filled(width, rows,
                  [&](int x, int y) { return quint32((x * 2654435761u) ^ ((y % period) * 40503u)); });
}

struct Named {
    const char* name;
    QImage image;
};

std::vector<Named> MakePictures() {
    std::vector<Named> pictures{
        {"empty", EmptyLayer(Qt::transparent)},
        {"empty in a colour", EmptyLayer()},
        {"white", EmptyLayer(Qt::white)},
        {"noise", Noise(512, 512)}, // Qt takes 100 ms for it
        {"noise in one channel", Noise(500, 333, 0x00ff0000u)},
        {"noise of few values", Noise(400, 400, 0x01010003u)},
        {"alternating empty rows", Filled(64, 500, [](int x, int y) { return y % 2 ? quint32(x * y) : 0u; })},
        {"one pixel at the end", Filled(1024, 1024, [](int x, int y) { return x + y == 2046 ? 7u : 0u; })},
        {"one pixel at the start", Filled(1024, 1024, [](int x, int y) { return x + y == 0 ? 7u : 0u; })},
        {"gradient",
         Filled(1024, 1024,
                [](int x, int y) { return quint32(x / 4) | quint32(y / 4) << 8 | quint32(x * y) << 16; })},
        {"brush strokes", Strokes(30, vellix::ToolType::Brush)},
        {"pencil strokes", Strokes(6, vellix::ToolType::Pencil)},
        {"painted", Painted()},
        {"repeated rows", Repeated(1023, 90, 7)},
        {"repeated short rows", Repeated(100, 2000, 81)},
        {"long rows", Repeated(8192, 9, 2)},
        {"opaque", Noise(301, 200).convertToFormat(QImage::Format_RGB32)},
        {"opaque and painted", Painted().convertToFormat(QImage::Format_RGB32)},
        {"opaque black", Filled(
                             77, 40, [](int, int) { return 0xff000000u; }, QImage::Format_RGB32)},
    };
    for (const QSize& size : {QSize(1, 1), QSize(2, 1), QSize(1, 3), QSize(3, 2), QSize(7, 5), QSize(1, 8192),
                              QSize(8192, 1), QSize(31, 257)}) {
        pictures.push_back({"small noise", Noise(size.width(), size.height())});
        pictures.push_back({"small empty", Noise(size.width(), size.height(), 0)});
        pictures.push_back(
            {"small opaque", Noise(size.width(), size.height()).convertToFormat(QImage::Format_RGB32)});
    }
    // Lengths of runs around those at which a match ends and the next begins.
    for (int width = 60; width < 70; ++width) {
        for (const int gap : {256, 257, 258, 259, 260, 261, 262, 515, 516, 517, 518, 519, 520}) {
            pictures.push_back({"runs", Filled(width, 30, [&](int x, int y) {
                                    return (y * width + x) % gap == 0 ? quint32(x + 0x01020304) : 0u;
                                })});
        }
    }
    return pictures;
}

const std::vector<Named>& Pictures() {
    static const std::vector<Named> pictures = MakePictures();
    return pictures;
}

QByteArray ByUs(const QImage& image) {
    QByteArray packed;
    EXPECT_TRUE(PngCodec::Encode(image, packed));
    return packed;
}

QImage Decoded(const QByteArray& packed) {
    QImage image;
    PngCodec::Decode(packed, image);
    return image;
}

// Pixel by pixel, also where alpha is 0.
bool AreSame(const QImage& a, const QImage& b) {
    if (a.size() != b.size() || a.isNull()) {
        return false;
    }
    const QImage left = a.convertToFormat(QImage::Format_RGBA8888);
    const QImage right = b.convertToFormat(QImage::Format_RGBA8888);
    for (int y = 0; y < a.height(); ++y) {
        if (std::memcmp(left.constScanLine(y), right.constScanLine(y), size_t(a.width()) * 4) != 0) {
            return false;
        }
    }
    return true;
}

// --- PNG made by hand

// A zlib stream; qCompress() puts the length before it.
QByteArray Deflated(const QByteArray& bytes) {
    return qCompress(bytes).mid(4);
}

QByteArray Png(const QByteArray& chunks) {
    return File({chunks, Chunk("IEND")});
}

QByteArray Rgba(int width, int height, const QByteArray& filtered) {
    return Png(Header(width, height, 8, 6) + Chunk("IDAT", Deflated(filtered)));
}

// Rows of noise, with the filter that `filter` gives for each.
QByteArray FilteredNoise(int rowBytes, int height, const std::function<int(int)>& filter) {
    std::mt19937 random(3);
    QByteArray rows;
    for (int y = 0; y < height; ++y) {
        rows += char(filter(y));
        for (int i = 0; i < rowBytes; ++i) {
            rows += char(random());
        }
    }
    return rows;
}

} // namespace

TEST(PngCodecTest, WritesWhatQtReads) {
    for (const Named& picture : Pictures()) {
        const QByteArray packed = ByUs(picture.image);
        QImage read;
        ASSERT_TRUE(read.loadFromData(packed, "PNG")) << picture.name;
        EXPECT_TRUE(AreSame(read, picture.image)) << picture.name << " " << picture.image.width();
        EXPECT_EQ(read.hasAlphaChannel(), picture.image.hasAlphaChannel()) << picture.name;
        EXPECT_EQ(ByUs(picture.image.copy()), packed) << picture.name;
    }
}

TEST(PngCodecTest, ReadsWhatItWritesAndWhatQtWrites) {
    for (const Named& picture : Pictures()) {
        EXPECT_TRUE(AreSame(Decoded(ByUs(picture.image)), picture.image))
            << picture.name << " " << picture.image.width();
        EXPECT_TRUE(AreSame(Decoded(ByQt(picture.image)), picture.image))
            << picture.name << " " << picture.image.width();
    }
}

TEST(PngCodecTest, PicturesTakeLittleMoreThanByQt) {
    const struct {
        Named picture;
        double bound;
    } rows[] = {
        {{"brush", Strokes(30, vellix::ToolType::Brush)}, 1.15},
        {{"pencil", Strokes(6, vellix::ToolType::Pencil)}, 1.15},
        // Smooth gradients, which no drawing tool makes.
        {{"painted", Painted()}, 1.3},
        {{"opaque", Painted().convertToFormat(QImage::Format_RGB32)}, 1.3},
    };
    for (const auto& row : rows) {
        EXPECT_LE(ByUs(row.picture.image).size(), ByQt(row.picture.image).size() * row.bound)
            << row.picture.name;
    }
}

TEST(PngCodecTest, LeavesWhatIsNoPictureAlone) {
    QByteArray packed = "kept";
    EXPECT_FALSE(PngCodec::Encode(QImage(), packed));
    EXPECT_EQ(packed, "kept");
    QImage image = Noise(3, 3);
    const QImage before = image.copy();
    EXPECT_FALSE(PngCodec::Decode("no PNG", image));
    EXPECT_EQ(image, before);
}

// The picture owns its pixels: it outlives the bytes, and painting on a copy leaves it alone.
TEST(PngCodecTest, DecodedPicturesAreOrdinaryImages) {
    const QImage noise = Noise(100, 100);
    QByteArray packed = ByUs(noise);
    QImage image = Decoded(packed);
    packed.fill('x');
    QImage copy = image;
    copy.fill(Qt::red);
    EXPECT_TRUE(AreSame(image, noise));
    QPainter(&image).fillRect(0, 0, 100, 100, Qt::green);
    EXPECT_EQ(image.pixelColor(99, 99), QColor(Qt::green));
    EXPECT_EQ(copy.pixelColor(99, 99), QColor(Qt::red));
}

TEST(PngCodecTest, ReadsEveryFilterAsQtDoes) {
    for (int first = 0; first < 5; ++first) {
        for (int second = 0; second < 5; ++second) {
            for (const int width : {1, 2, 3, 17, 64}) {
                const QByteArray png = Rgba(
                    width, 9, FilteredNoise(4 * width, 9, [&](int y) { return y % 2 ? second : first; }));
                EXPECT_TRUE(AreSame(Decoded(png), QImage::fromData(png)))
                    << first << " " << second << " " << width;
            }
        }
    }
}

TEST(PngCodecTest, ReadsEveryKindAsQtDoes) {
    const struct {
        int colorType;
        int channels;
        std::vector<int> depths;
    } kinds[] = {
        {0, 1, {1, 2, 4, 8, 16}}, {2, 3, {8, 16}}, {3, 1, {1, 2, 4, 8}}, {4, 2, {8, 16}}, {6, 4, {8, 16}}};
    for (const auto& kind : kinds) {
        for (const int depth : kind.depths) {
            QByteArray palette;
            for (int i = 0; kind.colorType == 3 && i < 3 << depth; ++i) {
                palette += char(i * 37);
            }
            const QByteArray colors = palette.isEmpty() ? palette : Chunk("PLTE", palette);
            const QByteArray rows =
                FilteredNoise((19 * kind.channels * depth + 7) / 8, 11, [](int y) { return y % 5; });
            const QByteArray plain =
                Png(Header(19, 11, depth, kind.colorType) + colors + Chunk("IDAT", Deflated(rows)));
            EXPECT_TRUE(AreSame(Decoded(plain), QImage::fromData(plain))) << kind.colorType << " " << depth;
            // A picture of one pixel has the same rows with interlace.
            const QByteArray one = FilteredNoise((kind.channels * depth + 7) / 8, 1, [](int) { return 0; });
            const QByteArray laced =
                Png(Header(1, 1, depth, kind.colorType, 1) + colors + Chunk("IDAT", Deflated(one)));
            EXPECT_TRUE(AreSame(Decoded(laced), QImage::fromData(laced))) << kind.colorType << " " << depth;
        }
    }
}

namespace {

// The rows of the seven passes of an interlaced picture (ISO/IEC 15948, 8.2), without filters. `pixels` are
// rows of `bits` bits a pixel, without filters too.
QByteArray InSevenPasses(const QByteArray& pixels, int width, int height, int bits) {
    const struct {
        int left, top, right, down; // the first pixel, and the steps to the next ones
    } passes[] = {{0, 0, 8, 8}, {4, 0, 8, 8}, {0, 4, 4, 8}, {2, 0, 4, 4},
                  {0, 2, 2, 4}, {1, 0, 2, 2}, {0, 1, 1, 2}};
    const int rowBytes = (width * bits + 7) / 8;
    QByteArray rows;
    for (const auto& pass : passes) {
        for (int y = pass.top; y < height && pass.left < width; y += pass.down) {
            QByteArray row(((width - pass.left + pass.right - 1) / pass.right * bits + 7) / 8, '\0');
            int to = 0;
            for (int x = pass.left; x < width; x += pass.right) {
                for (int bit = 0; bit < bits; ++bit, ++to) {
                    const int from = x * bits + bit;
                    const int value = pixels.at(y * rowBytes + from / 8) >> (7 - from % 8) & 1;
                    row[to / 8] = char(row.at(to / 8) | value << (7 - to % 8));
                }
            }
            rows += '\0' + row;
        }
    }
    return rows;
}

QByteArray WithoutFilters(const QByteArray& pixels, int rowBytes) {
    QByteArray rows;
    for (int at = 0; at < pixels.size(); at += rowBytes) {
        rows += '\0' + pixels.mid(at, rowBytes);
    }
    return rows;
}

} // namespace

TEST(PngCodecTest, InterlaceChangesNoPixels) {
    const int kinds[][3] = {{0, 1, 1}, {0, 1, 2},  {0, 1, 4},  {0, 1, 8}, {0, 1, 16},
                            {2, 3, 8}, {2, 3, 16}, {3, 1, 1},  {3, 1, 2}, {3, 1, 4},
                            {3, 1, 8}, {4, 2, 8},  {4, 2, 16}, {6, 4, 8}, {6, 4, 16}};
    for (const auto& kind : kinds) { // colour type, channels, depth
        for (const QSize& size : {QSize(19, 11), QSize(3, 2), QSize(1, 9), QSize(40, 33)}) {
            const int bits = kind[1] * kind[2];
            const int rowBytes = (size.width() * bits + 7) / 8;
            std::mt19937 random(8);
            QByteArray pixels;
            while (pixels.size() < rowBytes * size.height()) {
                pixels += char(random());
            }
            QByteArray colors;
            for (int i = 0; kind[0] == 3 && i < 3 << kind[2]; ++i) {
                colors += char(i * 37);
            }
            colors = colors.isEmpty() ? colors : Chunk("PLTE", colors) + Chunk("tRNS", QByteArray("\x80", 1));
            const auto png = [&](int interlace, const QByteArray& rows) {
                return Png(Header(size.width(), size.height(), kind[2], kind[0], interlace) + colors +
                           Chunk("IDAT", Deflated(rows)));
            };
            const QByteArray laced = InSevenPasses(pixels, size.width(), size.height(), bits);
            EXPECT_TRUE(AreSame(Decoded(png(1, laced)), Decoded(png(0, WithoutFilters(pixels, rowBytes)))))
                << kind[0] << " " << kind[2] << " " << size.width();
            EXPECT_TRUE(Decoded(png(1, laced.left(1))).isNull() || laced.size() < 20)
                << "most rows are missing";
        }
    }
}

// What other programs put between the chunks that count.
TEST(PngCodecTest, OtherChunksChangeNoPixels) {
    const QByteArray rows = FilteredNoise(4 * 20, 20, [](int y) { return y % 5; });
    const QByteArray stream = Deflated(rows);
    const QByteArray header = Header(20, 20, 8, 6);
    const QByteArray pixels = Chunk("IDAT", stream);
    const QImage expected = QImage::fromData(Png(header + pixels));
    const std::pair<const char*, QByteArray> besides[] = {
        {"gAMA", Number(45455)},
        {"sRGB", QByteArray(1, '\0')},
        {"cHRM", Number(31270) + Number(32900) + Number(64000) + Number(33000) + Number(30000) +
                     Number(60000) + Number(15000) + Number(6000)},
        {"iCCP", QByteArray("name\0\0", 6) + Deflated("no profile")},
        {"tRNS", QByteArray("\0\1\0\2\0\3", 6)},
        {"bKGD", QByteArray("\0\1\0\2\0\3", 6)},
        {"sBIT", QByteArray("\5\5\5\5", 4)},
        {"pHYs", Number(100) + Number(200) + QByteArray(1, '\1')},
        {"tEXt", QByteArray("Comment\0text", 12)},
        {"zTXt", QByteArray("Comment\0\0", 9) + Deflated("text")},
        {"acTL", Number(1) + Number(0)},
        {"fcTL", QByteArray(26, '\0')},
        {"fdAT", Number(1) + stream},
        {"iCCP", QByteArray("Adobe\0\0", 7) + Deflated(QColorSpace(QColorSpace::AdobeRgb).iccProfile())},
        {"prIv", "anything"},
    };
    for (const auto& chunk : besides) {
        for (const QByteArray& png : {Png(header + Chunk(chunk.first, chunk.second) + pixels),
                                      Png(header + pixels + Chunk(chunk.first, chunk.second))}) {
            const QImage byQt = QImage::fromData(png);
            if (!byQt.isNull()) {
                EXPECT_TRUE(AreSame(Decoded(png), byQt)) << chunk.first;
                EXPECT_TRUE(AreSame(Decoded(png), expected)) << chunk.first;
            }
        }
        // A damaged one is skipped.
        QByteArray damaged = Chunk(chunk.first, chunk.second);
        damaged[damaged.size() - 1] = char(damaged.at(damaged.size() - 1) ^ 1);
        EXPECT_TRUE(AreSame(Decoded(Png(header + pixels + damaged)), expected)) << chunk.first;
    }
    // The pixels in many pieces, empty ones among them.
    QByteArray pieces;
    for (int i = 0; i < stream.size(); i += 7) {
        pieces += Chunk("IDAT", stream.mid(i, 7)) + Chunk("IDAT", QByteArray());
    }
    EXPECT_TRUE(AreSame(Decoded(Png(header + pieces)), expected));
    // Bytes behind the stream's end are none of the picture's.
    EXPECT_TRUE(AreSame(Decoded(Png(header + Chunk("IDAT", stream + "more"))), expected));
}

TEST(PngCodecTest, RefusesDamage) {
    const QByteArray header = Header(20, 20, 8, 6);
    const QByteArray rows = FilteredNoise(4 * 20, 20, [](int y) { return y % 5; });
    const QByteArray stream = Deflated(rows);
    const QByteArray pixels = Chunk("IDAT", stream);
    const QByteArray whole = Png(header + pixels);
    ASSERT_FALSE(Decoded(whole).isNull());
    const auto changed = [](QByteArray bytes, int at) {
        bytes[at] = char(bytes.at(at) ^ 0x10);
        return bytes;
    };
    const auto withLength = [&](quint32 length) { return QByteArray(whole).replace(33, 4, Number(length)); };
    QByteArray badFilter = rows;
    badFilter[81 * 7] = 5;
    const std::pair<const char*, QByteArray> cases[] = {
        {"too few rows", Rgba(20, 20, rows.left(81 * 19))},
        {"a byte too few", Rgba(20, 20, rows.left(rows.size() - 1))},
        {"no bytes", Rgba(20, 20, QByteArray())},
        {"a filter out of range", Rgba(20, 20, badFilter)},
        {"a filter far out of range", Rgba(20, 20, QByteArray(rows).replace(0, 1, "\xff"))},
        {"no stream", Png(header + Chunk("IDAT", "this is no stream of bytes"))},
        {"a cut stream", Png(header + Chunk("IDAT", stream.left(stream.size() / 2)))},
        {"no pixels", Png(header)},
        {"an empty chunk of pixels", Png(header + Chunk("IDAT", QByteArray()))},
        {"pixels before the header", Png(pixels + header)},
        {"no end", whole.left(whole.size() - 12)},
        {"half an end", whole.left(whole.size() - 5)},
        {"a wrong checksum of the header", changed(whole, 30)},
        {"a wrong checksum of the pixels", changed(whole, whole.size() - 14)},
        {"a wrong checksum of the end", changed(whole, whole.size() - 1)},
        {"a length of two billion", withLength(0x7fffffffu)},
        {"a length of over two billion", withLength(0x80000000u)},
        {"a length of four billion", withLength(0xffffffffu)},
        {"a length of four billion but for the rest", withLength(0xffffffffu - 11u)},
        {"sides of two billion", Png(Header(0x7fffffff, 0x7fffffff, 8, 6) + pixels)},
        {"negative sides", Png(Header(-1, -1, 8, 6) + pixels)},
        {"no width", Png(Header(0, 20, 8, 6) + pixels)},
        {"a picture the bytes cannot fill", Png(Header(8192, 8192, 8, 6) + pixels)},
        {"a depth of 3", Png(Header(20, 20, 3, 6) + pixels)},
        {"a colour type of 5", Png(Header(20, 20, 8, 5) + pixels)},
        {"a palette missing", Png(Header(20, 20, 8, 3) + pixels)},
        {"another chunk between the pixels",
         Png(header + Chunk("IDAT", stream.left(40)) + Chunk("tEXt", "a") + Chunk("IDAT", stream.mid(40)))},
        {"texts between the pixels", Png(header + Chunk("IDAT", stream.left(40)) + Chunk("zTXt", "a") +
                                         Chunk("tEXt", "b") + Chunk("IDAT", stream.mid(40)))},
        {"pixels swapped", Png(header + Chunk("IDAT", stream.mid(40)) + Chunk("IDAT", stream.left(40)))},
    };
    for (const auto& c : cases) {
        QImage image = Noise(2, 2);
        EXPECT_FALSE(PngCodec::Decode(c.second, image)) << c.first;
        EXPECT_TRUE(AreSame(image, Noise(2, 2))) << c.first;
    }
}

// Whatever happens to a chunk: the picture or nothing, never another picture.
TEST(PngCodecTest, ChunksDoubledSwappedOrDamaged) {
    const QByteArray stream = Deflated(FilteredNoise(4 * 20, 20, [](int y) { return y % 5; }));
    const std::vector<QByteArray> chunks = {Header(20, 20, 8, 6),
                                            Chunk("gAMA", Number(45455)),
                                            Chunk("IDAT", stream.left(700)),
                                            Chunk("IDAT", stream.mid(700)),
                                            Chunk("tEXt", QByteArray("Comment\0text", 12)),
                                            Chunk("IEND")};
    const QImage expected = Decoded(File(chunks));
    ASSERT_FALSE(expected.isNull());
    int read = 0;
    const auto check = [&](const std::vector<QByteArray>& changed, const char* how, size_t chunk) {
        const QImage image = Decoded(File(changed));
        EXPECT_TRUE(image.isNull() || AreSame(image, expected)) << how << " " << chunk;
        read += image.isNull() ? 0 : 1;
    };
    for (size_t i = 0; i < chunks.size(); ++i) {
        std::vector<QByteArray> changed = chunks;
        changed.insert(changed.begin() + std::ptrdiff_t(i), chunks[i]);
        check(changed, "doubled", i);
        changed = chunks;
        changed.erase(changed.begin() + std::ptrdiff_t(i));
        check(changed, "left out", i);
        for (size_t other = 0; other < i; ++other) {
            changed = chunks;
            std::swap(changed[i], changed[other]);
            check(changed, "swapped", i);
        }
        for (int at = 0; at < chunks[i].size(); ++at) {
            changed = chunks;
            changed[i][at] = char(chunks[i].at(at) ^ 0x20);
            check(changed, "changed", i);
            changed[i] = chunks[i].left(at);
            check(changed, "cut", i);
        }
    }
    EXPECT_GT(read, 10) << "what does not matter may be damaged";
}

#ifdef VELLIX_WITH_LIBDEFLATE
// Qt lets these pass.
TEST(PngCodecTest, RefusesStreamsThatDoNotAddUp) {
    const QByteArray header = Header(20, 20, 8, 6);
    const QByteArray rows = FilteredNoise(4 * 20, 20, [](int y) { return y % 5; });
    QByteArray stream = Deflated(rows);
    stream[stream.size() - 1] = char(stream.at(stream.size() - 1) ^ 1);
    EXPECT_TRUE(Decoded(Png(header + Chunk("IDAT", stream))).isNull()) << "a wrong checksum";
    EXPECT_TRUE(Decoded(Rgba(20, 20, rows + "x")).isNull()) << "a byte too many";
    EXPECT_TRUE(Decoded(Rgba(20, 20, rows + rows)).isNull()) << "twice the rows";
}
#endif

// --- bands

namespace {

// Where the chunk that names the bands begins, or -1.
int BandListOf(const QByteArray& packed) {
    return packed.left(packed.indexOf("IDAT")).indexOf("baND") - 4;
}

QByteArray WithBandList(const QByteArray& packed, const QByteArray& list) {
    const int begin = BandListOf(packed);
    const int end = begin + 12 + int(qFromBigEndian<quint32>(packed.constData() + begin));
    return packed.left(begin) + Chunk("baND", list) + packed.mid(end);
}

QByteArray BandListData(const QByteArray& packed) {
    const int begin = BandListOf(packed);
    return packed.mid(begin + 8, int(qFromBigEndian<quint32>(packed.constData() + begin)));
}

// The zlib stream, which may lie in several chunks. `before` receives all up to the first one.
QByteArray StreamOf(const QByteArray& packed, QByteArray& before) {
    int at = packed.indexOf("IDAT") - 4;
    before = packed.left(at);
    QByteArray stream;
    while (packed.mid(at + 4, 4) == "IDAT") {
        const int length = int(qFromBigEndian<quint32>(packed.constData() + at));
        stream += packed.mid(at + 8, length);
        at += 12 + length;
    }
    return stream;
}

// Deflate's block of bytes as they are.
QByteArray Stored(const QByteArray& bytes, bool isLast) {
    QByteArray block(5, char(isLast));
    qToLittleEndian(quint16(bytes.size()), block.data() + 1);
    qToLittleEndian(quint16(~bytes.size()), block.data() + 3);
    return block + bytes;
}

} // namespace

#ifdef VELLIX_WITH_LIBDEFLATE
TEST(PngCodecTest, BusyPicturesAreWrittenInBands) {
    for (const Named& picture : {Named{"noise", Noise(512, 512)}, Named{"noise of few rows", Noise(8192, 33)},
                                 Named{"half a picture", Filled(1024, 1024, [](int x, int y) {
                                           return y < 512 ? quint32(x * y) : 0u;
                                       })}}) {
        EXPECT_GE(BandListOf(ByUs(picture.image)), 0) << picture.name;
    }
    for (const Named& picture :
         {Named{"empty", EmptyLayer()}, Named{"pencil", Strokes(6, vellix::ToolType::Pencil)},
          Named{"small", Noise(100, 100)},
          Named{"opaque", Noise(512, 512).convertToFormat(QImage::Format_RGB32)}}) {
        EXPECT_LT(BandListOf(ByUs(picture.image)), 0) << picture.name;
    }
}
#endif

// A list of bands helps to read the picture, or is of no use; it never makes another picture.
TEST(PngCodecTest, NoListOfBandsChangesThePicture) {
    const QImage picture = Noise(512, 512);
    QByteArray packed = ByUs(picture);
    if (BandListOf(packed) < 0) { // Qt wrote it
        packed.insert(packed.indexOf("IDAT") - 4, Chunk("baND", Number(64) + Number(9000)));
    }
    const QByteArray list = BandListData(packed);
    ASSERT_FALSE(list.isEmpty());
    std::vector<QByteArray> lists{QByteArray(),
                                  list + list,
                                  list.left(list.size() - 1),
                                  list.mid(8),
                                  list.left(8),
                                  list.mid(4) + list.left(4),
                                  QByteArray(8 * 512, '\0')};
    for (int at = 0; at < list.size(); at += 4) {
        const auto number = qFromBigEndian<quint32>(list.constData() + at);
        for (const quint32 other : {0u, 1u, 2u, number - 1, number + 1, number + 7, 511u, 512u, 513u,
                                    0x7fffffffu, 0x80000000u, 0xffffffffu}) {
            QByteArray changed = list;
            qToBigEndian(other, changed.data() + at);
            lists.push_back(changed);
        }
    }
    for (const QByteArray& other : lists) {
        EXPECT_TRUE(AreSame(Decoded(WithBandList(packed, other)), picture)) << other.toHex().toStdString();
    }
    const QByteArray chunk = Chunk("baND", list);
    QByteArray twice = packed;
    EXPECT_TRUE(AreSame(Decoded(twice.insert(BandListOf(packed), Chunk("baND", list.mid(8)))), picture));
    QByteArray behind = WithBandList(packed, QByteArray());
    EXPECT_TRUE(AreSame(Decoded(behind.insert(behind.size() - 12, chunk)), picture));
    // The pixels in two pieces, and bytes behind them.
    QByteArray before;
    const QByteArray stream = StreamOf(packed, before);
    EXPECT_TRUE(AreSame(Decoded(before + Chunk("IDAT", stream.left(3000)) +
                                Chunk("IDAT", stream.mid(3000) + "more") + Chunk("IEND")),
                        picture));
}

#ifdef VELLIX_WITH_LIBDEFLATE
// Bytes of a band that do not inflate, or to something else, are told as those of any picture are.
TEST(PngCodecTest, DamageInABandIsFound) {
    const QByteArray packed = ByUs(Noise(512, 512));
    QByteArray before;
    const QByteArray stream = StreamOf(packed, before);
    for (int at = 2; at < stream.size(); at += stream.size() / 40) {
        QByteArray changed = stream;
        changed[at] = char(changed.at(at) ^ 0x10);
        const QImage image = Decoded(before + Chunk("IDAT", changed) + Chunk("IEND"));
        EXPECT_TRUE(image.isNull()) << at;
    }
}
#endif

// As only another program could write them: bands whose first row needs the one above, in every filter, and
// one with a filter that there is none of.
TEST(PngCodecTest, BandsThatDoNotStandForThemselves) {
    constexpr int rowBytes = 1 + 4 * 20;
    for (int filter = 0; filter <= 5; ++filter) {
        const QByteArray rows =
            FilteredNoise(rowBytes - 1, 20, [&](int y) { return y % 5 == 0 ? filter : 1; });
        QByteArray stream("\x78\x01", 2);
        QByteArray list;
        for (int y = 0; y < 20; y += 5) {
            list += y == 0 ? QByteArray() : Number(quint32(y)) + Number(quint32(stream.size()));
            stream += Stored(rows.mid(y * rowBytes, 5 * rowBytes), y == 15);
        }
        stream += Deflated(rows).right(4); // the checksum
        const QByteArray header = Header(20, 20, 8, 6);
        const QImage plain = QImage::fromData(Png(header + Chunk("IDAT", stream)));
        const QImage image = Decoded(Png(header + Chunk("baND", list) + Chunk("IDAT", stream)));
        if (filter < 5) {
            EXPECT_TRUE(AreSame(image, plain)) << filter;
        } else {
            EXPECT_TRUE(image.isNull());
        }
    }
}

TEST(PngCodecTest, OtherReadersReadWhatItWrites) {
    const QString reader = QStandardPaths::findExecutable("pngtopam");
    if (reader.isEmpty()) {
        GTEST_SKIP() << "pngtopam is not installed (netpbm)";
    }
    const QTemporaryDir folder;
    for (const Named& picture :
         {Named{"brush", Strokes(10, vellix::ToolType::Brush)}, Named{"noise", Noise(333, 41)},
          Named{"in bands", Noise(512, 512)}, Named{"empty", EmptyLayer(Qt::transparent)},
          Named{"painted", Painted()}, Named{"opaque", Painted().convertToFormat(QImage::Format_RGB32)}}) {
        QFile file(folder.filePath("a.png"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(ByUs(picture.image));
        file.close();
        QProcess process;
        process.start(reader, {"-alphapam", file.fileName()});
        ASSERT_TRUE(process.waitForFinished()) << picture.name;
        EXPECT_EQ(process.exitCode(), 0) << picture.name;
        EXPECT_EQ(process.readAllStandardError().toStdString(), "") << picture.name;
        QByteArray pam = process.readAllStandardOutput();
        pam.remove(0, pam.indexOf("ENDHDR\n") + 7);
        const QImage expected = picture.image.convertToFormat(QImage::Format_RGBA8888);
        ASSERT_EQ(pam.size(), expected.width() * expected.height() * 4) << picture.name;
        EXPECT_EQ(std::memcmp(pam.constData(), expected.constBits(), size_t(pam.size())), 0) << picture.name;
    }
}

TEST(PngCodecTest, ReadsWhatOtherProgramsWrite) {
    const QString writer = QStandardPaths::findExecutable("pnmtopng");
    if (writer.isEmpty()) {
        GTEST_SKIP() << "pnmtopng is not installed (netpbm)";
    }
    const QImage gray = Painted().convertToFormat(QImage::Format_Grayscale8).copy(90, 90, 61, 47);
    QByteArray pgm = "P5 61 47 255\n";
    for (int y = 0; y < 47; ++y) {
        pgm.append(reinterpret_cast<const char*>(gray.constScanLine(y)), 61);
    }
    for (const QStringList& arguments : {QStringList{}, QStringList{"-interlace"}, QStringList{"-force"},
                                         QStringList{"-gamma", "0.45"}, QStringList{"-background", "red"},
                                         QStringList{"-filter", "4"}, QStringList{"-transparent", "white"}}) {
        QProcess process;
        process.start(writer, arguments);
        process.write(pgm);
        process.closeWriteChannel();
        ASSERT_TRUE(process.waitForFinished());
        const QByteArray png = process.readAllStandardOutput();
        ASSERT_FALSE(png.isEmpty()) << arguments.join(" ").toStdString();
        EXPECT_TRUE(AreSame(Decoded(png), QImage::fromData(png))) << arguments.join(" ").toStdString();
    }
}
