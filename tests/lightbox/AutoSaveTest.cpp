// Automatic saves: their settings, files and rotation, and what the next session finds.

#include "formats/AutoSave.h"

#include "SceneFileFixture.h"
#include "formats/FileError.h"
#include "formats/SceneFiles.h"
#include "scene/EventBus.h"
#include "scene/OptionVars.h"
#include "scene/UndoQueue.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <csignal>
#include <gmock/gmock.h>
#include <sys/resource.h>

using lightbox::AutoSave;
using lightbox::FileError;
using lightbox::SessionRecord;
using ::testing::HasSubstr;

namespace {

class AutoSaveTest : public SceneFileFixture {
protected:
    AutoSaveTest() { Run("autoSave -folder " + Quoted("saves")); }

    AutoSave& Saves() { return host_.files().autoSave(); }
    QStringList Files() const {
        return QDir(QString::fromStdString(Path("saves"))).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
    QStringList Records() const { return QDir(prefs_.filePath("sessions")).entryList({"*.session"}); }
    /// Changes the scene and saves it automatically.
    std::string Perform() {
        Run("createNode transform");
        return Saves().Perform();
    }
    /// A session that has saved these files and was killed: a record whose lock nobody holds.
    void LeaveBehind(const SessionRecord::Content& content) {
        SessionRecord killed(prefs_.path().toStdString());
        const QStringList before = Records();
        killed.Write(content);
        for (const QString& record : Records()) {
            if (!before.contains(record)) {
                QFile::copy(prefs_.filePath("sessions/" + record), prefs_.filePath("sessions/left" + record));
            }
        }
    }
    void SetTime(const std::string& name, int minute) const {
        QFile file(QString::fromStdString(Path(name)));
        ASSERT_TRUE(file.open(QIODevice::ReadWrite)) << name;
        file.setFileTime(QDateTime(QDate(2020, 5, 4), QTime(12, minute)), QFileDevice::FileModificationTime);
    }
    std::string NameOf(const std::string& path) const {
        return QFileInfo(QString::fromStdString(path)).fileName().toStdString();
    }
};

TEST_F(AutoSaveTest, SettingsAreCheckedAndKept) {
    Run("autoSave -folder \"\"");
    const std::string preferences = prefs_.path().toStdString();
    const std::string workspace = QDir::currentPath().toStdString() + "/";
    const std::pair<std::string, std::string> rows[] = {
        {"autoSave -q -en", "int 1"},
        {"autoSave -q -int", "float 600"},
        {"autoSave -q -lim", "int 1"},
        {"autoSave -q -df", "string " + preferences + "/autosave/"},
        {"autoSave -dst 0; autoSave -q -df", "string " + workspace + "autosave/"},
        {"putenv MAYA_AUTOSAVE_FOLDER \"/somewhere/\"; autoSave -dst 2; autoSave -q -df",
         "string /somewhere/"},
        {"autoSave -dst 1 -fol \"below\"; autoSave -q -df", "string " + workspace + "below/"},
        {"autoSave -en 0 -int 90.5 -lim 0 -max 7 -prm 1; autoSave -q -int", "float 90.5"},
    };
    for (const auto& [mel, answer] : rows) {
        EXPECT_EQ(Typed(mel), answer) << mel;
    }
    for (const char* refused : {"-int 0", "-int 1e9", "-max 0", "-dst 3", "-max 3 -dst -1", "-df"}) {
        EXPECT_NE(ErrorOf(std::string("autoSave ") + refused), "none") << refused;
    }
    // As the next session reads them, and with what a person may have written there.
    lightbox::OptionVars variables(preferences);
    const lightbox::AutoSaveSettings settings = lightbox::AutoSaveSettings::Load(variables);
    EXPECT_EQ(settings, Saves().Settings());
    EXPECT_EQ(settings.maxBackups, 7);
    EXPECT_TRUE(settings.prompts && !settings.isEnabled && !settings.limitsBackups);
    variables.Set("autoSaveInterval", -5);
    variables.Set("autoSaveMaxBackups", std::string("many"));
    variables.Set("autoSaveDestination", 17);
    const lightbox::AutoSaveSettings odd = lightbox::AutoSaveSettings::Load(variables);
    EXPECT_EQ(odd.interval, 600.0);
    EXPECT_EQ(odd.maxBackups, 10);
    EXPECT_EQ(static_cast<int>(odd.destination), 1);
}

TEST_F(AutoSaveTest, SavingLeavesTheSceneAsItIs) {
    Save("shot.ma");
    EXPECT_FALSE(Saves().IsNeeded());
    BuildScene();
    int events = 0;
    for (const char* event : {"PreSceneSaved", "SceneSaved", "SetModified"}) {
        host_.events().AddCallback(event, [&] { ++events; });
    }
    const std::string saved = Read("shot.ma");
    const std::vector<std::string> undo = host_.undo().Names();
    ASSERT_TRUE(Saves().IsNeeded());
    EXPECT_EQ(NameOf(Saves().Perform()), "shot.0001.ma");
    EXPECT_EQ(events, 0);
    EXPECT_EQ(host_.undo().Names(), undo);
    EXPECT_EQ(host_.files().SceneName(), Path("shot.ma"));
    EXPECT_TRUE(host_.files().IsModified());
    EXPECT_EQ(Read("shot.ma"), saved);
    EXPECT_EQ(ReadScene("saves/shot.0001.ma"), SceneText());

    // Only what is in no file is saved.
    EXPECT_FALSE(Saves().IsNeeded());
    Run("autoSave -perform");
    EXPECT_EQ(Files(), QStringList{"shot.0001.ma"});
    Run("undo");
    EXPECT_TRUE(Saves().IsNeeded());
    Run("redo");
    EXPECT_FALSE(Saves().IsNeeded());
    Run("file -modified true");
    EXPECT_TRUE(Saves().IsNeeded()) << "a change that the undo queue does not know";
    Run("file -save");
    EXPECT_FALSE(Saves().IsNeeded());
    Run("file -f -new; undoInfo -state off; createNode transform");
    EXPECT_TRUE(Saves().IsNeeded());
}

TEST_F(AutoSaveTest, TheOldestFilesOfTheSceneMakePlace) {
    QDir().mkpath(QString::fromStdString(Path("saves")));
    const QStringList strangers = {"other.0001.ma", "untitled.1.ma", "untitled.0001.txt",
                                   "untitled.x.0001.ma"};
    for (const QString& name : strangers) {
        Write("saves/" + name.toStdString(), "x");
    }
    const auto own = [&] {
        QStringList files = Files();
        for (const QString& name : strangers) {
            EXPECT_TRUE(files.removeOne(name)) << name.toStdString();
        }
        return files;
    };
    Run("autoSave -max 3");
    for (int i = 0; i < 5; ++i) {
        Perform();
    }
    EXPECT_EQ(own(), (QStringList{"untitled.0003.ma", "untitled.0004.ma", "untitled.0005.ma"}));
    Run("autoSave -lim off");
    Perform();
    EXPECT_EQ(own().size(), 4);
    Run("autoSave -lim on -max 1; file -type \"lightboxBinary\"");
    EXPECT_EQ(NameOf(Perform()), "untitled.0007.lbx") << "one count for both formats";
    EXPECT_EQ(own(), QStringList{"untitled.0007.lbx"});
    // The number grows beyond four digits, and a name that leaves no place for it is cut.
    Write("saves/untitled.9999.ma", "x");
    EXPECT_EQ(NameOf(Perform()), "untitled.10000.lbx");
    const std::string longName(248, 'n');
    Run("file -rename " + Quoted(longName + ".ma"));
    EXPECT_EQ(NameOf(Perform()), longName.substr(0, 200) + ".0001.ma");
}

TEST_F(AutoSaveTest, OtherSessionsKeepTheirFiles) {
    Run("autoSave -max 1");
    const std::string mine = Perform();
    for (const char* name : {"untitled.0002.ma", "untitled.0003.ma"}) {
        Write(std::string("saves/") + name, "x");
    }
    SessionRecord running(prefs_.path().toStdString());
    running.Write({"", false, {Path("saves/untitled.0002.ma")}});
    LeaveBehind({"", false, {Path("saves/untitled.0003.ma")}});
    // A save that was killed leaves the reserved file and the one that it was writing.
    Write("saves/untitled.0004.ma", "");
    Write("saves/.untitled.0004.ma.lightbox-1.part", "//Maya");
    Perform();
    EXPECT_EQ(Files(), (QStringList{"untitled.0002.ma", "untitled.0003.ma", "untitled.0005.ma"}));
    const AutoSave::Unfinished found = Saves().FindUnfinished();
    ASSERT_TRUE(found.record);
    EXPECT_EQ(NameOf(found.file), "untitled.0003.ma") << "neither its own nor that of a running program";
    EXPECT_FALSE(Saves().FindUnfinished().record) << "one program at a time has it";
}

TEST_F(AutoSaveTest, WhatIsLeftBehindIsFoundUntilItIsOfNoUse) {
    Save("scene.ma");
    for (const char* name : {"a.0001.ma", "a.0002.ma", "b.0001.ma"}) {
        Run("file -f -exportAll " + Quoted(name));
    }
    Write("empty.ma", "");
    struct Row {
        const char* what;
        SessionRecord::Content content;
        const char* found; ///< empty for nothing
        bool stays;
    };
    SetTime("a.0001.ma", 1);
    SetTime("a.0002.ma", 2);
    SetTime("scene.ma", 3);
    SetTime("b.0001.ma", 4);
    const auto in = [this](const char* name) { return Path(name); };
    const Row rows[] = {
        {"an untitled scene", {"", false, {in("a.0001.ma"), in("a.0002.ma")}}, "a.0002.ma", true},
        {"killed while it saved",
         {"", false, {in("a.0001.ma"), in("a.0002.ma"), in("empty.ma")}},
         "a.0002.ma",
         true},
        {"later than the scene", {in("scene.ma"), false, {in("b.0001.ma")}}, "b.0001.ma", true},
        {"a scene that is gone", {in("none.ma"), false, {in("a.0001.ma")}}, "a.0001.ma", true},
        {"the scene was saved since", {in("scene.ma"), false, {in("a.0002.ma")}}, "", false},
        {"no file is left", {"", false, {in("none.0001.ma")}}, "", false},
        {"the disk is not mounted", {"", false, {in("mounted/a.0001.ma")}}, "", true},
        {"an empty record", {}, "", false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        LeaveBehind(row.content);
        {
            const AutoSave::Unfinished found = Saves().FindUnfinished();
            EXPECT_EQ(NameOf(found.file), row.found);
        }
        EXPECT_EQ(Records().size(), row.stays ? 1 : 0);
        EXPECT_EQ(NameOf(Saves().FindUnfinished().file), row.found) << "nothing was answered";
        QDir(prefs_.filePath("sessions")).removeRecursively();
    }
    LeaveBehind(rows[0].content);
    LeaveBehind(rows[2].content);
    LeaveBehind(rows[3].content);
    for (const char* latest : {"b.0001.ma", "a.0002.ma", "a.0001.ma"}) {
        const AutoSave::Unfinished found = Saves().FindUnfinished();
        ASSERT_TRUE(found.record);
        EXPECT_EQ(NameOf(found.file), latest);
        found.record->Remove();
    }
    EXPECT_EQ(QDir(prefs_.filePath("sessions")).entryList(QDir::Files), QStringList()) << "no lock is left";
}

TEST_F(AutoSaveTest, ARecoveredSceneHasItsNameAndIsUnsaved) {
    Save("scene.ma");
    const std::string saved = Read("scene.ma");
    Run("createNode transform -n \"drawn\"");
    const std::string file = Saves().Perform();
    EXPECT_EQ(Records().size(), 1);
    LeaveBehind({Path("scene.ma"), false, {file}});
    Run("file -f -new");
    EXPECT_EQ(Records().size(), 1) << "the changes were given up";

    AutoSave::Unfinished found = Saves().FindUnfinished();
    ASSERT_TRUE(found.record);
    Saves().Recover(std::move(found));
    EXPECT_EQ(Typed("objExists drawn"), "int 1");
    EXPECT_EQ(Typed("file -q -sn"), "string " + Path("scene.ma"));
    EXPECT_EQ(Typed("file -q -mf"), "int 1");
    EXPECT_FALSE(Saves().IsNeeded()) << "it is in the file that it came from";
    EXPECT_EQ(Read("scene.ma"), saved);
    EXPECT_EQ(Records().size(), 1) << "now this session's own";
    EXPECT_FALSE(Saves().FindUnfinished().record);
    Run("file -save");
    EXPECT_EQ(Records().size(), 0);
    EXPECT_THAT(Read("scene.ma"), HasSubstr("drawn"));

    // What the scene's file holds and could not be read must not be lost either.
    LeaveBehind({Path("scene.ma"), true, {file}});
    SetTime("scene.ma", 1);
    Saves().Recover(Saves().FindUnfinished());
    EXPECT_THAT(ErrorOf("file -save"), HasSubstr("was read with errors"));
    Run("file -f -new");

    // A file that cannot be opened leaves the scene, and stays on offer.
    Write("saves/broken.0001.ma", "rabbit");
    LeaveBehind({"", false, {Path("saves/broken.0001.ma")}});
    Run("createNode transform -n \"here\"");
    EXPECT_THROW(Saves().Recover(Saves().FindUnfinished()), FileError);
    EXPECT_EQ(Typed("objExists here"), "int 1");
    EXPECT_TRUE(Saves().FindUnfinished().record);
}

TEST_F(AutoSaveTest, AFailureLeavesTheOlderFiles) {
    Run("fileInfo \"padding\" \"" + std::string(300000, 'x') + "\"; autoSave -max 1");
    const std::string first = Perform();
    Run("createNode transform -n \"more\"");
    {
        // As on a full disk. The record is small and is still written.
        rlimit whole{};
        getrlimit(RLIMIT_FSIZE, &whole);
        const auto handler = std::signal(SIGXFSZ, SIG_IGN);
        rlimit small = whole;
        small.rlim_cur = 100000;
        setrlimit(RLIMIT_FSIZE, &small);
        EXPECT_THROW(Saves().Perform(), FileError);
        setrlimit(RLIMIT_FSIZE, &whole);
        std::signal(SIGXFSZ, handler);
    }
    EXPECT_EQ(Files(), QStringList{"untitled.0001.ma"});
    EXPECT_TRUE(Saves().IsNeeded()) << "the next try saves it";
    Write("taken", "");
    Run("autoSave -folder " + Quoted("taken/saves"));
    EXPECT_THAT(ErrorOf("autoSave -perform"), HasSubstr("taken/saves"));
    Run("autoSave -folder " + Quoted("saves"));
    Saves().Perform();
    EXPECT_EQ(Files(), QStringList{"untitled.0002.ma"});

    // Without its record a save is not offered, which has to be said, but it is there.
    QDir(prefs_.filePath("sessions")).removeRecursively();
    Run("file -f -new");
    QFile blocker(prefs_.filePath("sessions"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    EXPECT_THAT(ErrorOf("createNode transform; autoSave -perform"), HasSubstr("would not be offered"));
    EXPECT_EQ(Files(), QStringList{"untitled.0003.ma"});
}

TEST_F(AutoSaveTest, WhatIsSavedOrGivenUpIsNotOffered) {
    for (const char* end : {"file -rename \"%1\"; file -save", "file -f -new", "file -f -open \"%1\""}) {
        Perform();
        EXPECT_EQ(Records().size(), 1);
        Run(QString(end).replace("%1", QString::fromStdString(Path("end.ma"))).toStdString());
        EXPECT_EQ(Records().size(), 0) << end;
    }
    Perform();
    EXPECT_NE(ErrorOf("file -f -open " + Quoted("none.ma")), "none");
    EXPECT_EQ(Records().size(), 1) << "the scene is still here";
}

TEST_F(AutoSaveTest, WhatIsLeftForTheNextStartIsTheSceneOfNow) {
    Write("cut.ma",
          "//Maya ASCII 2018 scene\ncreateNode transform -n \"whole\";\nsetAttr \".t\" -type \"doub");
    EXPECT_THAT(ErrorOf("file -f -open " + Quoted("cut.ma")), HasSubstr("Errors while reading"));
    Perform();
    Run("createNode transform -n \"last\"");
    Saves().LeaveForNextStart();
    const AutoSave::Unfinished found = Saves().FindUnfinished();
    ASSERT_TRUE(found.record);
    EXPECT_THAT(Read("saves/" + NameOf(found.file)), HasSubstr("last"));
    EXPECT_TRUE(found.record->GetContent().hasFaults) << "what could not be read is only in the scene's file";
}

} // namespace
