#include "exchange/LayerFileNames.h"
#include "exchange/LayeredDrawing.h"
#include "exchange/OpenRasterWriter.h"
#include "exchange/PclxWriter.h"
#include "exchange/PsdWriter.h"
#include "exchange/ZipWriter.h"
#include "faults/DiskFault.h"
#include "paint/PngCodec.h"
#include "plugin/exchange/ReadArchive.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QVector>
#include <QXmlStreamReader>
#include <QtEndian>

#include <gtest/gtest.h>
#include <vector>

namespace vellix {
namespace {

QByteArray PngOf(const QImage& image) {
    QByteArray png;
    EXPECT_TRUE(PngCodec::Encode(image, png));
    return png;
}

QImage Colored(int width, int height, const QColor& color) {
    QImage image(width, height, QImage::Format_RGBA8888);
    image.fill(color);
    return image;
}

QByteArray BytesOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

class LayerWritersTest : public ::testing::Test {
protected:
    LayerWritersTest() {
        drawing_.size = QSize(300, 200);
        drawing_.rate = 23.976;
        drawing_.layers.resize(2);
        drawing_.layers[0].name = QString::fromUtf8("背景 <&\"'/\\>\n");
        drawing_.layers[0].pictures = {{1, PngOf(Colored(300, 200, QColor(10, 20, 30))), QPoint()}};
        drawing_.layers[1].name = "Rough\x01";
        drawing_.layers[1].isVisible = false;
        drawing_.layers[1].pictures = {
            {1, PngOf(Colored(50, 40, QColor(200, 0, 0, 128))), QPoint(20, 30)},
            {1200, PngOf(Colored(60, 40, QColor(0, 200, 0, 128))), QPoint(-5, -7)}};
    }
    QString Path(const QString& name) const { return folder_.filePath(name); }
    QStringList Written() const { return QDir(folder_.path()).entryList(QDir::Files | QDir::Hidden); }

    QTemporaryDir folder_;
    LayeredDrawing drawing_;
};

TEST_F(LayerWritersTest, OpenRasterHasTheLayersTopFirst) {
    const QString path = Path(QString::fromUtf8("絵.ora"));
    ASSERT_EQ(OpenRasterWriter::Archive(drawing_, Colored(300, 200, Qt::blue)).Write(path), QString());
    // What tells the format without reading the archive: the first member's name and content, at the
    // standard's place.
    EXPECT_EQ(BytesOf(path).mid(30, 24), "mimetypeimage/openraster");

    const ReadArchive archive(path);
    EXPECT_EQ(archive.Names(), QStringList({"mimetype", "stack.xml", "data/layer000.png", "data/layer001.png",
                                            "mergedimage.png", "Thumbnails/thumbnail.png"}));
    EXPECT_EQ(archive.Read("data/layer001.png"), drawing_.layers[1].pictures[0].png)
        << "the bytes as they were";
    const QImage thumbnail = QImage::fromData(archive.Read("Thumbnails/thumbnail.png"));
    EXPECT_EQ(thumbnail.size(), QSize(256, 170));

    const QXmlStreamAttributes image = archive.Elements("stack.xml", "image").value(0);
    EXPECT_EQ(image.value("w") + 'x' + image.value("h"), "300x200");
    const auto layers = archive.Elements("stack.xml", "layer");
    ASSERT_EQ(layers.size(), 2);
    EXPECT_EQ(layers[0].value("name"), QString::fromUtf8("Rough\uFFFD")) << "XML has no such character";
    EXPECT_EQ(layers[0].value("visibility"), "hidden");
    EXPECT_EQ(layers[0].value("x") + ' ' + layers[0].value("y"), "20 30");
    EXPECT_EQ(layers[1].value("name"), drawing_.layers[0].name);
    EXPECT_EQ(layers[1].value("src"), "data/layer000.png");
    EXPECT_EQ(layers[1].value("opacity"), "1");
}

TEST_F(LayerWritersTest, AnOpenRasterLayerWithoutAPictureIsThere) {
    drawing_.layers[1].pictures.clear();
    ASSERT_EQ(OpenRasterWriter::Archive(drawing_, Colored(30, 20, Qt::blue)).Write(Path("a.ora")), QString());
    const ReadArchive archive(Path("a.ora"));
    EXPECT_EQ(QImage::fromData(archive.Read("data/layer001.png")).pixelColor(0, 0).alpha(), 0);
    EXPECT_EQ(QImage::fromData(archive.Read("Thumbnails/thumbnail.png")).size(), QSize(30, 20))
        << "not made larger";
}

TEST_F(LayerWritersTest, PclxHasKeysAroundTheMiddleOfTheCamera) {
    const ZipWriter archive = PclxWriter::Archive(drawing_, 1240);
    ASSERT_EQ(archive.Write(Path("a.pclx")), QString());
    const ReadArchive read(Path("a.pclx"));
    EXPECT_EQ(read.Names(),
              QStringList({"main.xml", "data/001.001.png", "data/002.001.png", "data/002.1200.png"}));
    EXPECT_EQ(read.Read("data/002.1200.png"), drawing_.layers[1].pictures[1].png);

    EXPECT_EQ(read.Elements("main.xml", "fps").value(0).value("value"), "24");
    const auto layers = read.Elements("main.xml", "layer");
    ASSERT_EQ(layers.size(), 3);
    EXPECT_EQ(layers[0].value("name"), drawing_.layers[0].name);
    EXPECT_EQ(layers[1].value("visibility"), "0");
    const QXmlStreamAttributes key = read.Elements("main.xml", "image").value(2);
    EXPECT_EQ(key.value("frame"), "1200");
    EXPECT_EQ(key.value("src"), "002.1200.png");
    EXPECT_EQ(key.value("topLeftX") + ' ' + key.value("topLeftY"), "-155 -107");
    EXPECT_EQ(layers[2].value("width") + 'x' + layers[2].value("height"), "300x200");
    EXPECT_EQ(read.Elements("main.xml", "camera").last().value("frame"), "1240")
        << "the last drawing is held to there";

    // Nothing in the file but the drawing: the same drawing makes the same file.
    ASSERT_EQ(archive.Write(Path("b.pclx")), QString());
    EXPECT_EQ(BytesOf(Path("a.pclx")), BytesOf(Path("b.pclx")));
}

/// Reads numbers with the highest byte first.
class PsdReader {
public:
    explicit PsdReader(const QByteArray& bytes)
        : bytes_(bytes) {}

    template <typename Number>
    Number Get() {
        return qFromBigEndian<Number>(Take(sizeof(Number)).constData());
    }
    QByteArray Take(int count) {
        EXPECT_LE(at_ + count, bytes_.size());
        at_ += count;
        return bytes_.mid(at_ - count, count).leftJustified(count, '\0');
    }
    QByteArray Block() { return Take(int(Get<quint32>())); }
    /// A channel of packed rows, as the format describes it.
    QByteArray Channel(int width, int height) {
        EXPECT_EQ(Get<quint16>(), 1);
        std::vector<int> counts;
        counts.reserve(static_cast<std::size_t>(height));
        for (int y = 0; y < height; ++y) {
            counts.push_back(Get<quint16>());
        }
        return Rows(counts, width);
    }
    QByteArray Rows(const std::vector<int>& counts, int width) {
        QByteArray all;
        for (const int count : counts) {
            PsdReader packed(Take(count));
            QByteArray row;
            while (!packed.IsAtEnd()) {
                const auto n = packed.Get<qint8>();
                row += n >= 0 ? packed.Take(n + 1) : QByteArray(1 - n, packed.Take(1)[0]);
            }
            EXPECT_EQ(row.size(), width);
            all += row;
        }
        return all;
    }
    bool IsAtEnd() const { return at_ >= bytes_.size(); }

private:
    QByteArray bytes_;
    int at_ = 0;
};

TEST_F(LayerWritersTest, PsdHasNamesAndTheAreaOfEachLayer) {
    QImage noise(300, 200, QImage::Format_RGBA8888);
    noise.fill(Qt::transparent);
    for (int x = 0; x < 200; ++x) { // runs, pairs and single values
        noise.setPixelColor(60 + x, 90, QColor(x % 7 < 3 ? 9 : x % 5, x, x / 3, 255));
    }
    drawing_.layers[1].pictures[0] = {1, PngOf(noise), QPoint(3, 4)};
    drawing_.layers.push_back({"Empty", true, 1.0, {}});
    drawing_.layers.push_back({"Damaged", true, 1.0, {{1, "no picture", QPoint()}}});
    PsdReader file(PsdWriter::Encode(drawing_, Colored(300, 200, QColor(100, 0, 0, 128))));
    EXPECT_EQ(file.Take(12).toHex(), "384250530001000000000000");
    EXPECT_EQ(file.Get<quint16>(), 4);
    EXPECT_EQ(file.Get<quint32>(), 200u);
    EXPECT_EQ(file.Get<quint32>(), 300u);
    EXPECT_EQ(file.Get<quint32>(), 0x00080003u); // bits, RGB
    EXPECT_EQ(file.Block() + file.Block(), QByteArray());

    PsdReader section(file.Block());
    PsdReader layers(section.Block());
    EXPECT_EQ(layers.Get<qint16>(), -4);
    const struct {
        QString name;
        std::vector<int> sides; // top, left, bottom, right
        int flags;
    } expected[] = {
        {drawing_.layers[0].name, {0, 0, 200, 300}, 0},
        {"Rough\x01", {94, 63, 95, 263}, 2},
        {"Empty", {0, 0, 0, 0}, 0},
        {"Damaged", {0, 0, 0, 0}, 0},
    };
    std::vector<std::vector<int>> lengths;
    for (const auto& layer : expected) {
        for (const int side : layer.sides) {
            EXPECT_EQ(layers.Get<qint32>(), side) << layer.name.toStdString();
        }
        EXPECT_EQ(layers.Get<quint16>(), 4);
        for (const int id : {-1, 0, 1, 2}) {
            EXPECT_EQ(layers.Get<qint16>(), id);
            lengths.push_back({layers.Get<qint32>()});
        }
        EXPECT_EQ(layers.Take(8), "8BIMnorm");
        EXPECT_EQ(layers.Get<quint16>(), 0xff00);
        EXPECT_EQ(layers.Get<quint16>(), layer.flags << 8);
        PsdReader extra(layers.Block());
        EXPECT_EQ(extra.Block() + extra.Block(), QByteArray());
        const int length = extra.Get<quint8>();
        extra.Take((length + 4) / 4 * 4 - 1);
        EXPECT_EQ(extra.Take(8), "8BIMluni");
        PsdReader name(extra.Block());
        QString text(int(name.Get<quint32>()), ' ');
        for (QChar& c : text) {
            c = QChar(name.Get<quint16>());
        }
        EXPECT_EQ(text, layer.name);
        EXPECT_TRUE(extra.IsAtEnd());
    }
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(layers.Channel(300, 200), QByteArray(300 * 200, char(i == 0 ? 255 : 10 * i)));
    }
    layers.Channel(200, 1);
    QByteArray red;
    for (int x = 0; x < 200; ++x) {
        red.append(char(noise.pixelColor(60 + x, 90).red()));
    }
    EXPECT_EQ(layers.Channel(200, 1), red);
    // On white, as programs expect it: 100 at half.
    EXPECT_EQ(section.Block(), QByteArray());
    constexpr int rows = 4 * 200;
    std::vector<int> counts;
    counts.reserve(rows);
    EXPECT_EQ(file.Get<quint16>(), 1);
    for (int i = 0; i < rows; ++i) {
        counts.push_back(file.Get<quint16>());
    }
    const QByteArray merged = file.Rows(counts, 300);
    EXPECT_EQ(uchar(merged[0]), 177);
    EXPECT_EQ(uchar(merged[300 * 200]), 127);
    EXPECT_EQ(uchar(merged[3 * 300 * 200]), 128);
    EXPECT_TRUE(file.IsAtEnd());

    drawing_.size = QSize(30001, 10);
    EXPECT_EQ(PsdWriter::Encode(drawing_, QImage()), QByteArray());
}

TEST_F(LayerWritersTest, AnArchiveIsWrittenWholeOrNotAtAll) {
    ZipWriter archive;
    archive.Add("a", QByteArray(300000, 'a'));
    archive.Add(QString::fromUtf8("b/ü"), QByteArray(300000, 'b'));
    archive.Add("empty", QByteArray());
    archive.Add("large", QByteArray(3 << 20, 'l')); // more than is gathered
    archive.Add("last", QByteArray(1 << 20, 'z'));
    const QString path = Path("a.zip");
    ASSERT_EQ(archive.Write(path), QString());
    const QByteArray before = BytesOf(path);
    EXPECT_EQ(ReadArchive(path).Names(),
              QStringList({"a", QString::fromUtf8("b/ü"), "empty", "large", "last"}));
    EXPECT_EQ(ReadArchive(path).Read("large"), QByteArray(3 << 20, 'l'));
    EXPECT_EQ(ReadArchive(path).Read("last"), QByteArray(1 << 20, 'z'));
    EXPECT_EQ(ReadArchive(path).Read(QString::fromUtf8("b/ü")), QByteArray(300000, 'b'));
    archive.Add("c", QByteArray(300000, 'c'));
    for (const int bytes : {0, 100, 300030, 300200, 600000, 2000000, 5000000}) {
        const DiskFault fault = DiskFault::Full(folder_.path(), bytes);
        EXPECT_EQ(archive.Write(path), "No space left on device") << bytes;
    }
    {
        const DiskFault fault = DiskFault::Rename(folder_.path());
        EXPECT_NE(archive.Write(path), QString());
    }
    // Stopped by hand.
    EXPECT_NE(archive.Write(path, [](double share) { return share < 0.5; }), QString());
    EXPECT_EQ(BytesOf(path), before);
    EXPECT_EQ(Written(), QStringList("a.zip"));

    double last = 0.0;
    EXPECT_EQ(archive.Write(path,
                            [&last](double share) {
                                EXPECT_GE(share, last);
                                last = share;
                                return true;
                            }),
              QString());
    EXPECT_GT(last, 0.9);
    EXPECT_NE(ZipWriter().Write(Path("no/such/a.zip")), QString());
}

TEST_F(LayerWritersTest, WhatNoReaderUnderstandsIsRefused) {
    // Bytes that are shared take no memory: 5 GB.
    const QByteArray large(1 << 26, '\0');
    ZipWriter archive;
    for (int i = 0; i < 80; ++i) {
        archive.Add(QString::number(i), large);
    }
    EXPECT_TRUE(
        archive.Write(Path("large.zip")).startsWith("It would have 5120 MB; an archive has at most 4095 MB"));
    ZipWriter crowded;
    for (int i = 0; i <= ZipWriter::MAX_MEMBERS; ++i) {
        crowded.Add(QString::number(i), QByteArray());
    }
    EXPECT_EQ(crowded.Write(Path("crowded.zip")), "It would have 65536 parts; an archive has at most 65535");
    EXPECT_EQ(Written(), QStringList());
}

TEST(LayerFileNamesTest, EveryNameMakesAFileOfItsOwn) {
    const QStringList layers = {"Rough",
                                "rough",
                                "Rough_2",
                                "a/b\\c:d*e?f\"g<h>i|j\nk",
                                "..",
                                ".hidden.",
                                "",
                                "  ",
                                "con",
                                "LPT1.x",
                                QString::fromUtf8("背景 ü"),
                                QString::fromUtf8("u\u0308"),
                                QString(300, QChar(0x80cc)),
                                QString(QChar(0xd800)) + "x",
                                "Shot #2 {layer} %1"};
    const QStringList names = LayerFileNames(layers);
    EXPECT_EQ(names,
              QStringList({"Rough", "rough_2", "Rough_2_2", "a_b_c_d_e_f_g_h_i_j_k", "__", "_hidden_", "_",
                           "__2", "_con", "_LPT1.x", QString::fromUtf8("背景 ü"), QString::fromUtf8("ü"),
                           QString(40, QChar(0x80cc)), "_x", "Shot #2 {layer} %1"}))
        << names.join(" | ").toStdString();
}

} // namespace
} // namespace vellix
