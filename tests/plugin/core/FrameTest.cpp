#include "paint/DrawUtil.h"
#include "paint/PackedTiles.h"
#include "paint/Picture.h"
#include "paint/TilePatch.h"
#include "plugin/ShortOfMemory.h"
#include "plugin/core/DocumentTest.h"
#include "plugin/paint/PngBytes.h"

#include <new>

namespace vellix {
namespace {

class FrameTest : public DocumentTest {
protected:
    static QByteArray Png(const QImage& image) {
        QByteArray png;
        DrawUtil::PackPngBuffer(image, png);
        return png;
    }
};

TEST_F(FrameTest, HasATransparentImageUntilItIsGivenOne) {
    Frame frame(At(3));
    EXPECT_EQ(frame.GetImage(), PlainComposer::Blank());
    EXPECT_EQ(frame.GetImage().format(), QImage::Format_RGBA8888);
}

TEST_F(FrameTest, KeepsItsPixelsThroughPackingAndCopying) {
    Frame frame(At(3));
    QImage drawing = Drawing(1);
    drawing.setPixel(5, 5, qRgba(9, 8, 7, 0)); // hidden colour counts too
    frame.SetImage(drawing);
    Frame copy(frame);
    EXPECT_FALSE(copy.IsUnpacked());
    EXPECT_NE(copy.GetImage().constBits(), frame.GetImage().constBits());
    EXPECT_EQ(copy.GetImage(), drawing);

    frame.PackImage();
    EXPECT_FALSE(frame.IsUnpacked());
    EXPECT_EQ(Frame(frame).GetImage(), drawing);
    EXPECT_EQ(frame.PeekImage(), drawing);
    EXPECT_FALSE(frame.IsUnpacked());
    EXPECT_EQ(frame.GetImage(), drawing);
}

TEST_F(FrameTest, UnpacksBytesOnlyOnce) {
    Frame frame(At(1));
    frame.SetImage(Drawing(1));
    frame.PackImage();
    frame.GetImage();
    frame.SetImage(QImage());
    EXPECT_EQ(frame.GetImage(), PlainComposer::Blank()) << "the bytes were let go of when they were unpacked";

    frame.SetPackedImage(Png(Drawing(2)));
    frame.SetImage(Drawing(3));
    EXPECT_EQ(frame.GetImage(), Drawing(3));
    frame.SetImage(QImage());
    EXPECT_EQ(frame.GetImage(), Drawing(2)) << "setting an image leaves packed bytes alone";
}

TEST_F(FrameTest, GivesTheBytesOfWhatItShows) {
    const QByteArray bytes = Png(Drawing(1));
    Frame frame(At(1));
    frame.SetPackedImage(bytes);
    EXPECT_TRUE(frame.GetPackedImage().isSharedWith(bytes)) << "known bytes are not encoded again";
    frame.GetImage();
    EXPECT_TRUE(frame.GetPackedImage().isSharedWith(bytes));
    frame.GetImage().setPixel(700, 700, qRgba(1, 2, 3, 255));
    QImage decoded;
    ASSERT_TRUE(DrawUtil::UnpackPngBuffer(frame.GetPackedImage(), decoded));
    EXPECT_EQ(decoded, frame.GetImage());
    EXPECT_EQ(decoded.pixel(700, 700), qRgba(1, 2, 3, 255));
    const QByteArray encoded = frame.GetPackedImage();
    EXPECT_TRUE(frame.GetPackedImage().isSharedWith(encoded)) << "encoded once while the pixels stay";

    ASSERT_TRUE(DrawUtil::UnpackPngBuffer(Frame(At(2)).GetPackedImage(), decoded));
    EXPECT_EQ(decoded, PlainComposer::Blank());
}

TEST_F(FrameTest, NamesItsPictureByAKey) {
    Frame frame(At(1));
    EXPECT_EQ(frame.GetPictureKey(), 0);
    frame.SetPackedImage(Png(Drawing(1)));
    const qint64 first = frame.GetPictureKey();
    frame.GetImage();
    EXPECT_EQ(frame.GetPictureKey(), first) << "unpacking changes no picture";
    frame.GetPackedImage();
    frame.PackImage();
    EXPECT_EQ(frame.GetPictureKey(), first) << "nor does packing";
    frame.SetImage(Drawing(2));
    const qint64 second = frame.GetPictureKey();
    frame.GetPackedImage();
    EXPECT_EQ(frame.GetPictureKey(), second);
    EXPECT_NE(second, first);
    frame.SetImage(QImage());
    EXPECT_EQ(frame.GetPictureKey(), first) << "the bytes of before show again";
    EXPECT_EQ(Frame(frame).GetPictureKey(), first);
    frame.GetImage().setPixel(1, 1, qRgba(1, 1, 1, 1));
    EXPECT_NE(frame.GetPictureKey(), first);
    EXPECT_NE(frame.GetPictureKey(), second);
}

TEST_F(FrameTest, BringsImagesOfOtherKindsIntoShape) {
    Frame frame(At(1));
    QImage small(10, 2000, QImage::Format_ARGB32);
    small.fill(QColor(200, 100, 50, 128));
    frame.SetImage(small);
    EXPECT_EQ(frame.GetImage().size(), QSize(1024, 1024));
    EXPECT_EQ(frame.GetImage().format(), QImage::Format_RGBA8888);
    EXPECT_EQ(frame.GetImage().pixel(9, 1023), qRgba(200, 100, 50, 128));
    EXPECT_EQ(frame.GetImage().pixel(10, 0), 0u);
}

TEST_F(FrameTest, KeepsBytesThatDoNotDecode) {
    for (const QByteArray& bytes : {QByteArray("rubbish"), png_bytes::NotInflating()}) {
        Frame frame(At(1));
        frame.SetPackedImage(bytes);
        EXPECT_FALSE(frame.IsDamaged()) << "nobody has looked";
        EXPECT_TRUE(frame.PeekImage().isNull());
        EXPECT_FALSE(frame.Unpack());
        EXPECT_TRUE(frame.TakeNewDamage());
        EXPECT_FALSE(frame.TakeNewDamage());
        EXPECT_EQ(frame.GetImage(), PlainComposer::Blank());
        frame.GetImage().fill(Qt::red);
        frame.PackImage();
        EXPECT_EQ(frame.GetImage(), PlainComposer::Blank());
        EXPECT_EQ(frame.GetPackedImage(), bytes);
        EXPECT_EQ(Frame(frame).GetPackedImage(), bytes);
        frame.SetPackedImage(Png(Drawing(1)));
        EXPECT_FALSE(frame.IsDamaged());
        EXPECT_EQ(frame.GetImage(), Drawing(1));
    }
}

TEST_F(FrameTest, ShowsAnImageThatItPackedBefore) {
    const QImage drawing = Drawing(1);
    Frame frame(At(1));
    frame.SetImage(drawing);
    frame.PackImage();
    frame.SetImage(drawing);
    EXPECT_NE(frame.GetPictureKey(), 0) << "0 stands for a frame without a picture";
}

TEST_F(FrameTest, StaysAsItWasWhenMemoryIsShort) {
    const QByteArray bytes = Png(Drawing(1));
    Frame packed(At(1));
    packed.SetPackedImage(bytes);
    Frame painted(At(2));
    painted.SetImage(Drawing(2));
    std::unique_ptr<Frame> copy;
    {
        const ShortOfMemory scope;
        if (!scope.IsShort()) {
            GTEST_SKIP() << "memory cannot be limited here";
        }
        EXPECT_THROW(packed.Unpack(), std::bad_alloc);
        EXPECT_THROW(packed.GetImage(), std::bad_alloc);
        EXPECT_THROW(packed.PeekImage(), std::bad_alloc);
        EXPECT_TRUE(painted.GetPackedImage().isEmpty());
        painted.PackImage();
        copy = std::make_unique<Frame>(painted);
    }
    EXPECT_FALSE(packed.IsDamaged());
    EXPECT_EQ(packed.GetPackedImage(), bytes);
    EXPECT_EQ(packed.GetImage(), Drawing(1));
    EXPECT_EQ(painted.GetImage(), Drawing(2));
    EXPECT_EQ(copy->GetImage(), Drawing(2)) << "a copy that cannot be packed shares the pixels";
}

// A frame may keep its pixels as an image, as some tiles, as bytes or not at all: strokes, their undo and
// what is composed are the same.
TEST_F(FrameTest, StrokesAreTheSameInWhicheverWayItKeepsItsPixels) {
    const QImage drawn = Drawing(1);
    const QImage changed = Drawing(2);
    const QByteArray png = Png(drawn);
    for (const QImage& start : {PlainComposer::Blank(), drawn}) {
        for (int way = 0; way < 4; ++way) {
            Frame frame(At(1));
            if (start == drawn) {
                frame.SetPackedImage(png);
            }
            if (way == 1) {
                frame.Unpack();
            } else if (way == 2) {
                frame.GetImage();
            }
            const qint64 before = frame.GetPictureKey();
            const qint64 after = Picture::NewKey();
            TilePatch patch(start, TileMask::All(), changed, nullptr);
            patch.SetKeys(before, after);
            const TileMask tiles = patch.Tiles();
            ASSERT_TRUE(frame.Exchange(patch)) << way;
            EXPECT_EQ(frame.GetPictureKey(), after);
            EXPECT_EQ(frame.PeekImage(), changed) << way;
            EXPECT_EQ(frame.LastChange().before, before);
            EXPECT_EQ(frame.LastChange().tiles, tiles);
            EXPECT_EQ(frame.PeekTiles().Coverage().occupied, PackedTiles(changed).Coverage().occupied);
            if (way == 3) {
                EXPECT_EQ(frame.GetImage(), changed);
                EXPECT_EQ(frame.GetPictureKey(), after) << "asking for an image changes none";
                EXPECT_EQ(frame.LastChange().before, before);
            }
            EXPECT_EQ(Frame(frame).GetImage(), changed);
            ASSERT_TRUE(frame.Exchange(patch)) << way;
            EXPECT_EQ(frame.GetPictureKey(), before);
            EXPECT_EQ(frame.PeekImage().isNull(), before == 0) << way;
            EXPECT_EQ(frame.GetImage(), start) << way;
        }
    }
}

TEST_F(FrameTest, PixelsThatAreDrawnOnByOthersAreKept) {
    Frame frame(At(1));
    frame.SetPackedImage(Png(Drawing(1)));
    frame.Unpack();
    const qint64 before = frame.GetPictureKey();
    frame.GetImage().setPixel(3, 4, qRgba(5, 6, 7, 8));
    EXPECT_NE(frame.GetPictureKey(), before);
    EXPECT_EQ(frame.PeekImage().pixel(3, 4), qRgba(5, 6, 7, 8));
    EXPECT_EQ(Frame(frame).GetImage().pixel(3, 4), qRgba(5, 6, 7, 8));
    frame.Unpack();
    EXPECT_EQ(frame.GetImage().pixel(3, 4), qRgba(5, 6, 7, 8));
}

TEST_F(FrameTest, ReadsTimesAsWholeFrames) {
    const struct {
        double time;
        int frame;
    } cases[] = {{4.9, 4},     {-4.9, -4},          {0.2, 0},
                 {-999, -999}, {1e300, 2147483647}, {-1e300, -2147483647 - 1}};
    for (const auto& c : cases) {
        EXPECT_EQ(Frame(At(c.time)).GetTimeValue(), c.frame) << c.time;
    }
    Frame frame(At(0));
    frame.SetTimeValue(17);
    EXPECT_EQ(frame.GetTime(), At(17));
}

} // namespace
} // namespace vellix
