#include "journeys/Lightbox.h"

#include <QDir>

#include <cmath>
#include <gtest/gtest.h>

namespace {

/// Strokes of every tool on the given frames, as a pen leaves them.
QByteArray Recording(const QList<int>& frames, const char* color) {
    QList<QByteArray> strokes;
    for (const int frame : frames) {
        int row = 0;
        for (const char* tool :
             {"pencil", "brush", "line", "arrow", "ellipse", "rectangle", "text", "eraser"}) {
            QList<QByteArray> samples;
            for (int i = 0; i <= 40; ++i) {
                const double x = 80 + 15 * i + frame * 10;
                const double y = 80 + 110 * row + 30 * std::sin(i * 0.3 + frame);
                const double pressure = std::min({0.9, 0.1 + i * 0.1, 0.1 + (40 - i) * 0.1});
                samples.append(QString("[%1,%2,%3,%4]").arg(x).arg(y).arg(pressure).arg(8 * i).toUtf8());
            }
            strokes.append(QString(R"({"frame": %1, "tool": "%2", "size": %3, "opacity": 85, "hardness": 100,
                                       "color": %4, "text": "Frame", "font": "DejaVu Sans", "samples": [%5]})")
                               .arg(frame)
                               .arg(tool)
                               .arg(4 + 5 * row++)
                               .arg(color, QString(samples.join(",")))
                               .toUtf8());
        }
    }
    return R"({"format": "vellix-strokes", "version": 1, "size": 1024, "strokes": [)" + strokes.join(",") +
           "]}";
}

void WriteRecordings(const Lightbox& lightbox) {
    lightbox.Write("rough.json", Recording({5, 1, 3}, "[60, 120, 210]"));
    lightbox.Write("ink.json", Recording({2, 5}, "[20, 20, 40]"));
}

const char* const DRAW = R"(
playbackOptions -min 1 -max 6;
qmVellixNode -l -f -c persp -ln "Rough";
int $strokes = `qmVellixReplay -file "rough.json"`;
$strokes += `qmVellixReplay -file "ink.json" -camera persp`;
print ($strokes + " strokes\n");
)";

QByteArray Export(const char* folder) {
    return QString("qmVellixExport -file \"%1/f.####.png\" -ghosting 1 -contactSheet \"%1/sheet.png\";\n")
        .arg(folder)
        .toUtf8();
}

TEST(PencilTestJourney, LooksTheSameAfterEverySaveAndOpen) {
    const Lightbox lightbox;
    WriteRecordings(lightbox);
    const auto result = lightbox.RunScript(DRAW + Export("drawn") + R"(
        file -rename "a.ma"; file -save -type "mayaAscii"; file -f -open "a.ma";
        )" + Export("opened") + R"(
        file -rename "a.lbx"; file -save -type "lightboxBinary"; file -f -open "a.lbx";
        )" + Export("binary") + R"(
        file -rename "b.ma"; file -save -type "mayaAscii"; file -f -open "b.ma";
        )" + Export("again"));
    EXPECT_EQ(result.output, "40 strokes\n");
    EXPECT_EQ(QDir(lightbox.Path("drawn")).entryList(QDir::Files).size(), 7);
    for (const char* folder : {"opened", "binary", "again"}) {
        EXPECT_TRUE(lightbox.ReadFolder(folder) == lightbox.ReadFolder("drawn")) << folder;
    }
    EXPECT_TRUE(lightbox.ReadDrawing("a.ma") == lightbox.ReadDrawing("b.ma"));
}

TEST(PencilTestJourney, OneUndoTakesAReplayBack) {
    const Lightbox lightbox;
    WriteRecordings(lightbox);
    lightbox.RunScript(QByteArray(DRAW) + R"(
        proc keep(string $name) { file -rename $name; file -save -type "mayaAscii"; }
        qmVellixLayer -add -n "Ink" -ls 0 persp;
        keep("before.ma");
        qmVellixReplay -file "ink.json" -frameOffset 1;
        keep("after.ma");
        undo;
        keep("undone.ma");
        redo;
        keep("redone.ma");
        undo;
        keep("undoneAgain.ma");
    )");
    const QByteArray before = lightbox.ReadDrawing("before.ma");
    const QByteArray after = lightbox.ReadDrawing("after.ma");
    EXPECT_FALSE(before == after);
    EXPECT_TRUE(lightbox.ReadDrawing("undone.ma") == before);
    EXPECT_TRUE(lightbox.ReadDrawing("redone.ma") == after);
    EXPECT_TRUE(lightbox.ReadDrawing("undoneAgain.ma") == before);
}

// A recording with a fault is one error; the script that catches it goes on with all that was there.
TEST(PencilTestJourney, GoesOnAfterAFaultyRecording) {
    const Lightbox lightbox;
    WriteRecordings(lightbox);
    lightbox.Write("broken.json", lightbox.Read("ink.json").replace("\"eraser\"", "\"rubber\""));
    const auto caught = lightbox.RunScript(QByteArray(DRAW) + R"(
        file -rename "before.ma"; file -save -type "mayaAscii";
        catch(`qmVellixReplay -file "broken.json"`);
        file -rename "after.ma"; file -save -type "mayaAscii";
        print "went on\n";
    )");
    EXPECT_TRUE(caught.output.endsWith("went on\n"));
    EXPECT_TRUE(caught.errors.contains("stroke 8: \"tool\"")) << caught.errors.toStdString();
    EXPECT_TRUE(lightbox.ReadDrawing("before.ma") == lightbox.ReadDrawing("after.ma"));

    const auto ended =
        lightbox.Run({"-command", "qmVellixReplay -camera persp -file \"broken.json\"; print \"no\""});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.output, "");
}

TEST(PencilTestJourney, SaysOnlyWhatIsPrinted) {
    const Lightbox lightbox;
    const auto result = lightbox.Run({"-command", "print \"hi\\n\""});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "hi\n");
}

} // namespace
