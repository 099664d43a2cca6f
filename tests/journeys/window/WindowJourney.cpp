// Paths through the window, by the pointer and the keyboard.

#include "journeys/window/RunningLightbox.h"

#include <QColor>

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using ::testing::HasSubstr;

namespace {

constexpr int LAST_FRAME = 12;

/// The drawings' frames, found by stepping; an item of a menu, found by its label.
const char* const WINDOW_HELPERS = R"(
global proc string journeyFrames() {
    undoInfo -stateWithoutFlush false;
    float $now = `currentTime -q`;
    currentTime 12;
    qmVellixFrame -stepForward persp;
    float $first = `currentTime -q`;
    string $frames = $first;
    while (true) {
        qmVellixFrame -stepForward persp;
        if (`currentTime -q` == $first) break;
        $frames += " " + `currentTime -q`;
    }
    currentTime $now;
    undoInfo -stateWithoutFlush true;
    return $frames;
}
global proc string journeyItem(string $menu, string $label) {
    string $item;
    for ($item in `menu -q -itemArray $menu`)
        if (`menuItem -q -label $item` == $label) return $item;
    return "";
}
)";

/// A layer of red squares at 1, 3, 5 and 9, one lower than the other.
void MakeScene(const Lightbox& folder) {
    QStringList strokes;
    for (const int frame : {1, 3, 5, 9}) {
        const int y = 200 + 60 * frame;
        strokes << QString(R"({"frame": %1, "tool": "brush", "size": 60, "opacity": 100, "hardness": 100,
                               "color": [230, 20, 20], "samples": [[480,%2,1,0],[500,%2,1,50],[520,%2,1,100]]})")
                       .arg(frame)
                       .arg(y);
    }
    folder.Write("squares.json", QByteArray(R"({"format": "vellix-strokes", "version": 1, "size": 1024,
                                                "strokes": [)") +
                                     strokes.join(",").toUtf8() + "]}");
    folder.Write("helpers.mel", WINDOW_HELPERS);
    folder.RunScript(
        "playbackOptions -ast 1 -aet 12 -min 1 -max 12; qmVellixNode -l -c persp -ln \"Rough\" -ls 0;"
        "qmVellixReplay -file \"squares.json\" -camera persp; qmVellixFrame -stepForward persp;"
        "currentTime 1; file -rename \"a.ma\"; file -save -type \"mayaAscii\";");
}

class WindowJourney : public ::testing::Test {
protected:
    WindowJourney() { MakeScene(folder_); }

    QStringList Opening(const QString& scene) const {
        return {"-file", folder_.Path(scene), "-script", folder_.Path("helpers.mel")};
    }
    static QPoint OnSlider(const QRect& slider, int frame) {
        const double perFrame = slider.width() * 0.99 / LAST_FRAME;
        return {qRound(slider.left() + slider.width() * 0.005 + (frame - 0.5) * perFrame),
                slider.top() + slider.height() / 3};
    }
    /// Where the red of the drawing is in a picture; null when there is none.
    static QRect Red(const QImage& image) {
        QRect found;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor color = image.pixelColor(x, y);
                if (color.red() > 210 && color.green() < 60 && color.blue() < 60) {
                    found |= QRect(x, y, 1, 1);
                }
            }
        }
        return found;
    }

    Lightbox folder_;
};

TEST_F(WindowJourney, ADrawingIsScrubbedAndPlayed) {
    RunningLightbox program(folder_, Opening("a.ma"));
    const QRect slider = program.Place("timeControl1");
    const QRect first = Red(program.Grab("modelPanel4"));
    ASSERT_FALSE(first.isNull());
    program.DragTo(OnSlider(slider, 1), OnSlider(slider, 4));
    EXPECT_TRUE(program.Becomes("currentTime -q", "4"));
    EXPECT_GT(Red(program.Grab("modelPanel4")).top(), first.top()) << "the drawing of frame 3 holds";
    program.DragTo(OnSlider(slider, 4), OnSlider(slider, 9));
    program.Release();
    EXPECT_TRUE(program.Becomes("currentTime -q", "9"));
    const QRect last = Red(program.Grab("modelPanel4"));
    program.Type('z', RunningLightbox::Control);
    EXPECT_TRUE(program.Becomes("currentTime -q", "1")) << "the whole drag is one step";
    EXPECT_EQ(Red(program.Grab("modelPanel4")), first);
    EXPECT_GT(last.top(), first.top());

    program.Click("playForwards");
    EXPECT_TRUE(program.Becomes("play -q -state", "1"));
    QSet<QString> times;
    for (int i = 0; i < 12; ++i) {
        RunningLightbox::Rest(70);
        times.insert(program.Mel("currentTime -q"));
    }
    EXPECT_GE(times.size(), 4) << "it goes on, and begins again";
    program.Click("playForwards");
    EXPECT_TRUE(program.Becomes("play -q -state", "0"));
}

TEST_F(WindowJourney, AHighlightedRangeOfFramesIsMoved) {
    RunningLightbox program(folder_, Opening("a.ma"));
    const QRect slider = program.Place("timeControl1");
    const auto at = [&](int frame) { return OnSlider(slider, frame); };
    const auto highlight = [&](int from, int to) {
        program.Hold(RunningLightbox::Shift);
        program.Drag(at(from), at(to));
        program.LetGo(RunningLightbox::Shift);
        EXPECT_TRUE(program.Becomes("timeControl -q -rangeArray $gPlayBackSlider",
                                    QString("%1\t%2").arg(from).arg(to + 1)));
    };
    program.Click("shelfButton1");
    EXPECT_TRUE(program.Becomes("contextInfo -class `currentCtx`", "qmVxDrawCtx"));
    EXPECT_TRUE(program.Becomes("journeyFrames", "1 3 5 9"));

    highlight(3, 5);
    program.DragTo(at(4), at(5));
    EXPECT_TRUE(program.Becomes("currentTime -q", "2")) << "the current time goes along";
    program.Release();
    EXPECT_TRUE(program.Becomes("journeyFrames", "1 4 6 9"));
    program.Type('z', RunningLightbox::Control);
    EXPECT_TRUE(program.Becomes("journeyFrames", "1 3 5 9"));
    program.Type('y', RunningLightbox::Control);
    EXPECT_TRUE(program.Becomes("journeyFrames", "1 4 6 9"));
    program.Type('z', RunningLightbox::Control);

    // 5 would land on 9, which is not in the range.
    highlight(3, 5);
    program.DragTo(at(4), at(8));
    RunningLightbox::Rest(100);
    const QImage dragged = program.Grab("timeControl1");
    const QPoint mark = at(9) - slider.topLeft();
    EXPECT_EQ(dragged.pixelColor(mark.x(), slider.height() - 5), QColor(Qt::black));
    EXPECT_NE(dragged.pixelColor((at(7) - slider.topLeft()).x(), slider.height() - 5), QColor(Qt::black));
    program.Release();
    RunningLightbox::Rest(100);
    EXPECT_TRUE(program.Becomes("journeyFrames", "1 3 5 9"));
    EXPECT_THAT(program.Messages().toStdString(), HasSubstr("Move Failed. A frame already exists at time 9"));
    const QImage kept = program.Grab("timeControl1");
    const auto colourAt = [&](int frame) {
        return kept.pixelColor((at(frame) - slider.topLeft()).x(), slider.height() - 5);
    };
    EXPECT_EQ(colourAt(3), colourAt(1)) << "the marks are where the frames still are";
}

TEST_F(WindowJourney, LayersMoveToTheFloatingViewByTheMenu) {
    RunningLightbox program(folder_, Opening("a.ma"));
    const QString menu = program.Mel("string $menu = $gQmVxMainMenu");
    const QString view = program.Mel("journeyItem $gQmVxMainMenu \"View\"");
    const QString move = program.Mel("journeyItem \"" + view + "\" \"Move layers to Vellix View\"");
    program.Choose({menu, view, move});
    RunningLightbox::Rest(300);
    program.Type(RunningLightbox::Return);
    EXPECT_TRUE(program.Becomes("qmVellixLayer -count vellixCam", "1"));
    EXPECT_TRUE(program.Becomes("qmVellixLayer -count persp", "0"));
    EXPECT_TRUE(program.Becomes("window -q -visible qmVxFloatingWindow", "1"));
    EXPECT_FALSE(Red(program.Grab("qmVellixFloatingModelPanel")).isNull());
    EXPECT_TRUE(Red(program.Grab("modelPanel4")).isNull());
    program.Type('z', RunningLightbox::Control);
    EXPECT_TRUE(program.Becomes("qmVellixLayer -count persp", "1"));
    EXPECT_FALSE(Red(program.Grab("modelPanel4")).isNull());
    program.Mel("redo");
    EXPECT_TRUE(program.Becomes("qmVellixLayer -count vellixCam", "1"));
    // Closed and opened again it is the same view.
    program.Mel("window -e -visible 0 qmVxFloatingWindow");
    program.Choose({menu, view, program.Mel("journeyItem \"" + view + "\" \"Vellix View\"")});
    EXPECT_TRUE(program.Becomes("window -q -visible qmVxFloatingWindow", "1"));
    EXPECT_FALSE(Red(program.Grab("qmVellixFloatingModelPanel")).isNull());
}

TEST_F(WindowJourney, UnsavedChangesAreAskedAboutAndTheNextSessionGoesOn) {
    {
        RunningLightbox program(folder_, Opening("a.ma"));
        program.Choose({"mainPanelsMenu", program.Mel("journeyItem mainPanelsMenu \"Four View\"")});
        program.Mel("polyCube -name \"made\"");
        program.Type('q', RunningLightbox::Control);
        program.Dismiss("unsavedChanges", RunningLightbox::Escape);
        EXPECT_TRUE(program.Becomes("file -q -modified", "1"));
        program.Choose({"mainFileMenu", program.Mel("journeyItem mainFileMenu \"Quit\"")});
        program.Click("saveChanges");
        EXPECT_EQ(program.WaitForEnd(), 0);
    }
    const QByteArray saved = folder_.Read("a.ma");
    EXPECT_TRUE(saved.contains("createNode mesh -n \"madeShape\""));
    RunningLightbox program(folder_, {"-script", folder_.Path("helpers.mel")});
    EXPECT_GT(program.Place("modelPanel4").left(), program.Place("modelPanel1").left()) << "four panels";
    program.Choose({"mainFileMenu", "lightboxRecentMenu"});
    program.Choose({program.Mel("string $recent[] = `menu -q -itemArray lightboxRecentMenu`; $recent[0]")});
    EXPECT_TRUE(program.Becomes("objExists made", "1"));
    EXPECT_TRUE(program.Becomes("journeyFrames", "1 3 5 9"));
    EXPECT_FALSE(Red(program.Grab("modelPanel4")).isNull());
    program.Mel("delete made");
    program.Type('q', RunningLightbox::Control);
    program.Click("discardChanges");
    EXPECT_EQ(program.WaitForEnd(), 0);
    EXPECT_EQ(folder_.Read("a.ma"), saved);
}

// What the pen draws lies under the pen, and keeps its sharpness, however many pixels the screen gives it.
TEST_F(WindowJourney, TheDrawingLiesUnderThePointerOnEveryScreen) {
    for (const double scale : {1.0, 1.5, 2.0}) {
        SCOPED_TRACE(scale);
        RunningLightbox program(folder_, {}, scale);
        // A straight line: smoothing lets freehand ones end short of the pen.
        program.Mel("qmVellixUtil -lineOptions 8 100; qmVellixUtil -e -drawColor 230 20 20");
        program.Mel("qmVellixUtil -lineTool");
        program.Click("shelfButton1");
        EXPECT_TRUE(program.Becomes("contextInfo -class `currentCtx`", "qmVxDrawCtx"));
        const QRect panel = program.Place("modelPanel4");
        const QPoint from = panel.center() - QPoint(120, 40);
        const QPoint to = panel.center() + QPoint(80, 40);
        program.DragTo(from, to);
        RunningLightbox::Rest(400);
        program.Release();
        program.MoveTo(panel.center() + QPoint(150, 0));
        RunningLightbox::Rest(200);
        const QImage seen = program.Grab("modelPanel4");
        EXPECT_EQ(seen.width(), qRound(panel.width() * scale));
        const QRect red = Red(seen);
        const double line = 8.0 * panel.width() / 1024.0;
        const double slack = (0.5 * line + 2.0) * scale;
        const auto expected = [&](const QPoint& point) { return QPointF(point - panel.topLeft()) * scale; };
        EXPECT_NEAR(red.left(), expected(from).x(), slack);
        EXPECT_NEAR(red.top(), expected(from).y(), slack);
        EXPECT_NEAR(red.right(), expected(to).x(), slack);
        EXPECT_NEAR(red.bottom(), expected(to).y(), slack);
    }
}

} // namespace
