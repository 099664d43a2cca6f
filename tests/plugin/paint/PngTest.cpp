#include "PaintTesting.h"
#include "paint/DrawUtil.h"

#include <QBuffer>
#include <QFile>
#include <QtEndian>

#include <cstring>
#include <gtest/gtest.h>

using vellix::DrawUtil;
using PngContent = DrawUtil::PngContent;

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
    EXPECT_EQ(DrawUtil::CheckPngBuffer(packed), PngContent::LayerSize);
    QByteArray kept = packed;
    EXPECT_TRUE(DrawUtil::NormalisePngBuffer(kept));
    EXPECT_EQ(kept, packed);
    EXPECT_TRUE(Packed(QImage()).isEmpty());
}

TEST(PngPacking, AnySizeBecomesALayer) {
    for (const QSize& size : {QSize(1, 1), QSize(40, 2000), QSize(1024, 1023), QSize(3000, 1)}) {
        const QImage picture = Gradient(size.width(), size.height());
        QByteArray packed = Packed(picture);
        EXPECT_EQ(DrawUtil::CheckPngBuffer(packed), PngContent::OtherSize);
        ASSERT_TRUE(DrawUtil::NormalisePngBuffer(packed));
        EXPECT_EQ(DrawUtil::CheckPngBuffer(packed), PngContent::LayerSize);
        QImage layer;
        ASSERT_TRUE(DrawUtil::UnpackPngBuffer(packed, layer));
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
    EXPECT_EQ(DrawUtil::CheckPngBuffer(packed), PngContent::OtherSize);
    QImage layer;
    ASSERT_TRUE(DrawUtil::UnpackPngBuffer(packed, layer));
    EXPECT_EQ(layer.size(), QSize(1024, 1024));
    EXPECT_EQ(DrawUtil::CheckPngBuffer(Packed(QImage(8193, 1, QImage::Format_Grayscale8))),
              PngContent::Undecodable);
}

TEST(PngPacking, BadBytesAreUndecodableAndKept) {
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
        EXPECT_EQ(DrawUtil::CheckPngBuffer(bytes), PngContent::Undecodable) << number;
        QImage image = EmptyLayer();
        EXPECT_FALSE(DrawUtil::UnpackPngBuffer(bytes, image)) << number;
        EXPECT_TRUE(image.isNull()) << number;
        QByteArray kept = bytes;
        EXPECT_FALSE(DrawUtil::NormalisePngBuffer(kept)) << number;
        EXPECT_EQ(kept, bytes) << number;
        ++number;
    }
}

TEST(PngPacking, TheCheckAgreesWithUnpackingWhereverTheBytesEnd) {
    const QByteArray sound = Packed(Gradient(20, 20));
    for (int length = 0; length <= sound.size(); ++length) {
        const QByteArray cut = sound.left(length);
        QImage image;
        const bool unpacked = DrawUtil::UnpackPngBuffer(cut, image);
        EXPECT_EQ(unpacked, DrawUtil::CheckPngBuffer(cut) != PngContent::Undecodable) << length;
        EXPECT_TRUE(!unpacked || image.size() == QSize(1024, 1024)) << length;
    }
}
