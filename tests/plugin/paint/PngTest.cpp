#include "PaintTesting.h"
#include "paint/DrawUtil.h"
#include "paint/PngStructure.h"
#include "plugin/paint/PngBytes.h"

#include <QBuffer>
#include <QFile>
#include <QtEndian>

#include <cstring>
#include <gtest/gtest.h>

using vellix::DrawUtil;
using vellix::PngStructure;

namespace {

QImage Gradient(int width, int height, QImage::Format format = QImage::Format_RGBA8888) {
    QImage image(width, height, QImage::Format_RGBA8888);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const uchar pixel[] = {uchar(x), uchar(y), uchar(x * y), uchar(x + 2 * y)};
            std::memcpy(image.scanLine(y) + 4 * x, pixel, 4);
        }
    }
    return image.convertToFormat(format);
}

QByteArray Packed(const QImage& image) {
    QByteArray packed = "left over";
    DrawUtil::PackPngBuffer(image, packed);
    return packed;
}

QByteArray WithSize(QByteArray packed, quint32 width, quint32 height) {
    qToBigEndian(width, packed.data() + 16);
    qToBigEndian(height, packed.data() + 20);
    return packed;
}

} // namespace

TEST(PngPacking, ReturnsIdenticalPixels) {
    const QImage image = Gradient(1024, 1024); // colours under alpha 0 included
    const QByteArray packed = Packed(image);
    QImage unpacked;
    ASSERT_TRUE(DrawUtil::UnpackPngBuffer(packed, unpacked));
    EXPECT_EQ(unpacked.format(), QImage::Format_RGBA8888);
    EXPECT_EQ(Difference(unpacked, image), QRect());
    EXPECT_TRUE(Packed(QImage()).isEmpty());
}

TEST(PngPacking, AnySizeBecomesALayer) {
    for (const QSize& size : {QSize(1, 1), QSize(40, 2000), QSize(1024, 1023), QSize(3000, 1)}) {
        const QImage picture = Gradient(size.width(), size.height());
        QImage layer;
        ASSERT_TRUE(DrawUtil::UnpackPngBuffer(Packed(picture), layer));
        QImage expected = EmptyLayer(Qt::transparent);
        for (int y = 0; y < std::min(1024, size.height()); ++y) {
            std::memcpy(expected.scanLine(y), picture.constScanLine(y),
                        4 * size_t(std::min(1024, size.width())));
        }
        EXPECT_EQ(Difference(layer, expected), QRect());
    }
}

TEST(PngPacking, AnyKindOfPngBecomesALayer) {
    for (const QImage::Format format :
         {QImage::Format_RGBA64, QImage::Format_Indexed8, QImage::Format_Grayscale8, QImage::Format_Mono,
          QImage::Format_RGB888}) {
        for (const int side : {300, 1024}) {
            QImage picture = Gradient(side, side, format);
            picture.setText("Comment", "does not stay");
            QImage layer;
            ASSERT_TRUE(DrawUtil::UnpackPngBuffer(Packed(picture), layer)) << int(format);
            EXPECT_EQ(layer.size(), QSize(1024, 1024));
            EXPECT_EQ(layer.format(), QImage::Format_RGBA8888);
            EXPECT_TRUE(layer.textKeys().isEmpty());
            const QImage expected = picture.convertToFormat(QImage::Format_RGBA8888);
            EXPECT_EQ(layer.pixelColor(250, 77), expected.pixelColor(250, 77)) << int(format);
            EXPECT_EQ(layer.pixelColor(299, 299), expected.pixelColor(299, 299)) << int(format);
        }
    }
}

TEST(PngPacking, LargePicturesAreCroppedUpToABound) {
    QImage large(8192, 8192, QImage::Format_Mono);
    large.fill(1);
    const QByteArray packed = Packed(large);
    QImage layer;
    ASSERT_TRUE(DrawUtil::UnpackPngBuffer(packed, layer));
    EXPECT_EQ(layer.size(), QSize(1024, 1024));
    EXPECT_FALSE(DrawUtil::UnpackPngBuffer(Packed(QImage(8193, 1, QImage::Format_Grayscale8)), layer));
}

TEST(PngPacking, BadBytesAreUndecodable) {
    const QByteArray sound = Packed(Gradient(64, 64));
    QByteArray damaged = sound;
    damaged[60] = char(damaged.at(60) ^ 0x55);
    const QByteArray cases[] = {QByteArray(),
                                "no PNG",
                                QByteArray(500, '\0'),
                                sound.left(8),
                                sound.left(33),
                                sound.left(sound.size() / 2),
                                damaged,
                                sound.mid(1),
                                WithSize(sound, 0, 64),
                                WithSize(sound, 0x7fffffff, 0x7fffffff),
                                WithSize(sound, 0xffffffff, 1),
                                WithSize(sound, 8192, 8192),
                                Packed(Gradient(64, 64)).replace("PNG", "JPG")};
    int number = 0;
    for (const QByteArray& bytes : cases) {
        EXPECT_FALSE(PngStructure::IsSound(bytes)) << number;
        QImage image = EmptyLayer();
        EXPECT_FALSE(DrawUtil::UnpackPngBuffer(bytes, image)) << number;
        EXPECT_TRUE(image.isNull()) << number;
        ++number;
    }
}

TEST(PngPacking, TheStructureIsCheckedChunkByChunk) {
    using namespace vellix::png_bytes;
    const QByteArray header = Header(1, 1, 8, 6);
    const QByteArray pixels = Pixels(QByteArray("\0\xff\0\0\xff", 5));
    const QByteArray end = Chunk("IEND");
    QByteArray badComment = Chunk("tEXt", "Comment");
    badComment[9] = 'X';
    QByteArray badPixels = pixels;
    badPixels[10] = char(badPixels.at(10) ^ 1);
    const struct {
        const char* what;
        QByteArray bytes;
        bool sound;
        bool decodes;
    } cases[] = {
        {"plain", File({header, pixels, end}), true, true},
        {"something behind the end", File({header, pixels, end, "more"}), true, true},
        {"damaged comment", File({header, badComment, pixels, end}), true, true},
        {"damaged pixels", File({header, badPixels, end}), false, false},
        {"no pixels", File({header, end}), false, false},
        {"no end", File({header, pixels}), false, false},
        {"two headers", File({header, header, pixels, end}), false, false},
        {"pixels first", File({pixels, header, end}), false, false},
        {"unknown critical chunk", File({header, Chunk("ABCD"), pixels, end}), false, false},
        {"length of two billion", File({header, "\x7f\xff\xff\xffIDAT", pixels, end}), false, false},
        {"length of four billion", File({header, "\xff\xff\xff\xffIDAT", pixels, end}), false, false},
        {"palette", OnePixel(8, 3, QByteArray("\0\0", 2)), true, true},
        {"no palette", File({Header(1, 1, 8, 3), Pixels(QByteArray("\0\0", 2)), end}), false, false},
        {"palette of four bytes", File({Header(1, 1, 8, 3), Chunk("PLTE", "rgbr"), pixels, end}), false,
         false},
        {"interlaced", OnePixel(8, 6, QByteArray("\0\xff\0\0\xff", 5), 1), true, true},
        {"interlaced in a new way", OnePixel(8, 6, QByteArray("\0\xff\0\0\xff", 5), 2), false, false},
        {"three bits", OnePixel(3, 0, QByteArray("\0\0", 2)), false, false},
        {"palette of 16 bits", OnePixel(16, 3, QByteArray("\0\0\0", 3)), false, false},
        {"unknown colours", OnePixel(8, 5, QByteArray("\0\0\0", 3)), false, false},
        {"16 bits", OnePixel(16, 6, QByteArray("\0\xff\xff\0\0\0\0\xff\xff", 9)), true, true},
        {"one bit", OnePixel(1, 0, QByteArray("\0\x80", 2)), true, true},
        {"pixels that do not inflate", NotInflating(), true, false},
    };
    for (const auto& test : cases) {
        EXPECT_EQ(PngStructure::IsSound(test.bytes), test.sound) << test.what;
        QImage image;
        EXPECT_EQ(DrawUtil::UnpackPngBuffer(test.bytes, image), test.decodes) << test.what;
        EXPECT_EQ(image.isNull(), !test.decodes) << test.what;
    }
}

TEST(PngPacking, WhatDecodesHasASoundStructure) {
    using namespace vellix::png_bytes;
    const QByteArray file = Packed(Gradient(5, 3));
    int decoded = 0;
    for (int at = 24; at < 29; ++at) { // the fields behind the size
        for (int value = 0; value <= 17; ++value) {
            QByteArray bytes = file;
            bytes[at] = char(value);
            bytes.replace(29, 4, Number(Crc(bytes.mid(12, 17))));
            QImage image;
            if (image.loadFromData(bytes, "PNG")) {
                EXPECT_TRUE(PngStructure::IsSound(bytes)) << at << " is " << value;
                ++decoded;
            }
        }
    }
    EXPECT_GE(decoded, 5) << "the file itself";
}

TEST(PngPacking, TheStructureAgreesWithUnpackingWhereverTheBytesEnd) {
    const QByteArray sound = Packed(Gradient(20, 20));
    for (int length = 0; length <= sound.size(); ++length) {
        const QByteArray cut = sound.left(length);
        QImage image;
        const bool unpacked = DrawUtil::UnpackPngBuffer(cut, image);
        EXPECT_EQ(unpacked, PngStructure::IsSound(cut)) << length;
        EXPECT_TRUE(!unpacked || image.size() == QSize(1024, 1024)) << length;
    }
}
