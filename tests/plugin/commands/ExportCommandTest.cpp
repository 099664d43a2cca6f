#include "faults/DiskFault.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "paint/MovieWriter.h"
#include "plugin/commands/CommandFixture.h"

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QPainter>

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
    if (!MovieWriter::FindEncoder().isEmpty()) {
        GTEST_SKIP() << "an encoder lies outside the PATH";
    }
    EXPECT_TRUE(Refused(Movie()).value(0).contains("Install it (the package ffmpeg"));
    EXPECT_FALSE(QFileInfo::exists(Path("out")));
}

TEST_F(MovieTest, TheRealEncoderWritesAMovie) {
    if (MovieWriter::FindEncoder().isEmpty()) {
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
