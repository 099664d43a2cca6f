// The program as a shell sees it: its options, what it prints and how it ends.

#include "journeys/Lightbox.h"

#include <QFileInfo>
#include <QProcess>

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using ::testing::HasSubstr;

namespace {

struct Case {
    QStringList arguments;
    int status;
    const char* output; ///< whole
    const char* errors; ///< a part
};

} // namespace

TEST(ProgramJourney, OptionsOutputAndStatus) {
    const Lightbox lightbox;
    lightbox.Write("good.mel", "print \"script\\n\";");
    lightbox.Write("bad.mel", "print \"one\\n\";\n\n  setAttr nobody.tx 1;\nprint \"two\\n\";");
    lightbox.Write("broken.mel", "print \"one\\n\";\nif (1) {\n");
    lightbox.Write("scene.ma",
                   "//Maya ASCII 2018 scene\ncreateNode transform -n \"hero\";\n// End of scene.ma\n");
    lightbox.Write("faulty.ma",
                   "//Maya ASCII 2018 scene\ncreateNode transform -n \"hero\";\n\tsetAttr \".tx\" \"x\";\n"
                   "// End of faulty.ma\n");
    const Case cases[] = {
        {{"-command", "print \"hi\\n\""}, 0, "hi\n", ""},
        {{"-script", "good.mel", "-command", "print \"command\\n\"", "-script", "good.mel"},
         0,
         "script\ncommand\nscript\n",
         ""},
        {{"-file", "scene.ma", "-command", "print `ls hero`"}, 0, "hero\n", ""},
        {{"scene.ma", "-command", "print `ls hero`"}, 0, "hero\n", ""},
        {{"-command", "print `about -batch`"}, 0, "1", ""},
        {{"-script", "bad.mel"}, 1, "one\n", "bad.mel line 3.3: No object matches name: nobody.tx"},
        {{"-script", "bad.mel", "-command", "print \"no\""}, 1, "one\n", "// Error: "},
        {{"-script", "broken.mel"}, 1, "", "broken.mel line 2.8: Syntax error"},
        {{"-script", "none.mel"}, 1, "", "none.mel"},
        {{"-file", "none.ma", "-command", "print \"no\""}, 1, "", "// Error: File not found: "},
        {{"-file", "faulty.ma"}, 1, "", "faulty.ma line 3.2: A number was expected"},
        {{"-command", "warning \"careful\""}, 0, "", "// Warning: careful //"},
        {{"-command", "catch(`error \"caught\"`); print \"on\\n\""}, 0, "on\n", "caught"},
        {{"-command", "evalDeferred \"print \\\"later\\\\n\\\"\"; print \"now\\n\""}, 0, "now\nlater\n", ""},
        {{"-command", "evalDeferred \"error \\\"late\\\"\""}, 1, "", "late"},
        {{"-command", "print \"a\\n\"; quit -force -exitCode 7; print \"b\\n\""}, 7, "a\n", ""},
        {{"-command", "catch(`quit -exitCode 3`); print \"b\\n\"", "-command", "print \"c\\n\""}, 3, "", ""},
        {{"-command", "quit"}, 0, "", ""},
        {{"-version"}, 0, "lightbox 2.5.4\n", ""},
        {{"-nonsense"}, 1, "", "Unknown option 'nonsense'. \"lightbox -help\""},
        {{"-prefs", "/proc/nowhere"},
         0,
         "",
         "neither preferences nor the log are kept. Name another one with -prefs."},
        {{"-command", "qmVellixReplay -camera persp -file \"none.json\""},
         1,
         "",
         "// Error: [Vellix2] Cannot replay \"none.json\": the file does not exist //"},
        {{"-script"}, 1, "", "Missing value after '-script'. \"lightbox -help\" lists the options."},
        {{"a.ma", "b.ma"}, 1, "", "More than one scene"},
        {{"-file", ""}, 1, "", "-file needs a path."},
        {{"-demo", "/proc/nowhere"}, 1, "", "cannot be written to. Name another one with -demo."},
        {{"--version"}, 0, "lightbox 2.5.4\n", ""},
        {{"-noAutoloadPlugins", "-command", "print `pluginInfo -q -listPlugins`"}, 0, "", ""},
        {{"-command", "print `pluginInfo -q -listPlugins`"}, 0, "vellix2\n", ""},
    };
    for (const Case& test : cases) {
        const auto result = lightbox.Run(test.arguments);
        const std::string line = test.arguments.join(' ').toStdString();
        EXPECT_EQ(result.status, test.status) << line << "\n" << result.errors.toStdString();
        EXPECT_EQ(result.output.toStdString(), test.output) << line;
        EXPECT_THAT(result.errors.toStdString(), HasSubstr(test.errors)) << line;
        EXPECT_LE(result.errors.count("Cannot replay"), 1) << "an error is said once: " << line;
        if (test.status == 0 && !*test.errors) {
            EXPECT_EQ(result.errors.toStdString(), "") << line;
        }
    }
    for (const char* help : {"-help", "--help", "-h"}) {
        EXPECT_TRUE(lightbox.Run({help}).output.startsWith("usage: lightbox")) << help;
    }
    EXPECT_TRUE(lightbox.Read("preferences/lightbox.log").contains("// Error: file: bad.mel line 3.3"));
}

TEST(ProgramJourney, WithoutADisplayItSaysSo) {
    for (const auto& [variable, value] : {std::pair("DISPLAY", ""), std::pair("DISPLAY", ":4711"),
                                          std::pair("QT_QPA_PLATFORM", "offscreen")}) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* const display : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"}) {
            environment.remove(display);
        }
        environment.insert(variable, value);
        QProcess program;
        program.setProcessEnvironment(environment);
        program.start(LIGHTBOX_PROGRAM, {"-command", "print 1"});
        ASSERT_TRUE(program.waitForFinished(60000)) << variable << "=" << value;
        EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(program.exitCode(), 1);
        EXPECT_EQ(
            program.readAllStandardError(),
            "lightbox: There is no display to open a window on. With -batch it runs scripts without one.\n");
        EXPECT_EQ(program.readAllStandardOutput(), "");
    }
}

TEST(ProgramJourney, PluginsAreLoadedUnloadedAndFoundByPath) {
    const Lightbox lightbox;
    const auto result = lightbox.RunScript(R"(
        string $path = `pluginInfo -q -path vellix2`;
        int $round;
        for ($round = 0; $round < 50; $round++) {
            qmVellixNode -l -c persp; file -f -new;
            unloadPlugin vellix2; loadPlugin -qt vellix2;
        }
        unloadPlugin vellix2; loadPlugin -qt $path; print (`pluginInfo -q -version vellix2` + "\n");
        qmVellixNode; unloadPlugin -force vellix2; print (`objExists vellixShape` + "\n");
    )");
    EXPECT_EQ(result.output, "2.5.4\n1\n");
    EXPECT_TRUE(QFileInfo(lightbox.Path("preferences/vellix2.ini")).isFile())
        << "settings are written on unloading";

    // A scene gets the plug-in that it needs, unless the user wants none.
    lightbox.RunScript("qmVellixNode -l -c persp -ln \"Rough\"; file -rename \"d.ma\"; file -save;");
    const QStringList ask{"-file", "d.ma", "-command",
                          "print `pluginInfo -q -listPlugins`; file -rename \"e.ma\"; file -save"};
    EXPECT_EQ(lightbox.Run(ask).output, "vellix2\n");
    const auto without = lightbox.Run(QStringList{"-noAutoloadPlugins"} + ask);
    EXPECT_EQ(without.output, "");
    EXPECT_THAT(without.errors.toStdString(),
                HasSubstr("Not known here: the plug-in vellix2; the node type qmVellix."));
    EXPECT_TRUE(lightbox.ReadDrawing("e.ma") == lightbox.ReadDrawing("d.ma"));
}

TEST(ProgramJourney, SignalsAndClosedPipesAreHarmless) {
    const Lightbox lightbox;
    lightbox.Write("long.mel", "file -rename \"a.ma\"; file -save; print \"going\\n\"; while (1) {}");
    QProcess program;
    program.setWorkingDirectory(lightbox.Path("."));
    const QStringList options{"-batch", "-prefs", lightbox.Path("preferences")};
    program.start(LIGHTBOX_PROGRAM,
                  options + QStringList{"-script", "long.mel", "-command", "print \"more\\n\""});
    QByteArray output;
    while (!output.contains("going") && program.waitForReadyRead(60000)) {
        output += program.readAllStandardOutput();
    }
    ASSERT_EQ(::kill(static_cast<pid_t>(program.processId()), SIGINT), 0);
    ASSERT_TRUE(program.waitForFinished(60000));
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 1);
    EXPECT_THAT(program.readAllStandardError().toStdString(), HasSubstr("interrupted"));
    EXPECT_EQ(program.readAllStandardOutput(), "");
    EXPECT_TRUE(QFileInfo(lightbox.Path("preferences/vellix2.ini")).isFile()) << "plug-ins end as always";

    lightbox.Write("chatty.mel", "int $i; for ($i = 0; $i < 100000; $i++) print \"line after line\\n\"; "
                                 "file -rename \"written.ma\"; file -save;");
    QProcess reader;
    reader.setStandardOutputFile(QProcess::nullDevice());
    QProcess writer;
    writer.setWorkingDirectory(lightbox.Path("."));
    writer.setStandardOutputProcess(&reader);
    writer.start(LIGHTBOX_PROGRAM, options + QStringList{"-script", "chatty.mel"});
    reader.start("true", QStringList());
    ASSERT_TRUE(writer.waitForFinished(120000));
    reader.waitForFinished();
    EXPECT_EQ(writer.exitStatus(), QProcess::NormalExit);
    EXPECT_TRUE(QFileInfo(lightbox.Path("written.ma")).isFile());
}
