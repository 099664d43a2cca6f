// docs/export_scenes.py: what its jobs write together is what one export of each scene writes.

#include "journeys/Lightbox.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>

#include <gtest/gtest.h>

namespace {

/// Runs the script in the folder of the program. Standard output and error come together.
int RunExportScenes(const Lightbox& lightbox, const QStringList& arguments, QByteArray& output) {
    QProcess python;
    python.setProcessChannelMode(QProcess::MergedChannels);
    python.setWorkingDirectory(QFileInfo(lightbox.Path("x")).path());
    python.start("python3", QStringList(VELLIX_SOURCE_FOLDER "/docs/export_scenes.py") + arguments);
    EXPECT_TRUE(python.waitForFinished(120000));
    output = python.readAll();
    return python.exitStatus() == QProcess::NormalExit ? python.exitCode() : -1;
}

} // namespace

TEST(ExportScenesJourney, JobsInAnyOrderWriteWhatOneExportWrites) {
    const Lightbox lightbox;
    lightbox.RunScript(R"(
        qmVellixNode -layer -camera persp -layerName "A" -layerState 0;
        qmVellixReplay -camera persp -file ")" VELLIX_SOURCE_FOLDER R"(/demo/rough.json";
        playbackOptions -min 1 -max 7; file -rename "one.ma"; file -type "mayaAscii"; file -save;
        qmVellixExport -file "whole/one/one.####.png";
        playbackOptions -min -3 -max 1; file -rename "b \"2\".ma"; file -save;
        qmVellixExport -file "whole/b \"2\"/b \"2\".####.png";
    )");
    QByteArray output;
    const QString program = LIGHTBOX_PROGRAM;
    ASSERT_EQ(RunExportScenes(
                  lightbox,
                  {"list", "--frames", "3", "--lightbox", program, "jobs", "out", "one.ma", "b \"2\".ma"},
                  output),
              0)
        << output.constData();
    EXPECT_EQ(output, QByteArray("5\n"));
    EXPECT_EQ(RunExportScenes(lightbox, {"check", "jobs"}, output), 1);
    EXPECT_EQ(output.count("It did not run."), 5);
    for (const char* job : {"4", "2", "5", "2", "1"}) { // one of them twice
        EXPECT_EQ(RunExportScenes(lightbox, {"run", "jobs", job}, output), 0) << output.constData();
    }

    // A scene that is not whole is no scene to export.
    const QByteArray scene = lightbox.Read("one.ma");
    lightbox.Write("one.ma", scene.left(scene.size() / 2));
    EXPECT_EQ(RunExportScenes(lightbox, {"run", "jobs", "3"}, output), 1);
    EXPECT_EQ(RunExportScenes(lightbox, {"check", "jobs"}, output), 1);
    EXPECT_EQ(output.count('\n'), 1) << output.constData();
    EXPECT_TRUE(output.startsWith("3: ") && output.contains("one.ma, frames 7 to 7: ")) << output.constData();
    lightbox.Write("one.ma", scene);
    EXPECT_EQ(RunExportScenes(lightbox, {"run", "jobs", "3"}, output), 0);
    EXPECT_EQ(RunExportScenes(lightbox, {"check", "jobs"}, output), 0) << output.constData();

    for (const QString& folder : {QStringLiteral("one"), QStringLiteral("b \"2\"")}) {
        const QByteArray whole = lightbox.ReadFolder("whole/" + folder);
        EXPECT_GT(whole.size(), 1000);
        EXPECT_EQ(lightbox.ReadFolder("out/" + folder), whole) << qPrintable(folder);
    }
    EXPECT_NE(RunExportScenes(lightbox, {"run", "jobs", "6"}, output), 0);
    EXPECT_TRUE(output.contains("1 to 5")) << output.constData();
    QDir(lightbox.Path("")).mkdir("other");
    lightbox.Write("other/one.ma", scene);
    EXPECT_NE(RunExportScenes(
                  lightbox, {"list", "--lightbox", program, "jobs", "out", "one.ma", "other/one.ma"}, output),
              0);
    EXPECT_TRUE(output.contains("the same pictures")) << output.constData();
}

TEST(ExportScenesJourney, AJobThatIsEndedInItsMiddleIsNamed) {
    const Lightbox lightbox;
    lightbox.Write("slow", "#!/bin/sh\nexec sleep 100\n");
    QFile::setPermissions(lightbox.Path("slow"), QFile::ReadOwner | QFile::ExeOwner);
    lightbox.Write("jobs", "{\"lightbox\": \"" + lightbox.Path("slow").toUtf8() +
                               "\", \"scene\": \"a.ma\", \"camera\": \"\", \"start\": 1, \"end\": 2, "
                               "\"pictures\": \"" +
                               lightbox.Path("out/a.#.png").toUtf8() + "\"}\n");
    QDir(lightbox.Path("")).mkdir("jobs.d");
    QDir(lightbox.Path("")).mkdir("tmp");
    lightbox.Write("jobs.d/1", "0\n"); // of an earlier run
    QProcess python;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("TMPDIR", lightbox.Path("tmp"));
    python.setProcessEnvironment(environment);
    python.start("python3",
                 {VELLIX_SOURCE_FOLDER "/docs/export_scenes.py", "run", lightbox.Path("jobs"), "1"});
    const QDir preferences(lightbox.Path("tmp"));
    for (int i = 0; i < 1000 && preferences.entryList(QDir::Dirs | QDir::NoDotAndDotDot).isEmpty(); ++i) {
        python.waitForFinished(10);
    }
    python.terminate();
    ASSERT_TRUE(python.waitForFinished(10000));
    EXPECT_EQ(python.exitCode(), 128 + 15);
    EXPECT_EQ(preferences.entryList(QDir::Dirs | QDir::NoDotAndDotDot), QStringList());
    QByteArray output;
    EXPECT_EQ(RunExportScenes(lightbox, {"check", "jobs"}, output), 1);
    EXPECT_EQ(output, QByteArray("1: a.ma, frames 1 to 2: It was started and did not end.\n"));
}
