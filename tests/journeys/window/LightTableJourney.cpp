// A key for flipping, chosen in the ghosting panel, and what it shows in the next session.

#include "journeys/window/RunningLightbox.h"

#include <gtest/gtest.h>

namespace {

QImage Seen(RunningLightbox& program) {
    program.Settle();
    RunningLightbox::Rest(250);
    return program.Grab("modelPanel4");
}

TEST(LightTableJourney, AChosenKeyFlipsInTheNextSession) {
    const Lightbox folder;
    {
        RunningLightbox program(folder, {});
        program.Mel("qmVellixUtil -ghostingSettings");
        program.Place("qmVxGhostingFlipPreviousKey");
        RunningLightbox::Rest(300);
        program.Click("qmVxGhostingFlipPreviousKey");
        program.Type(',');
        RunningLightbox::Rest(200);
        EXPECT_EQ(program.Mel("qmVellixUtil -q -flipPreviousKey"), "none") << "not before OK";
        program.Click("qmVxGhostingOk");
        EXPECT_TRUE(program.Becomes("qmVellixUtil -q -flipPreviousKey", ","));
        program.Mel("evalDeferred(\"quit -force\")");
        EXPECT_EQ(program.WaitForEnd(), 0) << program.Messages().toStdString();
    }
    RunningLightbox program(folder, {});
    program.Mel("playbackOptions -min 1 -max 24; qmVellixNode -l -f -c persp; qmVellixUtil -brushTool; "
                "qmVellixUtil -brushOptions 20 100 100 0");
    ASSERT_TRUE(program.Becomes("currentCtx", "qmVxDrawCtx1"));
    const QPoint centre = program.Place("modelPanel4").center();
    program.Drag(centre - QPoint(100, 50), centre + QPoint(100, -50));
    const QImage first = Seen(program);
    program.Mel("currentTime 5");
    program.Drag(centre - QPoint(100, -50), centre + QPoint(100, 50));
    const QImage second = Seen(program);
    EXPECT_NE(second, first);

    program.Hold(',');
    EXPECT_EQ(Seen(program), first);
    EXPECT_EQ(program.Mel("currentTime -q"), "5");
    program.LetGo(',');
    EXPECT_EQ(Seen(program), second);

    // The pen comes down while the key is held: it draws on what is current, and that is seen.
    program.Hold(',');
    EXPECT_EQ(Seen(program), first);
    program.Drag(centre - QPoint(0, 40), centre + QPoint(0, 40));
    const QImage third = Seen(program);
    program.LetGo(',');
    EXPECT_NE(third, first);
    EXPECT_NE(third, second);
    EXPECT_EQ(Seen(program), third);
    program.Mel("currentTime 1");
    EXPECT_EQ(Seen(program), first) << "nothing was drawn on the one that was shown";
    EXPECT_EQ(program.Messages().count("Error"), 0);
}

TEST(LightTableJourney, TheMenuPinsAndMarksAndTakesThatBack) {
    const Lightbox folder;
    RunningLightbox program(folder, {});
    program.Mel("qmVellixNode -l -f -c persp");
    program.Mel("global proc string itemOf(string $menu, string $label) { string $item; "
                "for ($item in `menu -q -itemArray $menu`) if (`menuItem -q -label $item` == $label) "
                "return $item; return \"\"; }");
    const QString menu = program.Mel("string $menu = $gQmVxMainMenu");
    const QString ghosting = program.Mel("itemOf $gQmVxMainMenu \"Ghosting\"");
    const auto item = [&](const char* label) {
        return program.Mel(QString("itemOf \"%1\" \"%2\"").arg(ghosting, label));
    };
    for (const char* const on : {"1", "0", "1"}) {
        program.Choose({menu, ghosting, item("Pin Drawing")});
        EXPECT_TRUE(program.Becomes("qmVellixUtil -q -pinDrawing", on));
        program.Choose({menu, ghosting, item("Mark Layer")});
        EXPECT_TRUE(program.Becomes("qmVellixUtil -q -markLayer", on));
    }
    // The menu shows what is so now, whoever did it.
    program.Mel("qmVellixUtil -e -markLayer 0");
    program.Choose({menu, ghosting});
    program.Place(item("Mark Layer"));
    EXPECT_EQ(program.Mel("menuItem -q -checkBox " + item("Mark Layer")), "0");
    EXPECT_EQ(program.Mel("menuItem -q -checkBox " + item("Pin Drawing")), "1");
    program.Click(item("Unpin All Drawings"));
    EXPECT_TRUE(program.Becomes("qmVellixUtil -q -pinDrawing", "0"));
    EXPECT_EQ(program.Messages().count("Error"), 0);
}

} // namespace
