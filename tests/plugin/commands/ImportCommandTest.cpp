#include "core/Frame.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "lightbox/FakeWindow.h"
#include "node/OpenText.h"
#include "paint/Ffmpeg.h"
#include "paint/MovieWriter.h"
#include "paint/Stroke.h"
#include "plugin/commands/ChangeCounter.h"
#include "plugin/commands/CommandFixture.h"
#include "plugin/exchange/MadeArchive.h"
#include "scene/UndoQueue.h"

#include <QColor>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QPainter>

#include <string>

namespace vellix {
namespace {

class ImportCommandTest : public CommandFixture {
protected:
    QString Path(const QString& name) const { return folder_.filePath(name); }
    /// A picture of one colour; as PNG its bytes come in unchanged if it is a whole drawing.
    QByteArray WritePicture(const QString& name, const QColor& color, int width = 1024,
                            int height = 1024) const {
        QDir(folder_.path()).mkpath(QFileInfo(name).path());
        if (name.endsWith(".png")) {
            QByteArray png = MadeArchive::Png(width, height, color);
            WriteFile(name, png);
            return png;
        }
        QImage image(width, height, QImage::Format_RGB32);
        image.fill(color);
        EXPECT_TRUE(image.save(Path(name)));
        return {};
    }
    QString Line(const QString& name, const QString& more = QString()) const {
        return QString("qmVellixImport -camera persp -file \"%1\" %2").arg(Path(name), more);
    }
    QString Refusal(const QString& name, const QString& reason) const {
        return QString("Cannot import \"%1\": %2. Nothing was changed.").arg(Path(name), reason);
    }
    void AddLayer(const QString& name, const QList<int>& times, const QColor& color) {
        Mel(QString("qmVellixLayer -add -n \"%1\" -ls 0 persp").arg(name));
        for (const int time : times) {
            Node().AddFrame("persp", MTime(time, MTime::uiUnit()));
            Layer* const layer = Node().GetActiveLayer("persp");
            layer->GetFrame(layer->FindFrameIndex(time))->SetPackedImage(MadeArchive::Png(1024, 1024, color));
        }
        Mel("currentTime 2; currentTime 1");
    }
    static Layer* FindLayer(const QString& name, const QString& camera = "persp") {
        for (Layer* layer : Node().GetLayers(camera)) {
            if (layer->GetName() == name) {
                return layer;
            }
        }
        ADD_FAILURE() << "no layer " << name.toStdString();
        return nullptr;
    }
    static QList<int> TimesOf(const QString& name) {
        QList<int> times;
        FindLayer(name)->GetFrameTimes(times);
        return times;
    }
    static QColor ColorOf(const QString& name, int time, const QPoint& at = QPoint(512, 512)) {
        const Layer* const layer = FindLayer(name);
        return layer->GetFrame(layer->FindFrameIndex(time))->PeekImage().pixelColor(at);
    }
};

TEST_F(ImportCommandTest, PicturesComeAtTheTimesInTheirNames) {
    const QByteArray second = WritePicture("ref/walk.0012.png", Qt::green);
    WritePicture("ref/walk.-003.png", Qt::red);
    WritePicture("ref/walk.0014.jpg", Qt::blue, 1920, 1080);
    EXPECT_EQ(Mel(Line("ref/walk.*")).AsInt(), 3);
    EXPECT_EQ(LayerNames("persp"), QStringList("walk"));
    EXPECT_EQ(TimesOf("walk"), QList<int>({-3, 12, 14}));
    EXPECT_EQ(FindLayer("walk")->GetFrame(1)->GetPackedImage(), second);
    EXPECT_EQ(ColorOf("walk", 14, QPoint(512, 300)).blue(), 254);
    EXPECT_EQ(ColorOf("walk", 14, QPoint(512, 100)).alpha(), 0) << "above the gate";
    Mel("undo");
    EXPECT_EQ(Drawing(), "active camera \n");
    ExpectUndoable(Line("ref/walk.####.png"));
    ExpectUndoable(Line("ref"));
    Mel("file -f -new");
    ExpectUndoable(Line("ref")); // with the node as well
    EXPECT_EQ(Drawing(), "no node");
}

TEST_F(ImportCommandTest, TimesStrengthFitAndStateAreAsGiven) {
    WritePicture("a.png", QColor(51, 204, 0, 200), 100, 100);
    WritePicture("b.png", Qt::red, 100, 100);
    Mel("currentTime 7");
    EXPECT_EQ(
        Mel(Line("*.png", "-startTime 20 -hold 3 -strength 25 -fit gate -layerState 2 -layer Board")).AsInt(),
        2);
    EXPECT_EQ(TimesOf("Board"), QList<int>({20, 23}));
    EXPECT_EQ(FindLayer("Board")->GetState(), LayerState::Locked);
    EXPECT_EQ(ColorOf("Board", 20), QColor(51, 204, 0, 50));
    EXPECT_EQ(ColorOf("Board", 20, QPoint(100, 512)).alpha(), 0);
    EXPECT_EQ(Mel(Line("a.png", "-layer One")).AsInt(), 1); // without a number it goes to the current time
    EXPECT_EQ(TimesOf("One"), QList<int>({7}));
    EXPECT_EQ(ColorOf("One", 7, QPoint(3, 3)), QColor(51, 204, 0, 200));
    Mel(Line("*.png", "-hold 2 -layer Two"));
    EXPECT_EQ(TimesOf("Two"), QList<int>({7, 9}));
    // What is locked is a reference, and lies below.
    ExpectUndoable(Line("a.png", "-layer Under -layerState 2"));
    Mel(Line("a.png", "-layer Under -layerState 2"));
    EXPECT_EQ(LayerNames("persp"), QStringList({"Under", "Board", "One", "Two"}));
}

TEST_F(ImportCommandTest, ALayerOfThatNameTakesThePictures) {
    AddLayer("Other", {1}, Qt::white);
    AddLayer("walk", {1, 5, 9}, Qt::black);
    Mel("qmVellixLayer -addLayer -name walk -layerState 0 top");
    WritePicture("walk.5.png", Qt::green);
    WritePicture("walk.7.png", Qt::blue);
    const Frame* const kept = FindLayer("walk")->GetFrame(2);
    ExpectUndoable(Line("*.png"));
    EXPECT_EQ(Mel(Line("*.png")).AsInt(), 2);
    EXPECT_EQ(LayerNames("persp"), QStringList({"Other", "walk"}));
    EXPECT_EQ(TimesOf("walk"), QList<int>({1, 5, 7, 9}));
    EXPECT_EQ(ColorOf("walk", 5), QColor(Qt::green));
    EXPECT_EQ(ColorOf("walk", 1), QColor(Qt::black));
    EXPECT_EQ(FindLayer("walk")->GetFrame(3), kept);
    // A step later goes on at the very frames.
    ExpectUndoableChain({Line("*.png", "-startTime 1"), "qmVellixLayer -moveAll top persp", Line("*.png")});
}

TEST_F(ImportCommandTest, TreatsLayersAndStrokesAsTheFrameCommandsDo) {
    WritePicture("walk.5.png", Qt::green);
    AddLayer("walk", {1, 5}, Qt::black);
    Mel("qmVellixLayer -es 2 0 persp");
    ExpectRefusal(
        Line("walk.5.png"),
        Refusal("walk.5.png", "the layer \"walk\" is locked; unlock it first, or name another with -layer"));
    Mel("qmVellixLayer -es 1 0 persp; qmVellixLayer -ev 0 0 persp");
    ExpectUndoable(Line("walk.5.png")); // static and hidden
    EXPECT_FALSE(FindLayer("walk")->IsVisible());
    // A stroke whose press has just keyed the frame.
    Mel("qmVellixLayer -es 0 0 persp; qmVellixLayer -ev 1 0 persp; qmVellixFrame -delete; currentTime 6");
    WritePicture("walk.6.png", Qt::green);
    int layer = -1;
    bool frameAdded = false;
    ASSERT_TRUE(Node().PrepareForDraw("persp", layer, frameAdded));
    ASSERT_TRUE(Node().GetActiveStroke("persp", false));
    ExpectRefusal(
        Line("walk.6.png"),
        Refusal("walk.6.png", "a stroke is being drawn on the layer \"walk\" at time 6; finish it first"));
    EXPECT_EQ(Mel(Line("walk.5.png")).AsInt(), 1);
    EXPECT_TRUE(Node().HasActiveStroke());
    Node().CancelActiveStroke();
    // One on a frame that was there: the frame would take it along.
    Mel("currentTime 5");
    ASSERT_TRUE(Node().GetActiveStroke("persp", false));
    ExpectRefusal(
        Line("walk.5.png"),
        Refusal("walk.5.png", "a stroke is being drawn on the layer \"walk\" at time 5; finish it first"));
    EXPECT_EQ(Mel(Line("walk.6.png")).AsInt(), 1);
    EXPECT_TRUE(Node().HasActiveStroke());
    Node().CancelActiveStroke();
    // An open text is committed first, as a step of its own.
    bool isCommitted = false;
    OpenText::SetCommit([&] { isCommitted = true; });
    Mel(Line("walk.5.png"));
    OpenText::SetCommit({});
    EXPECT_TRUE(isCommitted);
}

TEST_F(ImportCommandTest, OneRefreshForAllPictures) {
    AddLayer("walk", {1, 2, 3}, Qt::black);
    for (int i = 1; i < 5; ++i) {
        WritePicture(QString("walk.%1.png").arg(i), QColor(i, 0, 0));
    }
    ChangeCounter counter;
    for (const QString& line : {Line("walk.*.png"), QString("undo"), QString("redo")}) {
        Mel(line);
        EXPECT_EQ(counter.Take(), 1) << line.toStdString();
    }
}

TEST_F(ImportCommandTest, AllOrNothingWithTheReason) {
    AddLayer("walk", {1}, Qt::black);
    WritePicture("walk.1.png", Qt::green, 30, 30);
    WritePicture("walk.2.png", Qt::green, 30, 30);
    WriteFile("walk.3.png", "\x89PNG\r\n\x1a\n and no more");
    ExpectRefusal(Line("walk.*.png"), Refusal("walk.3.png", "the PNG is damaged"));
    WriteFile("walk.3.png", "no picture");
    ExpectRefusal(Line("walk.*.png"), Refusal("walk.3.png", "it is no picture that can be read"));
    QByteArray wide = MadeArchive::Png(3, 3, Qt::red);
    wide[17] = 1; // 65,539 pixels
    WriteFile("walk.3.png", wide);
    ExpectRefusal(Line("walk.*.png"),
                  Refusal("walk.3.png", "it has 65539 x 3 pixels; at most 8192 x 8192 can be read"));
    QDir(folder_.path()).remove("walk.3.png");
    WritePicture("walk.0002.png", Qt::red, 30, 30);
    ExpectRefusal(Line("walk.*.png"), Refusal("walk.2.png", "\"walk.0002.png\" has the number 2 too"));
    WritePicture("walk.png", Qt::red, 30, 30);
    ExpectRefusal(Line("walk*.png"),
                  Refusal("walk.png", "there is no number in the name for its time; give the "
                                      "times with -startTime and -hold"));
    WritePicture("walk.4000000000.png", Qt::red, 30, 30);
    ExpectRefusal(Line("none.png"), Refusal("none.png", "the file does not exist"));
    ExpectRefusal("qmVellixImport -camera persp",
                  "Name one thing to import: pictures with -file, for example \"ref/walk.####.png\", or "
                  "-movie, -scene or -node.");
    ExpectRefusal(Line("walk.1.png", "-strength 0"), "-strength is a number from 1 to 100.");
    ExpectRefusal(Line("walk.1.png", "-hold 0"),
                  "-hold is a number of frames from 1, for pictures; a movie takes -every.");
    ExpectRefusal(Line("walk.1.png", "-fit wide"), "-fit is gate, width, height or square.");
    ExpectRefusal(Line("walk.1.png", "-layerState 3"), "Invalid state value: 3");
    ExpectRefusal(QString("qmVellixImport -camera nowhere -file \"%1\"").arg(Path("walk.1.png")),
                  "Camera does not exist: nowhere");
}

TEST_F(ImportCommandTest, ManyPicturesNeedForce) {
    const QByteArray png = MadeArchive::Png(2, 2, Qt::red);
    for (int i = 0; i < 501; ++i) {
        WriteFile(QString("many.%1.png").arg(i), png);
    }
    ExpectRefusal(Line("many.*.png"),
                  Refusal("many.*.png", "there are 501 pictures (0 MB); import so many with -force"));
    EXPECT_EQ(Mel(Line("many.*.png", "-force")).AsInt(), 501);
}

// --- layered files ----------------------------------------------------------------------------------------

TEST_F(ImportCommandTest, OpenRasterComesByTheNamesOfItsLayers) {
    AddLayer("Rough", {1, 5}, Qt::black);
    AddLayer("Ink", {1}, Qt::white);
    const QByteArray drawing = MadeArchive::Png(1024, 1024, QColor(1, 2, 3, 4));
    const QByteArray dot = MadeArchive::Png(10, 10, QColor(200, 0, 0, 100));
    const auto write = [&](const char* name, const char* rows) {
        WriteFile(name,
                  MadeArchive::OpenRaster(rows, {{"data/0.png", drawing}, {"data/1.png", dot}}).Bytes());
    };
    write("shot.0005.ora", R"(
        <layer name="Ink" src="data/1.png" x="100" y="50" opacity="0.5"/>
        <layer name="Colour" src="data/1.png" visibility="hidden"/>
        <layer name="Rough" src="data/0.png"/>)");
    ExpectUndoable(Line("shot.0005.ora"));
    EXPECT_EQ(Mel(Line("shot.0005.ora")).AsInt(), 3);
    EXPECT_EQ(LayerNames("persp"), QStringList({"Rough", "Colour", "Ink"}));
    EXPECT_FALSE(FindLayer("Colour")->IsVisible());
    EXPECT_EQ(TimesOf("Rough"), QList<int>({1, 5}));
    EXPECT_EQ(FindLayer("Rough")->GetFrame(1)->GetPackedImage(), drawing); // unchanged to the bit
    EXPECT_EQ(ColorOf("Ink", 5, QPoint(105, 55)), QColor(200, 0, 0, 50));
    EXPECT_EQ(ColorOf("Ink", 5, QPoint(99, 55)).alpha(), 0);
    // The same again changes nothing, so there is no step.
    EXPECT_EQ(Mel(Line("shot.0005.ora")).AsInt(), 0);
    Mel("undo");
    EXPECT_EQ(LayerNames("persp"), QStringList({"Rough", "Ink"}));
    // One layer alone, at a time of its own.
    EXPECT_EQ(Mel(Line("shot.0005.ora", "-layer Colour -startTime 8")).AsInt(), 1);
    EXPECT_EQ(TimesOf("Colour"), QList<int>({8}));
    ExpectRefusal(Line("shot.0005.ora", "-layer Paint"),
                  Refusal("shot.0005.ora", "there is no layer \"Paint\" in it"));
}

// Files without holds: a drawing that is shown on is one frame.
TEST_F(ImportCommandTest, HeldDrawingsOfOpenRasterFilesAreOneFrame) {
    const QByteArray blank = MadeArchive::Png(1024, 1024, Qt::transparent);
    const QByteArray first = MadeArchive::Png(1024, 1024, Qt::red);
    const QByteArray second = MadeArchive::Png(1024, 1024, Qt::blue);
    const QByteArray shown[] = {blank, first, first, blank, second, second};
    for (int i = 0; i < 6; ++i) {
        WriteFile(QString("f.%1.ora").arg(i + 1, 4, 10, QChar('0')),
                  MadeArchive::OpenRaster(R"(<layer name="A" src="a"/><layer name="A" src="a.png"/>)",
                                          {{"a.png", shown[i]}})
                      .Bytes());
    }
    EXPECT_EQ(Mel(Line("f.*.ora")).AsInt(), 3);
    EXPECT_EQ(TimesOf("A"), QList<int>({2, 4, 5}));
    EXPECT_EQ(Mel(Line("f.*.ora")).AsInt(), 0);
    // What was keyed in between and is not in the files goes.
    AddLayer("B", {}, Qt::red);
    Mel("qmVellixLayer -editName A2 0 persp; qmVellixLayer -editName A 1 persp");
    Node().AddFrame("persp", MTime(3, MTime::uiUnit()));
    FindLayer("A")->GetFrame(0)->SetPackedImage(second);
    Mel(Line("f.*.ora"));
    EXPECT_EQ(TimesOf("A"), QList<int>({2, 3, 4, 5}));
    EXPECT_EQ(ColorOf("A", 3), QColor(Qt::red));
}

TEST_F(ImportCommandTest, LayersOfOneNameComeInTheirOrder) {
    AddLayer("A", {1}, Qt::black);
    AddLayer("A", {1}, Qt::white);
    Mel("qmVellixLayer -editName A 1 persp");
    const QByteArray red = MadeArchive::Png(1024, 1024, Qt::red);
    const QByteArray blue = MadeArchive::Png(1024, 1024, Qt::blue);
    WriteFile("two.1.ora",
              MadeArchive::OpenRaster(R"(<layer name="A" src="b.png"/><layer name="A" src="r.png"/>)",
                                      {{"r.png", red}, {"b.png", blue}})
                  .Bytes());
    EXPECT_EQ(Mel(Line("two.1.ora")).AsInt(), 2);
    EXPECT_EQ(Node().GetLayer("persp", 0)->GetFrame(0)->GetPackedImage(), red);
    EXPECT_EQ(Node().GetLayer("persp", 1)->GetFrame(0)->GetPackedImage(), blue);
}

TEST_F(ImportCommandTest, Pencil2dComesWithItsKeys) {
    AddLayer("Rough", {1, 3, 9}, Qt::black);
    const QByteArray drawing = MadeArchive::Png(1024, 1024, QColor(1, 2, 3, 4));
    WriteFile("shot.pclx", MadeArchive::Pencil2d(
                               R"(
        <layer name="Rough" visibility="1" type="1">
          <image frame="1" src="a.png" topLeftX="-512" topLeftY="-512"/><image frame="3" src="gone.png"/></layer>
        <layer name="Clean" visibility="0" type="1">
          <image frame="2" src="b.png" topLeftX="0" topLeftY="0"/><image frame="4" src="b.png" topLeftX="0" topLeftY="0"/>
        </layer>)",
                               {{"data/a.png", drawing}, {"data/b.png", MadeArchive::Png(5, 5, Qt::red)}})
                               .Bytes());
    ExpectUndoable(Line("shot.pclx"));
    EXPECT_EQ(Mel(Line("shot.pclx")).AsInt(), 4);
    EXPECT_EQ(TimesOf("Rough"), QList<int>({1, 3, 9}));
    EXPECT_EQ(FindLayer("Rough")->GetFrame(0)->GetPackedImage(), drawing);
    EXPECT_EQ(ColorOf("Rough", 3).alpha(), 0);
    EXPECT_EQ(TimesOf("Clean"), QList<int>({2, 4}));
    EXPECT_EQ(ColorOf("Clean", 2), QColor(Qt::red));
    EXPECT_FALSE(FindLayer("Clean")->IsVisible());
    Mel("undo; currentUnit -time pal");
    Mel(Line("shot.pclx", "-startTime 11")); // where frame 1 goes
    EXPECT_EQ(TimesOf("Clean"), QList<int>({12, 14}));
    EXPECT_EQ(Warnings(),
              QStringList("\"shot.pclx\": It has 24 frames per second, the scene 25. Frames keep their "
                          "numbers."));
    Mel("currentUnit -time film");
}

TEST_F(ImportCommandTest, BadArchivesChangeNothing) {
    AddLayer("A", {1}, Qt::black);
    const QByteArray good = MadeArchive::Png(1024, 1024, Qt::red);
    const char* const row = R"(<layer name="B" src="b.png"/><layer name="A" src="a.png"/>)";
    const struct {
        const char* name;
        QByteArray bytes;
        QString reason;
    } cases[] = {
        {"up.ora", MadeArchive::OpenRaster(row, {{"a.png", good}, {"../b.png", good}}).Bytes(),
         "its member \"../b.png\" leads out of the archive"},
        {"missing.ora", MadeArchive::OpenRaster(row, {{"a.png", good}}).Bytes(),
         "its member \"b.png\" is missing"},
        {"no.pclx", "no archive at all", "it is no archive that can be read: Not a zip archive"},
        {"entities.pclx",
         MadeArchive({{"main.xml", "<!DOCTYPE d [<!ENTITY x SYSTEM \"file:///etc/passwd\">]><d>&x;</d>"}})
             .Bytes(),
         "its member \"main.xml\" has entities, which drawings do not need"},
    };
    for (const auto& c : cases) {
        WriteFile(c.name, c.bytes);
        ExpectRefusal(Line(c.name, "-startTime 1"), Refusal(c.name, c.reason));
    }
}

// --- movies -----------------------------------------------------------------------------------------------

TEST_F(ImportCommandTest, MoviesComeAtTheRateOfTheScene) {
    if (ffmpeg::Find().isEmpty()) {
        GTEST_SKIP() << "ffmpeg is not installed";
    }
    {
        MovieWriter movie(Path("run.mp4"), 12.0);
        for (int i = 0; i < 6; ++i) { // half a second
            QImage image(320, 180, QImage::Format_RGB32);
            image.fill(QColor(0, 0, 40 * i));
            ASSERT_TRUE(movie.Write(image));
        }
        ASSERT_EQ(movie.Finish(), "");
    }
    const QString line =
        QString("qmVellixImport -camera persp -movie \"%1\" -every 4 -startTime 11").arg(Path("run.mp4"));
    ExpectUndoable(line);
    EXPECT_EQ(Mel(line).AsInt(), 3); // of 12 frames at 24 in a second
    EXPECT_EQ(TimesOf("run"), QList<int>({11, 15, 19}));
    EXPECT_NEAR(ColorOf("run", 15).blue(), 80, 6);
    EXPECT_EQ(ColorOf("run", 15).alpha(), 255);
    EXPECT_EQ(ColorOf("run", 15, QPoint(512, 200)).alpha(), 0);
    WriteFile("none.mp4", "this is no movie");
    const QStringList said =
        Refused(QString("qmVellixImport -camera persp -movie \"%1\"").arg(Path("none.mp4")));
    ASSERT_EQ(said.size(), 1);
    EXPECT_TRUE(said[0].contains("none.mp4\": it is no movie that can be read. ffmpeg says: "))
        << said[0].toStdString();
    ExpectRefusal(QString("qmVellixImport -camera persp -movie \"%1\"").arg(Path("gone.mp4")),
                  Refusal("gone.mp4", "the file does not exist"));
    ExpectRefusal(QString("qmVellixImport -camera persp -movie \"%1\" -every 0").arg(Path("run.mp4")),
                  "-every is a number of frames from 1, of a movie.");
}

TEST_F(ImportCommandTest, MoviesBringTheirTransparency) {
    if (ffmpeg::Find().isEmpty()) {
        GTEST_SKIP() << "ffmpeg is not installed";
    }
    for (const char* name : {"run.webm", "run.mov"}) {
        {
            MovieWriter movie(Path(name), 24.0, MovieWriter::Paper::Transparent);
            QImage image(320, 320, QImage::Format_RGBA8888);
            image.fill(Qt::transparent);
            QPainter(&image).fillRect(80, 80, 160, 160, QColor(200, 60, 30, 128));
            ASSERT_TRUE(movie.Write(image));
            ASSERT_EQ(movie.Finish(), "");
        }
        Mel(QString("qmVellixImport -camera persp -layer \"%1\" -movie \"%2\"").arg(name, Path(name)));
        EXPECT_NEAR(ColorOf(name, 1).alpha(), 128, 3) << name;
        EXPECT_NEAR(ColorOf(name, 1).red(), 200, 8) << name;
        EXPECT_LE(ColorOf(name, 1, QPoint(20, 20)).alpha(), 2) << name;
        EXPECT_TRUE(Warnings().isEmpty());
    }
}

TEST_F(ImportCommandTest, SeveralFilesComeInAsOneStep) {
    const QColor colors[] = {Qt::red, Qt::green, Qt::blue};
    for (int i = 0; i < 30; ++i) {
        WritePicture(QString("walk.%1.png").arg(i), colors[i % 3], 64, 64);
    }
    const auto line = [this](int last) {
        QString text = "qmVellixImport -camera persp -layerState 2";
        for (int i = last; i >= 0; --i) {
            text += QString(" -file \"%1\"").arg(Path(QString("walk.%1.png").arg(i)));
        }
        return text;
    };
    ExpectUndoable(line(29));
    EXPECT_EQ(Mel(line(29) + " -file \"" + Path("walk.*.png") + "\"").AsInt(), 30) << "each of them once";
    for (int i = 0; i < 30; ++i) {
        EXPECT_EQ(ColorOf("walk", i), colors[i % 3]) << i; // whichever thread packed it
    }
    Mel("undo");
    WriteFile("walk.13.png", "none");
    WriteFile("walk.21.png", "none");
    ExpectRefusal(line(29), Refusal("walk.13.png", "it is no picture that can be read"));
    EXPECT_EQ(Drawing(), "active camera \n");
}

TEST_F(ImportCommandTest, AnInterruptedImportChangesNothing) {
    for (int i = 0; i < 40; ++i) {
        WritePicture(QString("walk.%1.png").arg(i), Qt::red, 8, 8);
    }
    FakeWindow& window = FakeWindow::Open(lightbox::Host::Get());
    window.interruptAfter = 3;
    const QStringList said = Refused(Line("walk.*.png"));
    EXPECT_EQ(window.progress, "");
    lightbox::Host::Get().SetUserInterface(nullptr);
    ASSERT_EQ(said.size(), 1);
    EXPECT_TRUE(said[0].contains("interrupted after")) << said[0].toStdString();
    EXPECT_EQ(Drawing(), "active camera \n");
    EXPECT_FALSE(lightbox::Host::Get().undo().UndoName() == "qmVellixImport");
}

// --- other drawings ---------------------------------------------------------------------------------------

class ImportDrawingTest : public ImportCommandTest {
protected:
    /// A scene with layers of the cameras persp and shotCam, and a box.
    void SaveOtherScene(const QString& name) {
        Mel("file -f -new; qmVellixNode; camera; rename camera1 shotCam; polyCube -n box");
        AddLayer("Rough", {1, 5}, Qt::red);
        AddLayer("Ink", {3}, Qt::blue);
        Mel("qmVellixLayer -editVis 0 1 persp; qmVellixLayer -editState 2 1 persp");
        Mel("qmVellixLayer -add -n Board -ls 1 shotCam; currentTime 7; qmVellixFrame -insert shotCam; "
            "currentTime 1");
        Mel(QString("file -rename \"%1\"; file -f -save").arg(Path(name)));
        Mel("file -f -new; playbackOptions -min 1 -max 4; currentTime 1; qmVellixNode;");
    }
    QString SceneLine(const QString& name, const QString& more = QString()) const {
        return QString("qmVellixImport -scene \"%1\" %2").arg(Path(name), more);
    }
    std::string Nodes() {
        std::string names;
        const auto all = Mel("sort(`ls`)");
        for (const std::string& name : all.Strings()) {
            names += name + " ";
        }
        return names;
    }
};

TEST_F(ImportDrawingTest, LayersOfAnotherSceneComeWithTheirKeys) {
    for (const char* name : {"other.ma", "other.lbx"}) {
        SCOPED_TRACE(name);
        SaveOtherScene(name);
        AddLayer("Rough", {1, 2}, Qt::black); // stays as it is: those of another scene are new layers
        const std::string nodes = Nodes();
        ExpectUndoable(SceneLine(name, "-fromCamera persp"));
        EXPECT_EQ(Mel(SceneLine(name, "-fromCamera persp")).AsInt(), 3);
        EXPECT_EQ(Nodes(), nodes) << "nothing else of the scene stays";
        EXPECT_EQ(Mel("size(`namespaceInfo -listOnlyNamespaces`)").AsInt(), 0);
        EXPECT_EQ(LayerNames("persp"), QStringList({"Rough", "Rough", "Ink"}));
        EXPECT_EQ(TimesOf("Rough"), QList<int>({1, 2}));
        const Layer* const ink = FindLayer("Ink");
        EXPECT_FALSE(ink->IsVisible());
        EXPECT_EQ(ink->GetState(), LayerState::Locked);
        EXPECT_EQ(ColorOf("Ink", 3), QColor(Qt::blue));
        Mel("undo");
        EXPECT_EQ(Mel(SceneLine(name, "-fromCamera shotCam -camera top -strength 50 -layerState 0")).AsInt(),
                  1);
        EXPECT_EQ(FindLayer("Board", "top")->GetState(), LayerState::Animated);
        EXPECT_EQ(Mel(SceneLine(name, "-camera persp -layer Ink")).AsInt(), 1);
        ExpectRefusal(SceneLine(name),
                      Refusal(name, "the camera \"shotCam\" is not in this scene; name with -camera the "
                                    "one that takes its layers"));
        ExpectRefusal(
            SceneLine(name, "-fromCamera cam9"),
            Refusal(name, "it has layers of the cameras persp, shotCam; name one of these with -fromCamera"));
        EXPECT_EQ(Nodes(), nodes);
        // Into a scene without a drawing, with the cameras of the same names.
        Mel("file -f -new; camera; rename camera1 shotCam");
        ExpectUndoable(SceneLine(name));
        EXPECT_EQ(Drawing(), "no node");
        EXPECT_EQ(Mel(SceneLine(name)).AsInt(), 4);
        EXPECT_EQ(LayerNames("shotCam"), QStringList("Board"));
    }
}

TEST_F(ImportDrawingTest, ASceneThatCannotBeReadChangesNothing) {
    AddLayer("Rough", {1}, Qt::black);
    const std::string nodes = Nodes();
    WriteFile("bad.ma",
              "//Maya ASCII 2018 scene\ncreateNode transform -n \"box\";\nsetAttr \".tx\" \"x\" {{{;\n");
    WriteFile("empty.ma",
              "//Maya ASCII 2018 scene\nrequires maya \"2018\";\ncreateNode transform -n \"box\";\n");
    const QString before = Drawing();
    EXPECT_EQ(Refused(SceneLine("bad.ma")).last(),
              Refusal("bad.ma", "it is no scene that can be read whole"));
    EXPECT_EQ(Refused(SceneLine("empty.ma")).last(), Refusal("empty.ma", "there is no drawing in it"));
    ExpectRefusal(SceneLine("gone.ma"), Refusal("gone.ma", "the file does not exist"));
    EXPECT_EQ(Drawing(), before);
    EXPECT_EQ(Nodes(), nodes);
}

TEST_F(ImportDrawingTest, TakesTheLayersOfTheDrawingThatAnImportLeaves) {
    SaveOtherScene("other.ma");
    AddLayer("Mine", {1}, Qt::black);
    Mel(QString("file -import -namespace sc \"%1\"").arg(Path("other.ma")));
    const QString before = Drawing();
    const std::string nodes = Nodes();
    ASSERT_NE(nodes.find("sc:vellixShape"), std::string::npos);
    ExpectUndoable("qmVellixImport -node \"sc:vellix\"");
    ASSERT_TRUE(MayaUtil::TakeLayers("sc:vellixShape"));
    EXPECT_EQ(LayerNames("persp"), QStringList({"Mine", "Rough", "Ink"}));
    EXPECT_EQ(LayerNames("sc:shotCam"), QStringList("Board"));
    EXPECT_EQ(Nodes().find("sc:vellixShape"), std::string::npos);
    Mel("undo");
    EXPECT_EQ(Drawing(), before);
    EXPECT_EQ(Nodes(), nodes) << "with the drawing it came from";
    Mel("redo");
    EXPECT_EQ(LayerNames("persp"), QStringList({"Mine", "Rough", "Ink"}));
    ExpectRefusal("qmVellixImport -node vellix",
                  "Cannot import \"vellix\": it is the drawing that is edited already. Nothing was changed.");
    ExpectRefusal("qmVellixImport -node persp",
                  "Cannot import \"persp\": it is no drawing node. Nothing was changed.");
}

TEST_F(ImportDrawingTest, KeepsTheDrawingsThatATimeUnitPutsOnOneFrame) {
    Mel("file -f -new; qmVellixNode");
    AddLayer("Rough", {2, 3, 5}, Qt::red);
    Mel(QString("file -rename \"%1\"; file -f -save").arg(Path("rough.ma")));
    Mel("file -f -new; qmVellixNode");
    AddLayer("Mine", {1}, Qt::black);
    Mel(QString("file -import -namespace sc \"%1\"; currentUnit -time \"12fps\"").arg(Path("rough.ma")));
    ASSERT_TRUE(MayaUtil::TakeLayers("sc:vellixShape"));
    EXPECT_EQ(TimesOf("Rough"), QList<int>({1, 2, 3}));
}

TEST_F(ImportDrawingTest, CopiedFramesCanBePastedInAnotherScene) {
    AddLayer("Rough", {1, 3}, Qt::red);
    Mel("timeControl -e -rangeArray 1 4 $gPlayBackSlider; qmVellixFrame -copy persp");
    Mel("timeControl -e -rangeVisible 0 $gPlayBackSlider; file -f -new; qmVellixNode -layer -camera persp "
        "-layerState 0");
    Mel("currentTime 20");
    ExpectUndoable("qmVellixFrame -paste persp");
    Mel("qmVellixFrame -paste persp");
    QList<int> times;
    Node().GetActiveLayer("persp")->GetFrameTimes(times);
    EXPECT_EQ(times, QList<int>({20, 22}));
    EXPECT_EQ(Node().GetActiveLayer("persp")->GetFrame(1)->PeekImage().pixelColor(9, 9), QColor(Qt::red));
}

} // namespace
} // namespace vellix
