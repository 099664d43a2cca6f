#include "faults/FaultFixture.h"
#include "host/Settings.h"
#include "journeys/Lightbox.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QThread>

#include <functional>
#include <iostream>
#include <random>
#include <sys/fsuid.h>
#include <sys/mount.h>
#include <unistd.h>

namespace {

/// Whatever writes a file does so whole or not at all, and says so.
class FullDiskFaults : public FaultFixture {
protected:
    struct Kind {
        const char* what;
        QString file;
        std::function<void()> change; ///< makes the next content another one
        std::function<bool()> write;  ///< false when it said that it failed
    };
    static constexpr int SECTOR = 512;

    FullDiskFaults() {
        EXPECT_TRUE(Run("qmVellixNode -l -c persp; playbackOptions -min 1 -max 2")) << Messages();
        Draw(3);
        QDir(Path("")).mkdir("sheets");
    }

    std::function<bool()> Runs(const QString& mel) {
        return [this, mel] {
            TakesErrors();
            return Run(mel) && !TakesErrors();
        };
    }
    std::function<bool()> ExportsLayers(const QString& name) {
        return Runs("qmVellixExport -camera persp -st 1 -et 1 -layered \"" + Path(name) + "\"");
    }
    std::vector<Kind> Kinds() {
        const auto draws = [this] { Draw(1); };
        return {
            {"a scene in Maya ASCII", Path("scene.ma"), draws,
             Runs("file -rename \"" + Path("scene.ma") + "\"; file -save")},
            {"a scene in .lbx", Path("scene.lbx"), draws,
             Runs("file -rename \"" + Path("scene.lbx") + "\"; file -save")},
            {"an exported scene", Path("all.ma"), draws,
             Runs("file -force -type \"mayaAscii\" -exportAll \"" + Path("all.ma") + "\"")},
            {"a picture", Path("shot.0001.png"), draws,
             Runs("qmVellixExport -camera persp -file \"" + Path("shot.####.png") + "\" -st 1 -et 1")},
            {"a contact sheet", Path("sheets/sheet.png"), draws,
             Runs("qmVellixExport -camera persp -file \"" + Path("frame.####.png") + "\" -st 1 -et 1 -cs \"" +
                  Path("sheets/sheet.png") + "\"")},
            {"a file of layers", Path("shot.ora"), draws, ExportsLayers("shot.ora")},
            {"a file of layers for others", Path("shot.psd"), draws, ExportsLayers("shot.psd")},
            {"an animation", Path("shot.pclx"), draws, ExportsLayers("shot.pclx")},
            {"a picture of one layer", Path("layer.0001.png"), draws,
             Runs("qmVellixExport -camera persp -st 1 -et 1 -layerFiles \"" + Path("layer.####.png") + "\"")},
            {"the settings", vellix::Settings::GetUserConfigPath(),
             [] { vellix::Settings::activeColor = QColor(1, 2, 3); },
             [this] {
                 TakesErrors();
                 vellix::Settings::WriteUserConfig();
                 return !TakesErrors();
             }},
            {"the option variables", folder_.filePath("prefs/optionVars.json"),
             [this] { Run("optionVar -stringValue longOne \"" + QString(3000, 'x') + "\""); },
             Runs("optionVar -intValue other 1; savePrefs")},
        };
    }

    static QByteArray ReadAt(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
    }
    static void WriteAt(const QString& path, const QByteArray& content) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    }
    static QStringList NamesAt(const QString& folder) {
        return QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
    }

    /// Writes with the fault, which must leave the old file, say so and leave nothing else behind.
    void ExpectNothingHappens(const Kind& kind, const char* variable, const QByteArray& value) {
        SCOPED_TRACE(std::string(kind.what) + ", " + variable + "=" + value.toStdString());
        const QByteArray before = ReadAt(kind.file);
        const QString folder = QFileInfo(kind.file).path();
        const QStringList names = NamesAt(folder);
        bool isSaid = false;
        {
            const Environment folderOfFault("VELLIX_FAULT_FOLDER", folder.toUtf8());
            const Environment fault(variable, value);
            isSaid = !kind.write();
        }
        EXPECT_TRUE(isSaid) << "nobody was told";
        EXPECT_TRUE(ReadAt(kind.file) == before)
            << "the old file had " << before.size() << " bytes, now " << ReadAt(kind.file).size();
        EXPECT_EQ(NamesAt(folder).join(' ').toStdString(), names.join(' ').toStdString());
    }
};

TEST_F(FullDiskFaults, AFailureAtAnyPlaceLeavesTheOldFileAndIsSaid) {
    for (const Kind& kind : Kinds()) {
        SCOPED_TRACE(kind.what);
        ASSERT_TRUE(kind.write()) << Messages();
        const QByteArray old = ReadAt(kind.file);
        kind.change();
        ASSERT_TRUE(kind.write()) << Messages();
        const int size = ReadAt(kind.file).size();
        ASSERT_GT(size, 100);
        WriteAt(kind.file, old);
        // Every sector in a long run; else the first, the last, and some between.
        const int sectors = (size + SECTOR - 1) / SECTOR;
        const int step = IsLongRun() ? 1 : std::max(1, sectors / 12);
        for (int sector = 0; sector < sectors; sector += step) {
            ExpectNothingHappens(kind, "VELLIX_FAULT_BYTES", QByteArray::number(sector * SECTOR) + " again");
        }
        ExpectNothingHappens(kind, "VELLIX_FAULT_BYTES", QByteArray::number(size - 1) + " once more");
        ExpectNothingHappens(kind, "VELLIX_FAULT_FSYNC", "1");
        ExpectNothingHappens(kind, "VELLIX_FAULT_RENAME", "1");
        EXPECT_TRUE(kind.write()) << "after the disk has room again";
    }
}

TEST_F(FullDiskFaults, ADiskThatIsReallyFullKeepsTheScene) {
    const QString disk = folder_.filePath("disk");
    QDir(folder_.path()).mkdir("disk");
    if (::mount("tmpfs", disk.toLocal8Bit().constData(), "tmpfs", 0, "size=256k") != 0) {
        GTEST_SKIP() << "no file system can be mounted here";
    }
    const struct Unmount {
        ~Unmount() { ::umount2(disk.toLocal8Bit().constData(), MNT_DETACH); }
        QString disk;
    } unmount{disk};
    for (const char* suffix : {".ma", ".lbx"}) {
        SCOPED_TRACE(suffix);
        const QString scene = disk + "/scene" + suffix;
        ASSERT_TRUE(Run("file -rename \"" + scene + "\"; file -save")) << Messages();
        const QByteArray whole = ReadAt(scene);
        // Four kilobytes are left.
        QFile filler(disk + "/filler");
        ASSERT_TRUE(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        while (filler.write(QByteArray(4096, 'x')) == 4096) {
        }
        ASSERT_TRUE(filler.resize(filler.size() - 4096));
        filler.close();
        Run("currentTime 2; qmVellixFrame -duplicate persp");
        TakesErrors();
        EXPECT_FALSE(Run("file -save"));
        EXPECT_TRUE(ReadAt(scene) == whole) << ReadAt(scene).size() << " bytes of " << whole.size();
        EXPECT_EQ(NamesAt(disk).size(), 2) << NamesAt(disk).join(' ').toStdString();
        QFile::remove(disk + "/filler");
        EXPECT_TRUE(Run("file -save")) << Messages();
        QFile::remove(scene);
    }
}

TEST_F(FullDiskFaults, AFolderWithoutRightsAndANameTooLongAreSaid) {
    ASSERT_TRUE(Run("file -rename \"" + Path("scene.ma") + "\"; file -save"));
    const QByteArray whole = Read("scene.ma");
    Run("currentTime 2; qmVellixFrame -duplicate persp");

    for (const QString& name :
         {Path(QString(300, 'n') + ".ma"), Path(QString(2500, 'm') + "/" + QString(2500, 'm') + ".ma")}) {
        TakesErrors();
        const bool isSaved = Run("file -rename \"" + name + "\"") && Run("file -save");
        EXPECT_FALSE(isSaved);
        EXPECT_TRUE(TakesErrors());
        EXPECT_EQ(Names().toStdString(), "scene.ma");
    }

    // Nobody else's rights: those of the superuser reach everywhere.
    ASSERT_TRUE(Run("file -rename \"" + Path("scene.ma") + "\""));
    QFile::setPermissions(folder_.path(), QFile::Permissions(0x7755));
    QFile::setPermissions(Path(""), QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther);
    constexpr unsigned nobody = 65534;
    if (geteuid() == 0) {
        ::setfsuid(nobody);
    }
    TakesErrors();
    const bool isSaved = Run("file -save");
    const bool isExported = Run("qmVellixExport -camera persp -file \"" + Path("shot.####.png") + "\"");
    if (geteuid() == 0) {
        ::setfsuid(0);
    }
    QFile::setPermissions(Path(""), QFile::Permissions(0x7755));
    EXPECT_FALSE(isSaved);
    EXPECT_FALSE(isExported);
    EXPECT_TRUE(TakesErrors());
    EXPECT_EQ(Names().toStdString(), "scene.ma");
    EXPECT_TRUE(Read("scene.ma") == whole);
}

TEST_F(FullDiskFaults, TheProgramEndsWithStatusOne) {
    const Lightbox program;
    program.RunScript("qmVellixNode -l -f -c persp; file -rename scene.ma; file -save;");
    const QByteArray whole = program.Read("scene.ma");
    const Environment preload("LD_PRELOAD", FULL_DISK_LIBRARY);
    const Environment folder("VELLIX_FAULT_FOLDER", program.Path("").toUtf8());
    for (const auto& [variable, value] : {std::pair<const char*, const char*>{"VELLIX_FAULT_BYTES", "4096"},
                                          {"VELLIX_FAULT_FSYNC", "1"},
                                          {"VELLIX_FAULT_RENAME", "1"}}) {
        SCOPED_TRACE(variable);
        const Environment fault(variable, value);
        const Lightbox::Result result =
            program.Run({"-file", program.Path("scene.ma"), "-command",
                         "qmVellixFrame -insert persp; currentTime 3; file -save"});
        EXPECT_EQ(result.status, 1) << result.errors.toStdString();
        EXPECT_TRUE(result.errors.contains("scene.ma")) << result.errors.toStdString();
        EXPECT_TRUE(program.Read("scene.ma") == whole);
    }
}

TEST_F(FullDiskFaults, TheSettingsAreTriedOnceAtTheEnd) {
    const Lightbox program;
    program.RunScript("print 1;"); // makes the folder
    const Environment preload("LD_PRELOAD", FULL_DISK_LIBRARY);
    const Environment folder("VELLIX_FAULT_FOLDER", program.Path("preferences").toUtf8());
    const Environment fault("VELLIX_FAULT_BYTES", "0");
    const Lightbox::Result result = program.Run({"-command", "qmVellixUtil -e -drawColor 230 20 20"});
    EXPECT_EQ(result.errors.count("vellix2.ini\" cannot be written"), 1) << result.errors.toStdString();
}

/// A program that saves one of two scenes after the other until it is killed.
class KilledSaves : public FaultFixture {
protected:
    /// Starts it and waits until it has saved so often, since the first saves take longest.
    void Begin(QProcess& program, const QString& scene, int saves) {
        program.setWorkingDirectory(Path(""));
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        program.setProcessEnvironment(environment);
        const char* const script = R"(while (1) {
            print "saving\n"; qmVellixLayer -en "Other name" 0 persp; file -save;
            print "saving\n"; qmVellixLayer -en "Name" 0 persp; file -save; })";
        program.start(LIGHTBOX_PROGRAM, {"-batch", "-prefs", folder_.filePath("prefs2"), "-file", Path(scene),
                                         "-command", script});
        ASSERT_TRUE(program.waitForStarted());
        QElapsedTimer timer;
        timer.start();
        QByteArray printed;
        while (printed.count("saving") <= saves && timer.elapsed() < 30000) {
            program.waitForReadyRead(100);
            printed += program.readAllStandardOutput();
        }
        ASSERT_GT(printed.count("saving"), saves) << program.readAllStandardError().toStdString();
    }
};

TEST_F(KilledSaves, LeaveTheOldSceneOrTheNewOne) {
    ASSERT_TRUE(Run("qmVellixNode -l -c persp"));
    Draw(12);
    std::mt19937 random(7);
    for (const QString scene : {"scene.ma", "scene.lbx"}) {
        SCOPED_TRACE(scene.toStdString());
        ASSERT_TRUE(
            Run("file -rename \"" + Path(scene) + "\"; qmVellixLayer -en \"Name\" 0 persp; file -save"));
        const QByteArray first = WithoutTime(Read(scene));
        ASSERT_TRUE(Run("qmVellixLayer -en \"Other name\" 0 persp; file -save"));
        const QByteArray second = WithoutTime(Read(scene));
        ASSERT_NE(first, second);
        int killedAmid = 0;
        int seconds = 0;
        int kills = 0;
        for (int kill = 0; kill < (IsLongRun() ? 25 : 3); ++kill) {
            QProcess program;
            ASSERT_NO_FATAL_FAILURE(Begin(program, scene, kill % 4));
            QThread::usleep(random() % 60000);
            program.kill();
            program.waitForFinished();
            const QByteArray left = WithoutTime(Read(scene));
            ASSERT_TRUE(left == first || left == second) << left.size() << " bytes after kill " << kill;
            killedAmid += Names() != scene;
            seconds += left == second;
            ++kills;
        }
        // What the kills left goes with the next save.
        ASSERT_TRUE(Run("file -force -open \"" + Path(scene) + "\"; file -save")) << Messages();
        EXPECT_EQ(Names().toStdString(), scene.toStdString()) << killedAmid << " kills left something";
        QFile::remove(Path(scene));
        std::cout << scene.toStdString() << ": " << kills << " kills left one scene " << kills - seconds
                  << " times and the other " << seconds << " times; " << killedAmid << " came amid writing\n";
    }
}

} // namespace
