#include "MelFixture.h"
#include "faults/DiskFault.h"
#include "mel/ScriptJobs.h"
#include "scene/EventBus.h"
#include "scene/IdleQueue.h"
#include "scene/OptionVars.h"
#include "text/Quoted.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace {

class MelCommandsTest : public MelFixture {
protected:
    std::string Path(const char* name) const {
        return files_.filePath(QString::fromUtf8(name)).toStdString();
    }
    void Write(const char* name, const char* text) {
        QFile file(files_.filePath(QString::fromUtf8(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    QTemporaryDir files_;
};

TEST_F(MelCommandsTest, ComputeAndCutTexts) {
    Run("string $buffer[]; string $abc[] = {\"a\", \"b\", \"c\", \"b\"};");
    const struct {
        const char* text;
        const char* result;
    } rows[] = {
        {"abs(-3)", "int 3"},
        {"abs(-2.5)", "float 2.5"},
        {"min(2, 3.5)", "float 2"},
        {"max(2, 3)", "int 3"},
        {"clamp(0, 10, 12)", "int 10"},
        {"floor(-1.5) + ceil(1.2) + trunc(-1.9)", "float -1"},
        {"sign(-4)", "float -1"},
        {"pow(2, 10)", "float 1024"},
        {"sqrt(2)", "float 1.414213562"},
        {"atan2(1, 1)", "float 0.7853981634"},
        {"hypot(3, 4)", "float 5"},
        {"deg_to_rad(180)", "float 3.141592654"},
        {"linstep(0, 10, 2.5)", "float 0.25"},
        {"smoothstep(0, 1, 0.25)", "float 0.15625"},
        {"dot(<<1, 2, 3>>, <<4, 5, 6>>)", "float 32"},
        {"cross(<<1, 0, 0>>, <<0, 1, 0>>)", "vector <<0, 0, 1>>"},
        {"mag(<<3, 4, 0>>)", "float 5"},
        {"unit(<<0, 2, 0>>)", "vector <<0, 1, 0>>"},
        {"angle(<<1, 0, 0>>, <<0, 1, 0>>)", "float 1.570796327"},
        {"rot(<<1, 0, 0>>, <<0, 0, 5>>, deg_to_rad(90)) * <<0, 1, 0>>", "float 1"},
        {"seed(7); float $r = rand(1); seed(7); $r == rand(1) && $r >= 0 && $r < 1", "int 1"},
        {"float $q = rand(5, 6); $q >= 5 && $q < 6", "int 1"},
        {"size(\"h\xc3\xa9llo\")", "int 5"},
        {"substring(\"h\xc3\xa9llo\", 2, 3)", "string \xc3\xa9l"},
        {"substring(\"abc\", 3, 9)", "string c"},
        {"substring(\"abc\", 3, 2)", "string "},
        {"match(\"[0-9]+\", \"ab12cd34\")", "string 12"},
        {"match(\"^x\", \"abc\")", "string "},
        {"gmatch(\"persp1\", \"per*[0-9]\")", "int 1"},
        {"gmatch(\"abcabd\", \"a*b?\")", "int 1"},
        {"gmatch(\"abc\", \"ab\")", "int 0"},
        {"substitute(\"[0-9]+\", \"ab12cd34\", \"-\")", "string ab-cd34"},
        {"substituteAllString(\"a.b.c\", \".\", \"..\")", "string a..b..c"},
        {"strip(\"  a b\\n\")", "string a b"},
        {"toupper(\"a\xc3\xa9\") + tolower(\"B\")", "string A\xc3\x89"
                                                    "b"},
        {"startsWith(\"persp\", \"per\") + endsWith(\"persp\", \"x\")", "int 1"},
        {"startString(\"abc\", 2) + endString(\"abc\", 1)", "string abc"},
        {"capitalizeString(\"vellix\")", "string Vellix"},
        {"strcmp(\"a\", \"b\")", "int -1"},
        {"tokenize(\"a  b c\", $buffer) + size($buffer)", "int 6"},
        {"tokenize(\"a/b:c\", \"/:\", $buffer); $buffer", "string[] a b c"},
        {"stringArrayToString({\"a\", \"b\"}, \", \")", "string a, b"},
        {"stringToStringArray(\"a,b;c\", \",;\")", "string[] a b c"},
        {"stringArrayContains(\"b\", $abc)", "int 1"},
        {"stringArrayCount(\"b\", $abc)", "int 2"},
        {"stringArrayRemove({\"b\"}, $abc)", "string[] a c"},
        {"stringArrayRemoveDuplicates($abc)", "string[] a b c"},
        {"stringArrayCatenate({\"x\"}, $abc)", "string[] x a b c b"},
        {"stringArrayFind(\"b\", 2, $abc)", "int 3"},
        {"string $more[] = {\"m\"}; appendStringArray($more, $abc, 2); $more", "string[] m a b"},
        {"stringArrayInsertAtIndex(1, $more, \"i\"); stringArrayRemoveAtIndex(0, $more); $more",
         "string[] i a b"},
        {"sort({3, 1, 2})", "int[] 1 2 3"},
        {"sort({\"b\", \"a\"})", "string[] a b"},
        {"clear $more; size($more)", "int 0"},
        {"formValidObjectName(\"2 b\")", "string _2_b"},
        {"encodeString(\"a\\\"b\\n\")", "string a\\\"b\\n"},
        {"dirname(\"/a/b.mel\") + basename(\"/a/b.mel\", \".mel\") + fileExtension(\"b.mel\")",
         "string /abmel"},
        {"whatIs(\"print\")", "string Command"},
        {"whatIs(\"$abc\")", "string string[] variable"},
        {"whatIs(\"nothing\")", "string Unknown"},
        {"exists(\"print\") + exists(\"nothing\")", "int 1"},
        {"about -batch", "int 1"},
        {"putenv(\"MEL_TEST\", \"v\"); getenv(\"MEL_TEST\")", "string v"},
        {"endsWith(`internalVar -userPrefDir`, \"/\")", "int 1"},
        {"timerX() > 0 && timerX(\"-startTime\", timerX()) < 5", "int 1"},
        {"size(`date -format \"YYYY-MM-DD hh:mm:ss\"`)", "int 19"},
    };
    for (const auto& row : rows) {
        try {
            EXPECT_EQ(Typed(row.text), row.result) << row.text;
        } catch (const lightbox::mel::Error& error) {
            ADD_FAILURE() << row.text << "\n" << error.Described();
        }
    }
    EXPECT_EQ(ErrorOf("match(\"(\", \"a\")"), "line 1.1: Invalid regular expression: \"(\".");
    EXPECT_EQ(ErrorOf("sqrt(-1)"), "line 1.1: The argument of \"sqrt\" is out of range.");
}

TEST_F(MelCommandsTest, WriteAndReadFiles) {
    Run("string $path = " + lightbox::Quoted(Path("t.txt")) + ";");
    EXPECT_EQ(Typed("int $f = fopen($path, \"w\"); fprint $f \"one two\\n\"; fprint $f {1, 2}; fclose $f;"
                    "$f = fopen($path, \"r\"); string $line = fgetline($f);"),
              "string one two\n");
    EXPECT_EQ(Typed("fgetword($f) + fgetline($f) + fgetline($f) + feof($f)"), "string 12\n1");
    EXPECT_EQ(Typed("frewind $f; string $w = fgetword($f); fclose $f; $w"), "string one");
    EXPECT_EQ(ErrorOf("fgetline($f)"), "line 1.1: The file number 2 is not an open file.");
    EXPECT_EQ(Typed("fopen(\"/no/such/folder/x\", \"r\")"), "int 0");
    EXPECT_EQ(Typed("string $to = $path + \".copy\"; `sysFile -copy $to $path` + `filetest -f $to`"),
              "int 2");
    EXPECT_EQ(Typed("sysFile -copy $path $path; filetest -s $path"), "int 1");
    EXPECT_EQ(Typed("getFileList -folder " + lightbox::Quoted(files_.path().toStdString())),
              "string[] t.txt t.txt.copy");
    EXPECT_EQ(Typed("`sysFile -delete $to` + `filetest -f $to`"), "int 1");
}

TEST_F(MelCommandsTest, AFullDiskIsAnErrorOfWhatWrites) {
    Write("t.txt", "what was there");
    Write("from.txt", "longer than what was there");
    const DiskFault fault = DiskFault::Full(files_.path(), 4);
    EXPECT_EQ(
        Typed("sysFile -copy " + lightbox::Quoted(Path("t.txt")) + " " + lightbox::Quoted(Path("from.txt"))),
        "int 0");
    EXPECT_EQ(Typed("$f = fopen(" + lightbox::Quoted(Path("t.txt")) + ", \"r\"); fgetline($f)"),
              "string what was there");
    EXPECT_THAT(ErrorOf("$f = fopen(" + lightbox::Quoted(Path("new.txt")) +
                        ", \"w\"); fprint $f \"a line\"; fclose $f"),
                ::testing::HasSubstr("could not be written"));
}

TEST_F(MelCommandsTest, SourceScripts) {
    Write("s.mel", "int $fromFile = 5;\nproc int own() { return 7; }\n"
                   "global proc int shown() { return own() + 1; }\n");
    Run("source " + lightbox::Quoted(Path("s.mel")));
    EXPECT_EQ(Typed("$fromFile + shown()"), "int 13");
    EXPECT_EQ(ErrorOf("own()"), "line 1.1: Cannot find procedure \"own\".");
    EXPECT_EQ(Typed("whatIs shown"), "string Mel procedure found in: " + Path("s.mel"));

    Write("bad.mel", "print \"ran\";\n  int $x = ;\n");
    EXPECT_EQ(ErrorOf("source " + lightbox::Quoted(Path("bad.mel"))),
              "file: " + Path("bad.mel") + " line 2.12: Syntax error: unexpected \";\".");
    EXPECT_EQ(Output(), "");
    Write("fails.mel", "print \"ran\";\nint $y = 1 / 0;\n");
    EXPECT_EQ(ErrorOf("source " + lightbox::Quoted(Path("fails.mel"))),
              "file: " + Path("fails.mel") + " line 2.12: Division by zero.");
    EXPECT_EQ(Output(), "ran");
    EXPECT_EQ(ErrorOf("source \"none.mel\""),
              "line 1.1: Cannot find file \"none.mel\" for source statement.");

    // A procedure that is not known is looked for in a script of its name.
    QDir(prefs_.path()).mkdir(QStringLiteral("scripts"));
    QFile script(prefs_.filePath(QStringLiteral("scripts/lateOne.mel")));
    ASSERT_TRUE(script.open(QIODevice::WriteOnly));
    script.write("global proc int lateOne() { return 3; }");
    script.close();
    EXPECT_EQ(Typed("exists lateOne"), "int 1");
    EXPECT_EQ(Typed("lateOne"), "int 3");
}

TEST_F(MelCommandsTest, StreamASceneStatementByStatement) {
    std::vector<std::string> errors;
    lightbox::mel::RunOptions options;
    options.streamed = true;
    options.onError = [&errors](const lightbox::mel::Error& error) {
        errors.push_back(error.Described());
        return true;
    };
    std::string unreadable;
    options.afterUnreadable = [&](std::string_view readable, std::string_view skipped, int line) {
        unreadable += std::to_string(line) + "<" + std::string(readable) + "|" + std::string(skipped) + ">";
    };
    host_.interpreter().Execute("print 1;\nerror \"one\";\nprint 2;\nbroken = 5;\nprint 3;\nprint \"cut",
                                "f.ma", options);
    EXPECT_EQ(Output(), "123");
    const std::vector<std::string> expected = {
        "file: f.ma line 2.1: one", "file: f.ma line 4.8: Syntax error: unexpected \"=\".",
        "file: f.ma line 6.7: Syntax error: the string has no closing quote."};
    EXPECT_EQ(errors, expected);
    EXPECT_EQ(unreadable, "4<broken |broken = 5;>6<print |print \"cut>");

    // Places are found in any order.
    errors.clear();
    host_.interpreter().Execute(
        "proc wrong() {\n  error \"deep\";\n}\n\nerror \"one\"; error \"two\";\nwrong;\n"
        "error \"three\";",
        "g.ma", options);
    const std::vector<std::string> places = {"file: g.ma line 5.1: one", "file: g.ma line 5.14: two",
                                             "file: g.ma line 2.3: deep", "file: g.ma line 7.1: three"};
    EXPECT_EQ(errors, places);
}

TEST_F(MelCommandsTest, KeepOptionVariables) {
    Run("optionVar -iv a 1 -fv b 1.5 -sv c \"x\\\"y\" -iva d 1 -iva d 2 -sva e \"s\"");
    EXPECT_EQ(Typed("optionVar -q a"), "int 1");
    EXPECT_EQ(Typed("optionVar -q \"b\""), "float 1.5");
    EXPECT_EQ(Typed("optionVar -q c"), "string x\"y");
    EXPECT_EQ(Typed("optionVar -q d"), "int[] 1 2");
    EXPECT_EQ(Typed("optionVar -as d"), "int 2");
    EXPECT_EQ(Typed("optionVar -rfa d 0; optionVar -q d"), "int[] 2");
    EXPECT_EQ(Typed("optionVar -ca d; optionVar -q d"), "int[] ");
    EXPECT_EQ(Typed("optionVar -rm a; optionVar -ex a"), "int 0");
    EXPECT_EQ(Typed("optionVar -q a"), "int 0");
    Run("savePrefs");
    EXPECT_TRUE(lightbox::OptionVars(prefs_.path().toStdString()).Has("c"));
}

TEST_F(MelCommandsTest, RunScriptJobsWhenIdle) {
    const auto idle = [this] {
        host_.idle().Drain();
        return Output();
    };
    EXPECT_EQ(Typed("int $job = `scriptJob -event \"timeChanged\" \"print \\\"t\\\"\"`; $job > 0"), "int 1");
    host_.events().Fire("timeChanged");
    host_.events().Fire("timeChanged");
    EXPECT_EQ(Output(), "");
    EXPECT_EQ(idle(), "t");
    Run("scriptJob -cf \"playingBack\" \"print \\\"stop\\\"\"; scriptJob -ro 1 -cc playingBack \"print c\"");
    host_.events().SetCondition("playingBack", true);
    EXPECT_EQ(idle(), "c");
    host_.events().SetCondition("playingBack", false);
    EXPECT_EQ(idle(), "stop");
    EXPECT_EQ(Typed("size(`scriptJob -listJobs`)"), "int 2");
    EXPECT_EQ(Typed("scriptJob -exists $job"), "int 1");
    host_.events().Fire("timeChanged");
    Run("scriptJob -f -k $job");
    EXPECT_EQ(idle(), "");
    Run("int $safe = `scriptJob -protected -event Undo \"print u\"`; scriptJob -kill $safe");
    EXPECT_EQ(Typed("scriptJob -ex $safe"), "int 1");
    Run("scriptJob -kill $safe -force");
    EXPECT_EQ(Typed("scriptJob -ex $safe"), "int 0");
    EXPECT_EQ(ErrorOf("scriptJob -event noSuchEvent \"\""),
              "line 1.1: There is no event or condition \"noSuchEvent\".");
    Output();
    // An error in a script is shown and ends only that script.
    Run("scriptJob -event Redo \"error \\\"in job\\\"\"");
    host_.events().Fire("Redo");
    EXPECT_EQ(idle(), "// Error: line 1.1: in job //\n");
    Run("evalDeferred \"print \\\"late\\\"\"; print \"now \"");
    EXPECT_EQ(idle(), "now late");
}

TEST_F(MelCommandsTest, SwitchTools) {
    EXPECT_EQ(Typed("currentCtx"), "string selectSuperContext");
    EXPECT_EQ(Typed("setToolTo moveSuperContext; currentCtx"), "string moveSuperContext");
    EXPECT_EQ(Typed("contextInfo -exists noTool"), "int 0");
    EXPECT_EQ(ErrorOf("setToolTo noTool"), "line 1.1: There is no tool context \"noTool\".");
}

} // namespace
