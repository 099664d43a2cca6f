#include "exchange/CanvasFit.h"

#include "exchange/PictureFiles.h"
#include "paint/PngCodec.h"
#include "plugin/exchange/MadeArchive.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace vellix {
namespace {

constexpr double WIDE = 16.0 / 9.0;

QRect TargetOf(CanvasFit::Mode mode, int width, int height, double gateAspect = WIDE) {
    return CanvasFit(mode, QSize(width, height), gateAspect, 1.0).Target();
}

QImage Decoded(const QByteArray& png) {
    QImage image;
    EXPECT_TRUE(PngCodec::Decode(png, image));
    EXPECT_EQ(image.size(), QSize(1024, 1024));
    return image.convertToFormat(QImage::Format_RGBA8888);
}

TEST(CanvasFitTest, LaysPicturesOverTheGate) {
    using Mode = CanvasFit::Mode;
    // The gate of 16:9 is 1024 x 576 in the middle of the square.
    EXPECT_EQ(TargetOf(Mode::Gate, 1920, 1080), QRect(0, 224, 1024, 576));
    EXPECT_EQ(TargetOf(Mode::Gate, 1000, 1000), QRect(224, 224, 576, 576));
    EXPECT_EQ(TargetOf(Mode::Gate, 4000, 1000), QRect(0, 384, 1024, 256));
    EXPECT_EQ(TargetOf(Mode::Width, 1000, 1000), QRect(0, 0, 1024, 1024));
    EXPECT_EQ(TargetOf(Mode::Width, 1000, 2000), QRect(0, -512, 1024, 2048));
    EXPECT_EQ(TargetOf(Mode::Height, 4000, 1000), QRect(-640, 224, 2304, 576));
    EXPECT_EQ(TargetOf(Mode::Square, 500, 1000), QRect(256, 0, 512, 1024));
    EXPECT_EQ(TargetOf(Mode::Automatic, 2048, 2048), QRect(0, 0, 1024, 1024));
    EXPECT_EQ(TargetOf(Mode::Automatic, 2048, 1152), QRect(0, 224, 1024, 576));
    EXPECT_EQ(TargetOf(Mode::Gate, 1080, 1920, 0.5625),
              QRect(0, -398, 1024, 1820)); // higher than the drawing
    EXPECT_EQ(TargetOf(Mode::Height, 8192, 1), QRect((1024 - 16384) / 2, 224, 16384, 576));
}

TEST(CanvasFitTest, KeepsTheBytesOfAWholeDrawing) {
    const CanvasFit fit(CanvasFit::Mode::Automatic, QSize(1024, 1024), WIDE, 1.0);
    const QByteArray drawing = MadeArchive::Png(1024, 1024, QColor(10, 20, 30, 40));
    EXPECT_EQ(fit.Place(drawing, QPoint()), drawing);
    EXPECT_NE(fit.Place(drawing, QPoint(0, 1)), drawing);
    EXPECT_TRUE(fit.Place("no picture", QPoint()).isEmpty());
    QByteArray cut = drawing;
    cut.chop(30);
    EXPECT_TRUE(fit.Place(cut, QPoint()).isEmpty());
}

TEST(CanvasFitTest, PutsPartsAtTheirPixelsWithTheirColours) {
    const CanvasFit whole(CanvasFit::Mode::Automatic, QSize(1024, 1024), WIDE, 1.0);
    const QImage part =
        Decoded(whole.Place(MadeArchive::Png(10, 20, QColor(200, 100, 3, 1)), QPoint(-4, 1010)));
    EXPECT_EQ(part.pixelColor(5, 1010), QColor(200, 100, 3, 1)); // straight, to the bit
    EXPECT_EQ(part.pixelColor(6, 1010).alpha(), 0);
    EXPECT_EQ(part.pixelColor(0, 1023), QColor(200, 100, 3, 1));
    EXPECT_EQ(part.pixelColor(0, 1009).alpha(), 0);

    // On a canvas of 2048 x 1152 every pixel is half one of the drawing.
    const CanvasFit half(CanvasFit::Mode::Automatic, QSize(2048, 1152), WIDE, 0.5);
    const QImage scaled =
        Decoded(half.Place(MadeArchive::Png(100, 100, QColor(0, 0, 250, 200)), QPoint(1000, 200)));
    EXPECT_EQ(scaled.pixelColor(525, 350), QColor(0, 0, 250, 100)); // the middle of it
    EXPECT_GT(scaled.pixelColor(501, 325).alpha(), 90);
    EXPECT_EQ(scaled.pixelColor(497, 350).alpha(), 0);
    EXPECT_EQ(scaled.pixelColor(552, 350).alpha(), 0);
    EXPECT_EQ(scaled.pixelColor(525, 322).alpha(), 0);
}

TEST(PictureFilesTest, FindsNumbersInNames) {
    const QTemporaryDir folder;
    for (const char* name : {"walk.0010.png", "walk.0002.png", "walk.-003.png", "cut-7.png",
                             "take2_12_final.png", "plain.png", "walk.0002.txt", "a [1] %1.png"}) {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    const auto found = [&](const QString& pattern, QString* stem = nullptr) {
        PictureFiles files;
        QString fault;
        QString text;
        if (!files.Add(
                folder.filePath(pattern), [] { return std::vector<QString>{"png"}; }, fault)) {
            return fault;
        }
        files.Sort();
        for (const PictureFile& file : files.Files()) {
            text += file.hasNumber ? QString("%1 ").arg(file.number) : QString("- ");
        }
        if (stem) {
            *stem = files.Stem();
        }
        return text;
    };
    QString stem;
    EXPECT_EQ(found("walk.*.png", &stem), "-3 2 10 ");
    EXPECT_EQ(stem, "walk");
    EXPECT_EQ(found("walk.####.png"), "-3 2 10 ");
    EXPECT_EQ(found("cut-7.png", &stem), "7 ");
    EXPECT_EQ(stem, "cut");
    EXPECT_EQ(found("take2_*"), "12 ");
    EXPECT_EQ(found("plain.png", &stem), "- ");
    EXPECT_EQ(stem, "plain");
    EXPECT_EQ(found("a [1] %1.png"), "1 ");
    EXPECT_EQ(found("", &stem), "- -3 1 2 7 10 12 ");
    EXPECT_EQ(stem, QDir(folder.path()).dirName());
    EXPECT_EQ(found("none.png"), "the file does not exist");
    EXPECT_EQ(found("none.*.png"), "there are no such files");
    ASSERT_TRUE(QDir(folder.path()).mkdir("empty"));
    EXPECT_EQ(found("empty"), "there are no pictures in this folder");
    EXPECT_TRUE(found("none/a.*.png").contains("does not exist"));
}

} // namespace
} // namespace vellix
