#include "commands/ExportCanvas.h"
#include "commands/ExportedLayers.h"
#include "commands/LayerOutputs.h"
#include "core/Frame.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "faults/DiskFault.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "lightbox/FakeWindow.h"
#include "node/OpenText.h"
#include "paint/Ffmpeg.h"
#include "paint/PngCodec.h"
#include "plugin/commands/CommandFixture.h"
#include "plugin/exchange/ReadArchive.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QPointF>
#include <QXmlStreamReader>

#include <cmath>
#include <string>
#include <vector>

namespace vellix {
namespace {

class ExportCommandTest : public CommandFixture {
protected:
    // Keys at 1 and 3, each with a square of its own colour and place.
    void SetUp() override {
        CommandFixture::SetUp();
        Mel("qmVellixLayer -add -n Rough -ls 0 persp");
        for (int time : {1, 3}) {
            Node().AddFrame("persp", MTime(time, MTime::uiUnit()));
            Mel(QString("currentTime %1").arg(time));
            QImage image(1024, 1024, QImage::Format_RGBA8888);
            image.fill(Qt::transparent);
            QPainter(&image).fillRect(100 * time, 100, 50, 50, QColor(0, 0, 50 * time, 255));
            Node().GetActiveLayer("persp")->SetImage(image);
        }
        Mel("currentTime 2");
    }

    QString Path(const QString& name) const { return folder_.filePath(name); }
    QString Line(const QString& name, const QString& more = QString()) const {
        return QString("qmVellixExport -camera persp -file \"%1\" %2").arg(Path(name), more);
    }
};

TEST_F(ExportCommandTest, WritesEveryFrameOfTheRange) {
    const auto files = Mel(Line("sub/walk.###.png")).Strings();
    ASSERT_EQ(files.size(), 4u); // the playback range
    EXPECT_EQ(files[3], Path("sub/walk.004.png").toStdString());
    EXPECT_EQ(QDir(Path("sub")).entryList(QDir::Files).size(), 4);
    const QImage held(Path("sub/walk.002.png"));
    EXPECT_EQ(held.size(), QSize(1024, 1024));
    EXPECT_EQ(held.pixelColor(125, 125), QColor(0, 0, 50));
    EXPECT_EQ(held.pixelColor(10, 10).alpha(), 0);
    EXPECT_EQ(QImage(Path("sub/walk.003.png")).pixelColor(325, 125), QColor(0, 0, 150));

    EXPECT_EQ(Mel(Line("still.png", "-startTime 3 -endTime 3 -background 10 20 30")).Strings().size(), 1u);
    const QImage still(Path("still.png"));
    EXPECT_FALSE(still.hasAlphaChannel());
    EXPECT_EQ(still.pixelColor(10, 10), QColor(10, 20, 30));
}

TEST_F(ExportCommandTest, GhostsAreLeftOutUnlessAskedFor) {
    Settings::ghostPrev = true;
    Mel(Line("plain.png", "-startTime 3 -endTime 3"));
    Mel(Line("ghosts.png", "-startTime 3 -endTime 3 -ghosting 1"));
    Settings::ghostPrev = false;
    EXPECT_EQ(QImage(Path("plain.png")).pixelColor(125, 125).alpha(), 0);
    EXPECT_NEAR(QImage(Path("ghosts.png")).pixelColor(125, 125).alpha(), 102, 1); // the nearest ghost, at 0.4

    // A layer that is not seen has no ghosts, be it the active one.
    Settings::ghostPrev = true;
    Mel("qmVellixLayer -ev 0 0 persp");
    Mel(Line("hidden.png", "-startTime 3 -endTime 3 -ghosting 1"));
    Settings::ghostPrev = false;
    EXPECT_EQ(QImage(Path("hidden.png")).pixelColor(125, 125).alpha(), 0);
    EXPECT_EQ(QImage(Path("hidden.png")).pixelColor(325, 125).alpha(), 0);
}

TEST_F(ExportCommandTest, ShowsAllFramesOnASheet) {
    const auto files = Mel(Line("f.#.png", QString("-contactSheet \"%1\"").arg(Path("sheet.png")))).Strings();
    ASSERT_EQ(files.size(), 5u);
    EXPECT_EQ(files[4], Path("sheet.png").toStdString());
    EXPECT_FALSE(QImage(Path("sheet.png")).isNull());
}

TEST_F(ExportCommandTest, ChangesNeitherTimeNorDrawingNorCaches) {
    const auto layers = Node().GetLayerManager();
    for (const bool upToDate : {true, false}) {
        if (upToDate) {
            layers->GetFlattenedImage("persp");
        } else {
            layers->QueueMasterCacheUpdate("persp");
        }
        const QString before = Drawing();
        Mel(Line("f.#.png", "-ghosting 1 -startTime -2 -endTime 9"));
        EXPECT_EQ(Drawing(), before);
        EXPECT_EQ(layers->CacheUpdateRequired("persp"), !upToDate);
        EXPECT_EQ(MayaUtil::GetPlaybackTimeValue(), 2);
    }
}

TEST_F(ExportCommandTest, TextThatIsOpenGoesOutAsWell) {
    bool isCommitted = false;
    OpenText::SetCommit([&isCommitted] { isCommitted = true; });
    Mel(Line("walk.##.png"));
    OpenText::SetCommit({});
    EXPECT_TRUE(isCommitted);
}

TEST_F(ExportCommandTest, SaysWhatToDo) {
    WriteFile("file", "in the way");
    const struct {
        QString line;
        const char* message;
    } cases[] = {
        {"qmVellixExport -camera persp", "No file. Name the frames with -file"},
        {"qmVellixExport -camera persp -movie \"f.gif\"", "A movie is a .mp4, .mov, .mkv, .avi, .webm file."},
        {Line("f.png"), "would be written by every frame. Put a run of #"},
        {Line("f.#.jpg"), "end in .png"},
        {Line("f.#.png", "-startTime 5 -endTime 4"), "There are no frames from 5 to 4."},
        {Line("f.#.png", "-startTime 1 -endTime 2000000"), "at most 100000 frames"},
        {Line("f.#.png", "-startTime -1e300"), "not on the timeline"},
        {Line("f.#.png", "-background 0 0 256"), "from 0 to 255"},
        {Line("file/f.#.png"), "cannot be made. Choose another"},
        {Line("f.#.png", "-contactSheet \"s.jpg\""), "end in .png"},
        {Line("f.#.png").replace("persp", "nowhere"), "Camera does not exist: nowhere"},
        {Line("f.#.png").replace("persp", "top"), "has no layers"},
    };
    for (const auto& c : cases) {
        const QStringList messages = Refused(c.line);
        ASSERT_EQ(messages.size(), 1) << c.message;
        EXPECT_TRUE(messages[0].contains(c.message)) << messages[0].toStdString();
    }
    EXPECT_EQ(QDir(folder_.path()).entryList(QDir::Files), QStringList("file"));
    // A file that cannot be replaced is an error, not a gap in the sequence.
    ASSERT_TRUE(QDir(folder_.path()).mkdir("f.3.png"));
    EXPECT_TRUE(Refused(Line("f.#.png")).value(0).contains("f.3.png\" cannot be written"));
    Mel("file -f -new");
    EXPECT_EQ(Refused(Line("f.#.png")).value(0), "There is no drawing in the scene.");
}

class LayeredExportTest : public ExportCommandTest {
protected:
    // Above Rough (keys at 1 and 3), a static layer with a name that no file can have, hidden.
    void SetUp() override {
        ExportCommandTest::SetUp();
        Mel("qmVellixLayer -add -n \"\" -ls 1 persp");
        Node().GetLayer("persp", 1)->SetName(layerName_);
        Node().AddFrame("persp", MTime(-999, MTime::uiUnit()));
        Node().GetActiveLayer("persp")->UpdateCurrentFrameIndex(2);
        QImage image(1024, 1024, QImage::Format_RGBA8888);
        image.fill(QColor(0, 90, 0, 255));
        Node().GetActiveLayer("persp")->SetImage(image);
        Mel("qmVellixLayer -ev 0 1 persp");
    }
    QString Layered(const QString& name, const QString& more = QString()) const {
        return QString("qmVellixExport -camera persp -layered \"%1\" %2").arg(Path(name), more);
    }
    /// What a member of an archive holds.
    QByteArray Member(const QString& archive, const QString& member) const {
        return ReadArchive(Path(archive)).Read(member);
    }
    /// The frames of a .pclx at which pictures are keyed, by layer.
    QStringList Keys(const QString& archive) const {
        QStringList keys;
        QXmlStreamReader xml(Member(archive, "main.xml"));
        while (!xml.atEnd()) {
            if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == "layer") {
                keys.append(QString());
            } else if (xml.isStartElement() && (xml.name() == "image" || xml.name() == "camera")) {
                keys.last() += xml.attributes().value("frame").toString() + ' ';
            }
        }
        return keys;
    }

    const QString layerName_ = QString::fromUtf8("背/景 #1");
};

TEST_F(LayeredExportTest, AnAnimationHasAllKeysAndHolds) {
    EXPECT_EQ(Mel(Layered(QString::fromUtf8("绘 a.pclx"))).Strings().size(), 1u);
    EXPECT_EQ(Keys(QString::fromUtf8("绘 a.pclx")), QStringList({"1 3 ", "1 ", "1 4 "}));
    EXPECT_EQ(Member(QString::fromUtf8("绘 a.pclx"), "data/001.003.png"),
              Node().GetLayer("persp", 0)->GetFrame(1)->GetPackedImage());
    EXPECT_EQ(Warnings(), QStringList());
    // With pictures of frames, it is the last one.
    const auto files =
        Mel(Layered("last.pclx", QString("-drawings -contactSheet \"%1\"").arg(Path("sheet.png")))).Strings();
    EXPECT_EQ(files,
              std::vector<std::string>({Path("sheet.png").toStdString(), Path("last.pclx").toStdString()}));
    // A range cuts, and what is held at its start is keyed there.
    Mel(Layered("cut.pclx", "-startTime 2 -endTime 9"));
    EXPECT_EQ(Keys("cut.pclx"), QStringList({"2 3 ", "2 ", "1 9 "}));

    // Before frame 1 there is nothing in the other program.
    Node().GetLayer("persp", 0)->InsertFrame(new Frame(MTime(-10, MTime::uiUnit())));
    Mel(Layered("early.pclx"));
    EXPECT_EQ(Keys("early.pclx"), QStringList({"1 12 14 ", "1 ", "1 15 "}));
    ASSERT_EQ(Warnings().size(), 1);
    EXPECT_TRUE(Warnings()[0].contains("all are 11 later there")) << Warnings()[0].toStdString();
    Mel("currentUnit -time \"23.976fps\" -updateAnimation false");
    Mel(Layered("rate.pclx", "-startTime 1"));
    ASSERT_EQ(Warnings().size(), 1);
    EXPECT_TRUE(Warnings()[0].contains("it has 24 frames per second instead of 23.976"));
}

TEST_F(LayeredExportTest, WritesAFileOfLayersForEachFrame) {
    const auto files = Mel(Layered("l.##.ora", "-background 1 2 3")).Strings();
    ASSERT_EQ(files.size(), 4u);
    EXPECT_EQ(files[2], Path("l.03.ora").toStdString());
    EXPECT_EQ(Member("l.03.ora", "data/layer001.png"),
              Node().GetLayer("persp", 0)->GetFrame(1)->GetPackedImage());
    const QImage merged = QImage::fromData(Member("l.03.ora", "mergedimage.png"));
    EXPECT_EQ(merged.pixelColor(325, 125), QColor(0, 0, 150)) << "without the hidden layer";
    EXPECT_EQ(merged.pixelColor(5, 5), QColor(1, 2, 3));
    EXPECT_EQ(QImage::fromData(Member("l.03.ora", "data/layer000.png")).pixelColor(5, 5), QColor(1, 2, 3));
    // Only where something is drawn.
    EXPECT_EQ(Mel(Layered("d.#.psd", "-drawings")).Strings(),
              std::vector<std::string>({Path("d.1.psd").toStdString(), Path("d.3.psd").toStdString()}));
}

TEST_F(LayeredExportTest, EveryVisibleLayerHasFilesOfItsOwn) {
    Mel("qmVellixLayer -ev 1 1 persp");
    Mel("qmVellixLayer -add -n Empty -ls 0 persp");
    Node().GetLayer("persp", 2)->SetName("rough");
    const auto files = Mel(QString("qmVellixExport -camera persp -layerFiles \"%1\" -startTime 0 -endTime 1")
                               .arg(Path("{layer}/#.png")))
                           .Strings();
    ASSERT_EQ(files.size(), 6u);
    EXPECT_EQ(QImage(Path("Rough/0.png")), QImage(Path("rough_2/1.png"))) << "nothing is keyed there";
    EXPECT_EQ(QImage(Path("Rough/1.png")).pixelColor(125, 125), QColor(0, 0, 50));
    EXPECT_EQ(QImage(Path(QString::fromUtf8("背_景 #1/0.png"))).pixelColor(5, 5), QColor(0, 90, 0));
}

TEST_F(LayeredExportTest, AFolderThatVanishesIsAFault) {
    ExportedLayers exported(*Node().GetLayerManager(), "persp", ExportCanvas());
    LayerOutputs outputs(exported);
    outputs.AddLayerFiles(Path("{layer}/#.png"));
    EXPECT_EQ(outputs.Write(QImage(), 1), QString());
    ASSERT_TRUE(QDir(folder_.path()).rename("Rough", "elsewhere"));
    EXPECT_TRUE(outputs.Write(QImage(), 2).contains("Rough/2.png\" cannot be written: "));
    EXPECT_FALSE(QFileInfo::exists(Path("Rough")));
}

TEST_F(LayeredExportTest, TheRenderSizeIsWhatTheGateShows) {
    QImage drawing(1024, 1024, QImage::Format_RGBA8888);
    drawing.fill(Qt::transparent);
    QPainter(&drawing).fillRect(QRect(412, 462, 200, 100), Qt::red); // around the middle
    Node().GetLayer("persp", 0)->GetFrame(0)->SetImage(drawing);
    Mel("setAttr defaultResolution.width 400; setAttr defaultResolution.height 200");
    Mel("camera -edit -overscan 1.3 -panZoomEnabled true -zoom 0.5 -horizontalPan 0.2 persp");
    const auto expectSide = [&](const QString& name, double side) {
        const QImage picture(Path(name));
        const QPointF middle(picture.width() / 2.0, picture.height() / 2.0);
        const auto alpha = [&](double x, double y) {
            return picture.pixelColor(int(std::floor(middle.x() + x)), int(std::floor(middle.y() + y)))
                .alpha();
        };
        const double x = 100 * side / 1024;
        const double y = 50 * side / 1024;
        for (const int sign : {-1, 1}) { // the edges are within a pixel
            EXPECT_GT(alpha(sign * (x - 1), 0), 127) << name.toStdString();
            EXPECT_LT(alpha(sign * (x + 1), 0), 128) << name.toStdString();
            EXPECT_GT(alpha(0, sign * (y - 1)), 127) << name.toStdString();
            EXPECT_LT(alpha(0, sign * (y + 1)), 128) << name.toStdString();
        }
    };
    // The film is 3:2. A picture of the gate's 2:1 has the drawing over its whole width, whatever the film
    // fit is.
    const struct {
        const char* fit;
        double squareSide; // on a picture of 400 x 400: fill shows film only, 600 wide, overscan all of it
    } cases[] = {{"horizontal", 400}, {"vertical", 800}, {"fill", 600}, {"overscan", 400 / 1.5 * 2}};
    for (const auto& c : cases) {
        Mel(QString("camera -edit -filmFit \"%1\" persp").arg(c.fit));
        Mel(Line("gate.png", "-startTime 1 -endTime 1 -renderSize"));
        ASSERT_EQ(QImage(Path("gate.png")).size(), QSize(400, 200));
        expectSide("gate.png", 400);
        Mel(Line("large.png", "-startTime 1 -endTime 1 -size 3000 1500"));
        expectSide("large.png", 3000);
        Mel(Line("square.png", "-startTime 1 -endTime 1 -size 400 400"));
        expectSide("square.png", c.squareSide);
    }
    // Layers are placed alike.
    Mel(Layered("gate.ora", "-startTime 1 -endTime 1 -renderSize"));
    EXPECT_EQ(QImage::fromData(Member("gate.ora", "data/layer000.png")), QImage(Path("gate.png")));
    EXPECT_EQ(Refused(Line("r.png", "-size 10 10 -renderSize")).value(0),
              "Give either -size or -renderSize.");
    EXPECT_TRUE(Refused(Line("r.png", "-size 0 10")).value(0).contains("1 to 8192 pixels"));
}

TEST_F(LayeredExportTest, TheMenuPutsTheNumberAndTheLayerWhereTheNameHasNone) {
    ASSERT_TRUE(MayaUtil::SourceScripts());
    const struct {
        const char* name;
        const char* written;
    } cases[] = {
        {"a \"b\".pclx", "a \"b\".pclx"}, {"c.d.ORA", "c.d.0003.ORA"},          {"e.##.psd", "e.03.psd"},
        {"f.png", "f.Rough.0003.png"},    {"{layer}_g.#.png", "Rough_g.3.png"},
    };
    for (const auto& c : cases) {
        Mel(QString("qmVxExportLayersTo(\"%1\", \" -camera persp -drawings -startTime 2 -endTime 4\")")
                .arg(Path(c.name).replace('"', "\\\"")));
        EXPECT_TRUE(QFileInfo::exists(Path(c.written))) << c.written;
        QFile::remove(Path(c.written));
    }
    EXPECT_EQ(QDir(folder_.path()).entryList(QDir::Files | QDir::Hidden), QStringList());
}

TEST_F(LayeredExportTest, SaysWhatToDo) {
    const struct {
        QString line;
        const char* message;
    } cases[] = {
        {Layered("a.zip"), "as a .ora, .psd, .pclx file. Let"},
        {Layered("a.ora"), "would be written by every frame. Put a run of #"},
        {Layered("a.#.ora", "-ghosting 1"), "Ghosts belong to no layer."},
        {Layered("a.#.ora", "-drawings -startTime 5 -endTime 9"), "No layer has a key from 5 to 9."},
        {Layered("a.#.ora", "-drawings -movie \"a.mp4\""), "A movie has every frame"},
        {Line("a.#.png", QString("-layerFiles \"%1\" -background 1 2 3").arg(Path("{layer}.#.png"))),
         "transparent"},
        {Line("a.#.png", QString("-layerFiles \"%1\"").arg(Path("{layer}.#.jpg"))), "end in .png"},
        {Line("a.#.png", QString("-layerFiles \"%1\"").arg(Path("{layer}.png"))), "Put a run of #"},
    };
    for (const auto& c : cases) {
        const QStringList messages = Refused(c.line);
        ASSERT_EQ(messages.size(), 1) << c.message;
        EXPECT_TRUE(messages[0].contains(c.message)) << messages[0].toStdString();
    }
    Mel("qmVellixLayer -ev 1 1 persp");
    EXPECT_TRUE(Refused(QString("qmVellixExport -camera persp -layerFiles \"%1\"").arg(Path("a.#.png")))
                    .value(0)
                    .contains("would be written by every layer. Put {layer}"));
    EXPECT_EQ(QDir(folder_.path()).entryList(QDir::Files | QDir::Hidden), QStringList());
}

TEST_F(LayeredExportTest, AnInterruptedExportLeavesOnlyWholeFiles) {
    const QString before = Drawing();
    const struct {
        QString line;
        QStringList left;
    } cases[] = {
        {Layered("a.pclx"), {}},
        {Layered("a.#.ora", "-startTime 1 -endTime 9"), {"a.1.ora", "a.2.ora"}},
        {Line("a.#.png", QString("-movie \"%1\"").arg(Path("a.avi"))), {"a.1.png", "a.2.png"}},
    };
    for (const auto& c : cases) {
        FakeWindow& window = FakeWindow::Open(lightbox::Host::Get());
        window.interruptAfter = c.left.isEmpty() ? 2 : 3; // the first call begins
        const QStringList said = Refused(c.line);
        lightbox::Host::Get().SetUserInterface(nullptr);
        ASSERT_EQ(said.size(), 1);
        EXPECT_TRUE(said[0].startsWith("Interrupted")) << said[0].toStdString();
        EXPECT_EQ(QDir(folder_.path()).entryList(QDir::Files | QDir::Hidden), c.left) << c.line.toStdString();
        for (const QString& name : c.left) {
            QFile::remove(Path(name));
        }
    }
    EXPECT_EQ(Drawing(), before);
}

TEST_F(LayeredExportTest, AFrameThatNoFileCanHoldIsFoundBeforeTheFirst) {
    // Eight layers of 8192 x 8192 pixels at frame 3; their bytes are few.
    QImage large(8192, 8192, QImage::Format_RGBA8888);
    large.fill(Qt::red);
    const QByteArray png = PngCodec::Encoded(large);
    large = QImage();
    for (int i = 0; i < 8; ++i) {
        Mel(QString("qmVellixLayer -add -n Large%1 -ls 0 persp; currentTime 3; qmVellixFrame -insert persp")
                .arg(i));
        Layer* const layer = Node().GetActiveLayer("persp");
        layer->GetFrame(layer->FindFrameIndex(3))->SetPackedImage(png);
    }
    Mel("currentTime 1");
    ExpectRefusal(
        Layered("a.#.psd", "-startTime 1 -endTime 4"),
        QString("\"%1\" cannot be written: A .psd file holds at most 2 GB, 32767 layers and 30000 pixels "
                "a side. Nothing was written.")
            .arg(Path("a.3.psd")));
    EXPECT_EQ(QDir(folder_.path()).entryList(QDir::Files | QDir::Hidden), QStringList());
}

TEST_F(LayeredExportTest, AFullDiskLeavesWhatWasThere) {
    for (const char* name : {"a.pclx", "a.#.ora", "a.#.psd"}) {
        Mel(Layered(name));
    }
    const auto content = [&] {
        QStringList files;
        for (const QString& name : QDir(folder_.path()).entryList(QDir::Files | QDir::Hidden)) {
            QFile file(Path(name));
            file.open(QIODevice::ReadOnly);
            files.append(name + ' ' +
                         QString::number(qChecksum(file.readAll().constData(), uint(file.size()))) + ' ' +
                         QString::number(file.size()));
        }
        return files;
    };
    const QStringList before = content();
    ASSERT_EQ(before.size(), 9);
    for (const char* name : {"a.pclx", "a.#.ora", "a.#.psd"}) {
        const DiskFault fault = DiskFault::Full(folder_.path(), 700);
        EXPECT_TRUE(Refused(Layered(name)).value(0).contains("cannot be written: No space left")) << name;
    }
    EXPECT_EQ(content(), before);
}

TEST_F(LayeredExportTest, ADamagedPictureTravelsAsItIs) {
    Frame& frame = *Node().GetLayer("persp", 0)->GetFrame(1);
    QByteArray damaged = frame.GetPackedImage();
    damaged[damaged.indexOf("IDAT") + 20] = char(damaged[damaged.indexOf("IDAT") + 20] ^ 0x55);
    frame.SetPackedImage(damaged);
    Mel(Layered("a.pclx"));
    EXPECT_EQ(Member("a.pclx", "data/001.003.png"), damaged);
    Mel(Layered("a.ora", "-startTime 3 -endTime 3"));
    EXPECT_EQ(Messages().size(), 1) << "it is told";
    EXPECT_EQ(Member("a.ora", "data/layer000.png"), damaged);
    Mel(Layered("a.psd", "-startTime 3 -endTime 3"));
    // A sequence of pictures is to be seen by other programs.
    Mel(QString("qmVellixExport -camera persp -layerFiles \"%1\" -startTime 3 -endTime 3")
            .arg(Path("l.png")));
    EXPECT_EQ(QImage(Path("l.png")).pixelColor(325, 125).alpha(), 0);
    EXPECT_EQ(frame.GetPackedImage(), damaged);
}

TEST_F(LayeredExportTest, PicturesOfOtherSizesAreCutToTheDrawing) {
    QImage small(20, 10, QImage::Format_RGB32);
    small.fill(Qt::red);
    QByteArray png;
    ASSERT_TRUE(PngCodec::Encode(small, png));
    Node().GetLayer("persp", 0)->GetFrame(1)->SetPackedImage(png);
    Mel(QString("qmVellixExport -camera persp -layerFiles \"%1\" -startTime 3 -endTime 3")
            .arg(Path("l.png")));
    const QImage picture(Path("l.png"));
    EXPECT_EQ(picture.size(), QSize(1024, 1024));
    EXPECT_EQ(picture.pixelColor(19, 9), QColor(Qt::red));
    EXPECT_EQ(picture.pixelColor(20, 9).alpha(), 0);
    Mel(Layered("a.ora", "-startTime 3 -endTime 3"));
    EXPECT_EQ(Member("a.ora", "data/layer000.png"), png);
}

/// A folder with a stand-in for ffmpeg that is all of the PATH.
class MovieTest : public ExportCommandTest {
protected:
    void SetUp() override {
        ExportCommandTest::SetUp();
        path_ = qgetenv("PATH");
    }
    void TearDown() override {
        qputenv("PATH", path_);
        ExportCommandTest::TearDown();
    }

    /// Installs a shell script as the only ffmpeg. It is given what the real one is.
    void InstallEncoder(const QByteArray& script) {
        QDir(folder_.path()).mkdir("bin");
        const QString file = WriteFile("bin/ffmpeg", "#!/bin/sh\nPATH=" + path_ + "\n" + script);
        QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("PATH", Path("bin").toLocal8Bit());
    }
    QString Movie(const QString& more = QString()) const {
        return QString("qmVellixExport -camera persp -movie \"%1\" %2").arg(Path("out/walk.mp4"), more);
    }
    QStringList Written() const { return QDir(Path("out")).entryList(QDir::Files | QDir::Hidden); }

    QByteArray path_;
};

TEST_F(MovieTest, GivesTheEncoderEveryFrameAtTheScenesRate) {
    // The last argument is the file to write: here the arguments, and the bytes of the pictures.
    InstallEncoder("for file; do :; done\n{ echo \"$@\"; cat; } >\"$file\"\n");
    const struct {
        const char* unit;
        const char* rate;
    } cases[] = {
        {"film", " -framerate 24 "}, {"ntscf", " -framerate 60 "}, {"23.976fps", " -framerate 24000/1001 "}};
    for (const auto& c : cases) {
        Mel(QString("currentUnit -time \"%1\" -updateAnimation false").arg(c.unit));
        const auto files = Mel(Movie("-startTime 1 -endTime 3")).Strings();
        EXPECT_EQ(files, std::vector<std::string>{Path("out/walk.mp4").toStdString()});
        QFile file(Path("out/walk.mp4"));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray arguments = file.readLine();
        EXPECT_TRUE(arguments.contains(c.rate)) << arguments.toStdString();
        EXPECT_TRUE(arguments.contains(" -pix_fmt rgba -s 1024x1024 ")) << arguments.toStdString();
        const QByteArray pixels = file.readAll();
        ASSERT_EQ(pixels.size(), 3 * 1024 * 1024 * 4);
        const auto pixel = [&](int frame, int x, int y) {
            return pixels.mid(((frame * 1024 + y) * 1024 + x) * 4, 4).toHex();
        };
        EXPECT_EQ(pixel(0, 10, 10), "ffffffff") << "white paper";
        EXPECT_EQ(Written(), QStringList("walk.mp4")) << "replaced, and nothing beside it";
        if (c.unit == std::string("film")) {
            EXPECT_EQ(pixel(1, 125, 125), "000032ff") << "the key is held";
            EXPECT_EQ(pixel(2, 325, 125), "000096ff");
        }
    }
}

TEST_F(MovieTest, AFailedMovieLeavesWhatWasThere) {
    QDir(folder_.path()).mkdir("out");
    WriteFile("out/walk.mp4", "the old one");
    const struct {
        const char* script;
        const char* message;
    } cases[] = {
        {"cat >/dev/null; echo 'no such codec' >&2; exit 1", "was not written. ffmpeg says: no such codec"},
        {"echo 'at once' >&2; exit 3", "ffmpeg says: at once"},
        {"kill -9 $$", "was not written."},
        {"cat >/dev/null", "was not written."},
    };
    for (const auto& c : cases) {
        InstallEncoder(c.script);
        const QString message = Refused(Movie("-startTime 1 -endTime 40")).value(0);
        EXPECT_TRUE(message.contains(c.message)) << c.script << ": " << message.toStdString();
        EXPECT_EQ(Written(), QStringList("walk.mp4"));
    }
    // The movie is done and cannot take its place.
    InstallEncoder("for file; do :; done\ncat >\"$file\"\n");
    {
        const DiskFault fault = DiskFault::Rename(folder_.path());
        const QString message = Refused(Movie("-startTime 1 -endTime 2")).value(0);
        EXPECT_TRUE(message.contains("cannot be written: No space left")) << message.toStdString();
    }
    EXPECT_EQ(Written(), QStringList("walk.mp4"));
    EXPECT_EQ(QFileInfo(Path("out/walk.mp4")).size(), 11);
}

TEST_F(MovieTest, WithoutTheEncoderItSaysWhatToInstall) {
    qputenv("PATH", Path("bin").toLocal8Bit());
    if (!ffmpeg::Find().isEmpty()) {
        GTEST_SKIP() << "an encoder lies outside the PATH";
    }
    EXPECT_TRUE(Refused(Movie()).value(0).contains("Install it (the package ffmpeg"));
    EXPECT_FALSE(QFileInfo::exists(Path("out")));
}

TEST_F(MovieTest, AMovieWithoutABackgroundIsTransparentWhereItCanBe) {
    InstallEncoder("for file; do :; done\n{ echo \"$@\"; cat; } >\"$file\"\n");
    const struct {
        const char* name;
        const char* more;
        const char* codec;
        const char* paper;
    } cases[] = {
        {"a.webm", "", " -c:v libvpx-vp9 -pix_fmt yuva420p ", "00000000"},
        {"a.MOV", "", " -c:v prores_ks -profile:v 4444 -pix_fmt yuva444p10le ", "00000000"},
        {"a.mov", "-background 9 8 7", " -pix_fmt yuv420p ", "090807ff"},
        {"a.mkv", "", " -pix_fmt yuv420p ", "ffffffff"},
    };
    for (const auto& c : cases) {
        Mel(Movie("-startTime 1 -endTime 1 ").replace("walk.mp4", c.name) + c.more);
        QFile file(Path(QString("out/") + c.name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray arguments = file.readLine();
        EXPECT_TRUE(arguments.contains(c.codec)) << arguments.toStdString();
        const QByteArray pixels = file.readAll();
        EXPECT_EQ(pixels.left(4).toHex(), c.paper) << c.name;
        EXPECT_EQ(pixels.mid((125 * 1024 + 125) * 4, 4).toHex(), "000032ff");
    }
}

TEST_F(MovieTest, TheRealEncoderWritesAMovie) {
    if (ffmpeg::Find().isEmpty()) {
        GTEST_SKIP() << "ffmpeg is not installed";
    }
    Mel(Movie("-startTime 1 -endTime 3"));
    QFile file(Path("out/walk.mp4"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.read(8).mid(4), "ftyp");
    EXPECT_EQ(Written(), QStringList("walk.mp4"));
}

} // namespace
} // namespace vellix
