#include "exchange/OpenRasterReader.h"
#include "exchange/PclxReader.h"
#include "plugin/exchange/MadeArchive.h"

#include <QtEndian>

namespace vellix {
namespace {

using Member = MadeArchive::Member;

QByteArray Dot() {
    return MadeArchive::Png(2, 3, Qt::red);
}

QString OpenRasterFault(const QString& rows, const std::vector<Member>& members, int width = 100) {
    OpenRasterReader reader(MadeArchive::OpenRaster(rows, members, width).Bytes());
    QByteArray png;
    for (const PictureLayer& layer : reader.Drawing().layers) {
        reader.Read(layer.pictures.at(0), png);
    }
    return reader.Fault();
}

QString Pencil2dFault(const QString& layers, const std::vector<Member>& members) {
    PclxReader reader(MadeArchive::Pencil2d(layers, members).Bytes());
    return reader.Fault();
}

TEST(OpenRasterReaderTest, GivesLayersFromTheBottomUpWithTheirGroups) {
    const QString rows = R"(
        <layer name="Top &amp; first" src="data/a.png" x="-3" y="7" opacity="0.5"/>
        <stack name="Group" opacity="0.5" visibility="hidden" composite-op="svg:multiply">
          <stack><layer name="Inside" src="data/b.png" opacity="0.5" visibility="visible"/></stack>
          <filter/>
        </stack>
        <layer name="Text" src="data/text.svg"/>
        <layer name="Bottom" src="data/a.png" visibility="hidden" composite-op="svg:src-over"/>)";
    OpenRasterReader reader(
        MadeArchive::OpenRaster(
            rows, {{"data/a.png", Dot()}, {"data/b.png", MadeArchive::Png(5, 5, Qt::blue)}}, 640, 480)
            .Bytes());
    ASSERT_EQ(reader.Fault(), "");
    const LayeredDrawing& drawing = reader.Drawing();
    EXPECT_EQ(drawing.size, QSize(640, 480));
    ASSERT_EQ(drawing.layers.size(), 3u);
    EXPECT_EQ(drawing.layers[0].name, "Bottom");
    EXPECT_FALSE(drawing.layers[0].isVisible);
    EXPECT_EQ(drawing.layers[1].name, "Inside");
    EXPECT_FALSE(drawing.layers[1].isVisible);
    EXPECT_DOUBLE_EQ(drawing.layers[1].opacity, 0.25);
    EXPECT_EQ(drawing.layers[2].name, "Top & first");
    EXPECT_TRUE(drawing.layers[2].isVisible);
    EXPECT_EQ(drawing.layers[2].pictures[0].position, QPoint(-3, 7));
    QByteArray png;
    EXPECT_TRUE(reader.Read(drawing.layers[2].pictures[0], png));
    EXPECT_EQ(png, Dot());
    EXPECT_EQ(reader.Warnings(),
              QStringList(
                  {"The layer \"Group\" is blended by \"svg:multiply\" there; here layers cover each other.",
                   "The layer \"Text\" has no pixels, and does not come in."}));
}

TEST(OpenRasterReaderTest, SaysWhatIsWrong) {
    const QString layer = R"(<layer name="A" src="a.png"/>)";
    QByteArray wide = Dot();
    qToBigEndian<quint32>(100000, wide.data() + 16);
    QByteArray flipped = Dot();
    const int inPixels = flipped.indexOf("IDAT") + 8;
    flipped[inPixels] = static_cast<char>(flipped[inPixels] ^ 1);
    const struct {
        QString fault;
        QString rows;
        std::vector<Member> members;
        int width;
    } cases[] = {
        {"its member \"a.png\" is missing", layer, {}, 100},
        {"its picture \"a.png\" is no PNG", layer, {{"a.png", "GIF89a, perhaps"}}, 100},
        {"its picture \"a.png\" has 100000 x 3 pixels; at most 8192 x 8192 can be read",
         layer,
         {{"a.png", wide}},
         100},
        {"its picture \"a.png\" is damaged", layer, {{"a.png", flipped}}, 100},
        {"its canvas has 100000 x 1024 pixels; at most 8192 x 8192 can be read",
         layer,
         {{"a.png", Dot()}},
         100000},
        {"\"1e9\" is no position of a picture", R"(<layer src="a.png" x="1e9"/>)", {{"a.png", Dot()}}, 100},
        {"\"thick\" is no opacity", R"(<layer src="a.png" opacity="thick"/>)", {{"a.png", Dot()}}, 100},
        {"its groups are nested too deep", QString("<stack>").repeated(200), {}, 100},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(OpenRasterFault(c.rows, c.members, c.width).toStdString(), c.fault.toStdString());
    }
    EXPECT_TRUE(OpenRasterFault("<layer", {}).startsWith("its member \"stack.xml\" is damaged in line 1"));
    EXPECT_FALSE(OpenRasterFault("<layer", {}).endsWith('.')) << "a sentence goes on behind it";
    EXPECT_EQ(OpenRasterReader(MadeArchive({{"mimetype", "image/openraster"}}).Bytes()).Fault(),
              "its member \"stack.xml\" is missing");
    const QByteArray laughs =
        "<!DOCTYPE image [<!ENTITY a \"haha\"><!ENTITY b \"&a;&a;&a;&a;\">]><image w=\"9\" h=\"9\">"
        "<stack><layer name=\"&b;\" src=\"a.png\"/></stack></image>";
    EXPECT_EQ(OpenRasterReader(MadeArchive({{"stack.xml", laughs}}).Bytes()).Fault(),
              "its member \"stack.xml\" has entities, which drawings do not need");
}

// A picture that inflates to more than any picture of its size needs is not unpacked.
TEST(OpenRasterReaderTest, APictureTakesNoMoreThanItsSize) {
    QByteArray padded = Dot() + QByteArray(200 << 20, 0);
    EXPECT_TRUE(OpenRasterFault(R"(<layer name="A" src="a.png"/>)", {{"a.png", padded}})
                    .startsWith("its member \"a.png\" is too large"));
}

TEST(PclxReaderTest, GivesKeysFromTheMiddleOfTheCanvas) {
    const QString layers = R"(
        <layer id="2" name="Rough" visibility="0" type="1">
          <image frame="9" src="002.009.png" topLeftX="-320" topLeftY="-240" opacity="0.5"/>
          <image frame="1" src="002.001.png" topLeftX="10" topLeftY="-20"/>
          <image frame="5" src="002.005.png" topLeftX="0" topLeftY="0"/>
        </layer>
        <layer id="3" name="Lines" visibility="1" type="2"><image frame="1" src="003.001.vec"/></layer>
        <layer id="4" name="Ink" visibility="1" type="1"/>)";
    PclxReader reader(
        MadeArchive::Pencil2d(layers, {{"data/002.001.png", Dot()}, {"data/002.009.png", Dot()}}, 640, 480)
            .Bytes());
    ASSERT_EQ(reader.Fault(), "");
    const LayeredDrawing& drawing = reader.Drawing();
    EXPECT_EQ(drawing.size, QSize(640, 480));
    EXPECT_EQ(drawing.rate, 24.0);
    ASSERT_EQ(drawing.layers.size(), 2u);
    const PictureLayer& rough = drawing.layers[0];
    EXPECT_FALSE(rough.isVisible);
    ASSERT_EQ(rough.pictures.size(), 3u);
    EXPECT_EQ(rough.pictures[0].frame, 1);
    EXPECT_EQ(rough.pictures[0].position, QPoint(330, 220));
    EXPECT_EQ(rough.pictures[1].frame, 5);
    EXPECT_EQ(rough.pictures[2].position, QPoint(0, 0));
    EXPECT_EQ(rough.pictures[2].opacity, 0.5);
    QByteArray png;
    EXPECT_TRUE(reader.Read(rough.pictures[0], png));
    EXPECT_EQ(png, Dot());
    EXPECT_TRUE(reader.Read(rough.pictures[1], png)); // a blank key has no file there
    EXPECT_TRUE(png.isEmpty());
    EXPECT_EQ(reader.Warnings(), QStringList("The layer \"Lines\" has no pixels, and does not come in."));
}

TEST(PclxReaderTest, SaysWhatIsWrong) {
    const QString layer = R"(<layer name="Rough" type="1">%1</layer>)";
    EXPECT_EQ(Pencil2dFault(layer.arg(R"(<image frame="1" src="../../a.png"/>)"), {}),
              "its picture \"../../a.png\" leads out of the archive");
    EXPECT_EQ(
        Pencil2dFault(layer.arg(R"(<image frame="1" src="a.png" topLeftX="-512" topLeftY="-512"/>)"), {}),
        "its member \"data/a.png\" is missing");
    EXPECT_EQ(Pencil2dFault(layer.arg(R"(<image frame="one" src="a.png"/>)"), {}),
              "\"one\" is no frame of a picture");
    EXPECT_EQ(Pencil2dFault(layer.arg(R"(<image frame="3" src=""/><image frame="3" src=""/>)"), {}),
              "its layer \"Rough\" has two pictures at frame 3");
    EXPECT_EQ(PclxReader(MadeArchive({{"other.xml", "x"}}).Bytes()).Fault(),
              "its member \"main.xml\" is missing");
}

} // namespace
} // namespace vellix
