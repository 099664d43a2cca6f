// docs/read_drawing.py against what Lightbox says of the scene that it saved.

#include "journeys/Lightbox.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>

#include <gtest/gtest.h>

namespace {

struct Reading {
    int status = -1;
    QByteArray output;
    QByteArray errors;
};

Reading ReadWithPython(const Lightbox& lightbox, const QStringList& arguments) {
    QProcess python;
    python.setWorkingDirectory(QFileInfo(lightbox.Path("x")).path());
    python.start("python3", QStringList(VELLIX_SOURCE_FOLDER "/docs/read_drawing.py") + arguments);
    EXPECT_TRUE(python.waitForFinished(60000));
    return {python.exitCode(), python.readAllStandardOutput(), python.readAllStandardError()};
}

/// Prints the drawing as the Python script does.
const char* const LISTING = R"(
    proc string line(string $text) {
        return substituteAllString(substituteAllString($text, "\n", "\\n"), "\t", "\\t");
    }
    proc list(string $camera, string $frames[]) {
        string $states[] = {"animated", "static", "locked"};
        print (line($camera) + "\n");
        int $count = `qmVellixLayer -count $camera`;
        for ($i = 0; $i < $count; $i++) {
            float $opacity = `qmVellixLayer -queryOpacity $i $camera`;
            int $percent = $opacity * 100 + 0.5;
            string $name = `qmVellixLayer -queryName $i $camera`;
            print ("  " + $i + " " + line($name) + ": " + $states[`qmVellixLayer -queryState $i $camera`] + ", " +
                   $percent + "%" + (`qmVellixLayer -queryVis $i $camera` ? "" : ", hidden") + ", frames " +
                   $frames[$i] + "\n");
        }
    }
)";

} // namespace

TEST(ReadDrawingJourney, ListsWhatLightboxSays) {
    const Lightbox lightbox;
    const Lightbox::Result said = lightbox.RunScript(QByteArray(LISTING) + R"(
        string $left[] = `camera`; rename $left[0] "cam"; group -em -n left; parent "|cam" left;
        string $right[] = `camera`; rename $right[0] "cam"; group -em -n right; parent "|cam" right;
        qmVellixNode -layer -camera cam -layerName "a \"q\" \\ b\nnew\tt 鉛筆; // x /* é\\" -layerState 0;
        qmVellixLayer -insert -1 -name "UNKNOWN" -layerState 0 cam;
        qmVellixLayer -insert -1 -name "setAttr \".ld\" -type \"qmLayerData\" 1 1 \"no\" 0;" -layerState 0 cam;
        qmVellixLayer -insert -1 -name " two  blanks " -layerState 0 cam;
        qmVellixLayer -insert -1 -name "\\n" -layerState 2 persp;
        qmVellixLayer -insert -1 -name "a/b" -layerState 0 persp;
        qmVellixLayer -editVis 0 0 cam; qmVellixLayer -editOpacity 0.25 1 cam;
        qmVellixLayer -e -active 0 cam; timeControl -e -rangeArray 3 6 $gPlayBackSlider; qmVellixFrame -insert;
        // Another node, whose drawing has no layers, comes first in the file.
        createNode transform -n other; createNode qmVellix -n otherShape -p other;
        group -n pile vellix; parent -w "pile|vellix";
        file -rename "shot.ma"; file -type "mayaAscii"; file -save;
        string $frames[] = {"3 4 5", "", "", ""}; list("cam", $frames); clear $frames; list("persp", $frames);
    )");
    ASSERT_LT(lightbox.Read("shot.ma").indexOf("\"otherShape\""),
              lightbox.Read("shot.ma").indexOf("\"vellixShape\""));
    const Reading read = ReadWithPython(lightbox, {"shot.ma", "drawings"});
    EXPECT_EQ(read.status, 0) << read.errors.constData();
    EXPECT_EQ(read.output.toStdString(), said.output.toStdString());
    EXPECT_EQ(read.errors, QByteArray());
    EXPECT_EQ(QDir(lightbox.Path("drawings/cam")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), 4);
    const QString layer = QString::fromUtf8("drawings/cam/0_a_q_b_new_t_鉛筆_x_é_");
    EXPECT_EQ(QDir(lightbox.Path(layer)).entryList(QDir::Files), QStringList({"3.png", "4.png", "5.png"}));
    EXPECT_EQ(lightbox.Read(layer + "/3.png").left(4), QByteArray("\x89PNG"));
}

/// What Lightbox never writes, but its readers take.
TEST(ReadDrawingJourney, ReadsWhatOthersWrite) {
    const Lightbox lightbox;
    lightbox.Write(
        "other.ma",
        "//Maya ASCII 2018 scene\n//Codeset: 932\n"
        "fileInfo \"x\" \"setAttr \\\".ld\\\" -type \\\"qmLayerData\\\" 1 1 \\\"no\\\" 0;\";\n"
        "createNode qmVellix -n first;\n\tsetAttr \".ld\" -type \"qmLayerData\" 1 0 \"a\" 0;\n"
        "createNode qmVellix -n \"second\";\n\tsetAttr -l on \".layerData\" -type \"qmLayerData\"\n"
        "\t\t1 yes \"|a|cam\" 3 /* ; */ \"|a|cam\" 1 0 \"\x95\\\" 2 1 0.8 0\n"
        "\t\t1 \"8 9\n5A\" 2sec \"89\" // a \"comment\"\n"
        "\t\t\"_a_cam\" 1 -1 \"UNKNOWN\" -1 \"|a|cam\" 1 0 \"two\\\n lines\" 1 off 1 2 -999 \"00\";\n");
    const Reading read = ReadWithPython(lightbox, {"other.ma", "out"});
    EXPECT_EQ(read.output.toStdString(), "|a|cam\n"
                                         "  0 \xe8\xa1\xa8: animated, 80%, frames 1 2sec\n"
                                         "  1 two lines: locked, 100%, hidden, frames -999\n"
                                         "_a_cam\n")
        << read.errors.constData();
    EXPECT_EQ(lightbox.Read(QString::fromUtf8("out/_a_cam/0_表/1.png")), QByteArray("\x89\x5a"));

    lightbox.Write(
        "cut.ma",
        "createNode qmVellix -n cut;\n\tsetAttr \".ld\" -type \"qmLayerData\" 1 1 \"a\" 1 \"a\" 2 0 "
        "\"whole\" 1 1 1 0 1 \"89\" \"half\" 2 1 1 0 1 \"89\" 2;\n");
    const Reading cut = ReadWithPython(lightbox, {"cut.ma"});
    EXPECT_EQ(cut.output.toStdString(),
              "a\n  0 whole: animated, 100%, frames 1\n  1 half: animated, 100%, frames 1\n");
    EXPECT_NE(cut.errors.indexOf("Not all"), -1);
    lightbox.Write("none.ma", "createNode transform -n a;\n");
    EXPECT_EQ(ReadWithPython(lightbox, {"none.ma"}).status, 1);
}
