#include "MelFixture.h"
#include "faults/DiskFault.h"
#include "mel/ScriptJobs.h"
#include "scene/EventBus.h"
#include "scene/IdleQueue.h"
#include "scene/OptionVars.h"
#include "scene/ScopeExit.h"
#include "text/Quoted.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <algorithm>
#include <gmock/gmock.h>
#include <string>
#include <vector>

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

TEST_F(MelCommandsTest, PutArgumentsIntoTexts) {
    const struct {
        const char* text;
        const char* result;
    } rows[] = {
        {"format -s \"b\" -stringArg \"a\" \"^2s before ^1s, ^2s^1s\"", "string a before b, ab"},
        {"format -s \"^1s\" -s \"x\" \"^1s^2s\"", "string ^1sx"},
        {"format -s a \"^2s ^0s ^s ^1 ^1d ^ ^1\"", "string ^2s ^0s ^s ^1 ^1d ^ ^1"},
        {"format -s a \"^99999999999999999999s ^-1s ^01s\"", "string ^99999999999999999999s ^-1s a"},
        {"format \"\"", "string "},
        {"format -s \"\xe9\x89\x9b\" \"^1s\xe7\xad\x86\"", "string \xe9\x89\x9b\xe7\xad\x86"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Typed(row.text), row.result) << row.text;
    }
    EXPECT_THAT(ErrorOf("format -s 5"), ::testing::HasSubstr("string argument"));
    EXPECT_THAT(ErrorOf("format -s a"), ::testing::HasSubstr("Not enough"));
}

TEST_F(MelCommandsTest, NoiseIsSmoothAndTheSameEachTime) {
    // Whole numbers are what scripts ask for; the noise must not be the same for all of them.
    EXPECT_EQ(Typed("float $low = 1; float $high = -1; float $step = 0; float $last = noise(-20);"
                    "for ($i = -20000; $i < 20000; $i++) { float $n = noise($i * 0.001, 3, $i);"
                    "  float $one = noise($i * 0.001); $low = min($low, $n); $high = max($high, $n);"
                    "  $step = max($step, abs($one - $last)); $last = $one; }"
                    "$low >= -1 && $low < -0.6 && $high <= 1 && $high > 0.6 && $step < 0.005"),
              "int 1");
    EXPECT_EQ(Typed("noise(3) == noise(<<3, 0, 0>>) && noise(3, 4) == noise(<<3, 4, 0>>) && "
                    "noise(1) != noise(2) && noise(2) != noise(3) && noise(-0.5) == `noise -0.5`"),
              "int 1");
    EXPECT_EQ(Typed("vector $d = dnoise(<<1.5, 2, 3>>); $d == dnoise(1.5, 2, 3) && $d.x != $d.y && "
                    "$d.y != $d.z && mag($d) < sqrt(3)"),
              "int 1");
    // Coordinates without a place between whole numbers, or none at all.
    for (const char* huge : {"1e300", "-1e300", "1e18", "(1e300 * 1e300)", "<<1e300, -1e300, 5>>"}) {
        EXPECT_EQ(Typed("abs(noise(" + std::string(huge) + ")) <= 1"), "int 1") << huge;
    }
    EXPECT_THAT(ErrorOf("noise(<<1, 2, 3>>, 2)"), ::testing::HasSubstr("Wrong number of arguments"));
    EXPECT_NE(ErrorOf("noise({1.0})"), "none");
}

TEST_F(MelCommandsTest, RandomStreamsAreIndependentAndRepeat) {
    EXPECT_EQ(Typed("seed(\"a\", 5); seed(5); float $r = rand(1); float $a = rand(\"a\", 1); $r == $a"),
              "int 1");
    EXPECT_EQ(Typed("seed(5); rand(\"a\", 1); $r == rand(1)"), "int 1") << "\"a\" draws from its own stream";
    EXPECT_EQ(Typed("seed(\"a\", 5); delrandstr \"a\"; seed(\"a\", 5); $a == rand(\"a\", 0, 1)"), "int 1");
    EXPECT_EQ(Typed("float $sum = 0; float $squares = 0; seed(1); for ($i = 0; $i < 20000; $i++)"
                    "{ float $g = gauss(2); $sum += $g; $squares += $g * $g; }"
                    "abs($sum / 20000) < 0.1 && abs($squares / 20000 - 4) < 0.2"),
              "int 1");
    EXPECT_EQ(
        Typed(
            "vector $p = gauss(1, 2); $p.z == 0 && $p.x != 0 && mag(gauss(<<0, 0, 3>>) * <<1, 1, 0>>) == 0"),
        "int 1");
    // Half of a ball's volume is within 0.7937 of its radius.
    EXPECT_EQ(Typed("int $inside = 0; float $far = 0; for ($i = 0; $i < 20000; $i++)"
                    "{ vector $s = sphrand(2); $far = max($far, mag($s)); $inside += mag($s) < 2 * 0.7937; }"
                    "$far <= 2 && $far > 1.98 && abs($inside - 10000) < 400"),
              "int 1");
    EXPECT_EQ(Typed("vector $e = sphrand(<<1, 0, 5>>); $e.y"), "float 0");
    EXPECT_THAT(ErrorOf("rand(1, 2, 3)"), ::testing::HasSubstr("Wrong number of arguments"));
    EXPECT_THAT(ErrorOf("sphrand(1, 2)"), ::testing::HasSubstr("Wrong number of arguments"));
}

TEST_F(MelCommandsTest, AProjectIsOpenedChangedAndSaved) {
    const std::string before = QDir::currentPath().toStdString();
    const lightbox::ScopeExit back([&] { QDir::setCurrent(QString::fromStdString(before)); });
    const std::string folder = Path("my \"show\"");
    EXPECT_EQ(Typed("workspace -q -rootDirectory"), "string " + before + "/");
    EXPECT_THAT(ErrorOf("workspace -openWorkspace " + lightbox::Quoted(folder)),
                ::testing::HasSubstr("Cannot open the folder"));
    Run("workspace -newWorkspace " + lightbox::Quoted(folder));
    Run("workspace -fr \"images\" \"renders\" -fr scene \"sce\\\\nes \\\"x\\\"\" -v \"note\" \"a;b\"");
    EXPECT_EQ(Typed("workspace -q -fileRule"), "string[] images renders scene sce\\nes \"x\"");
    EXPECT_EQ(Typed("workspace -q -fileRuleList"), "string[] images scene");
    EXPECT_EQ(Typed("workspace -fileRuleEntry images") + Typed("workspace -q -fre nothing"),
              "string rendersstring ");
    EXPECT_EQ(Typed("workspace -expandName renders"), "string " + folder + "/renders");
    EXPECT_EQ(Typed("workspace -projectPath " + lightbox::Quoted(folder + "/renders/a.png")) +
                  Typed("workspace -pp \"/elsewhere\""),
              "string renders/a.pngstring /elsewhere");
    EXPECT_EQ(Typed("workspace -create \"a/b\"; workspace -dir a; workspace -q -dir"),
              "string " + folder + "/a/");
    EXPECT_EQ(Typed("workspace -q -rd") + Typed("workspace -q -fn") + Typed("workspace -q -sn"),
              "string " + folder + "/string " + folder + "string my \"show\"");
    Run("workspace -saveWorkspace");

    // What another host wrote stays; nothing in the file is run.
    QFile file(QString::fromStdString(folder + "/workspace.mel"));
    ASSERT_TRUE(file.open(QIODevice::Append));
    file.write("workspace -fr \"movie\" \"movies\";\nprint \"run\";\n// mine\n");
    file.close();
    Run("workspace -removeFileRuleEntry images; workspace -update; workspace -rfr images; workspace -s");
    EXPECT_EQ(Output(), "");
    Run("chdir " + lightbox::Quoted(before) + "; workspace -o " + lightbox::Quoted(folder));
    EXPECT_EQ(Typed("workspace -q -fr"), "string[] movie movies scene sce\\nes \"x\"");
    EXPECT_EQ(Typed("workspace -variableEntry note") + Typed("workspace -q -variableList"),
              "string a;bstring[] note");
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const std::string text = file.readAll().toStdString();
    EXPECT_THAT(text, ::testing::HasSubstr("print \"run\";\n// mine\n"));
    EXPECT_EQ(text.find("Project Definition"), text.rfind("Project Definition"));

    const std::string other = Path("other");
    Run("workspace -n -bw " + lightbox::Quoted(folder) + " " + lightbox::Quoted(other));
    EXPECT_EQ(Typed("workspace -q -frl") + Typed("workspace -q -lw"),
              "string[] movie scenestring[] my \"show\" other");
    EXPECT_THAT(ErrorOf("workspace -n " + lightbox::Quoted(folder)),
                ::testing::HasSubstr("is a project already"));
    EXPECT_EQ(Typed("workspace -q -fn"), "string " + other) << "a refusal changes nothing";
    EXPECT_THAT(ErrorOf("workspace"), ::testing::HasSubstr("is missing"));
    EXPECT_THAT(ErrorOf("workspace -n"), ::testing::HasSubstr("Not enough"));
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

TEST_F(MelCommandsTest, EachCommandIsInTheDocumentation) {
    QFile page(VELLIX_SOURCE_FOLDER "/docs/lightbox.md");
    ASSERT_TRUE(page.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(page.readAll());
    QString table = text.mid(text.indexOf("\n## MEL\n"));
    table.remove(0, table.indexOf("|---|---|"));
    table.truncate(table.indexOf("\n\n"));
    std::vector<std::string> listed;
    QRegularExpressionMatchIterator names = QRegularExpression("`(\\w+)`").globalMatch(table);
    while (names.hasNext()) {
        listed.push_back(names.next().captured(1).toStdString());
    }
    std::sort(listed.begin(), listed.end());
    EXPECT_EQ(listed, host_.interpreter().Commands().Names());
}

TEST_F(MelCommandsTest, SwitchTools) {
    EXPECT_EQ(Typed("currentCtx"), "string selectSuperContext");
    EXPECT_EQ(Typed("setToolTo moveSuperContext; currentCtx"), "string moveSuperContext");
    EXPECT_EQ(Typed("contextInfo -exists noTool"), "int 0");
    EXPECT_EQ(ErrorOf("setToolTo noTool"), "line 1.1: There is no tool context \"noTool\".");
}

} // namespace
