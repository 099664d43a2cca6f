// A new user makes layers, arranges and retimes them without a line of MEL, and finds them the next day.

#include "journeys/window/RunningLightbox.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using ::testing::HasSubstr;

namespace {

/// "camera: name state, name state; camera: ..." from the bottom of each stack; an item of the main menu.
const char* const LAYER_HELPERS = R"(
global proc string journeyLayers() {
    string $text;
    string $camera;
    for ($camera in {"persp", "front"}) {
        int $count = `qmVellixLayer -cnt $camera`;
        int $i;
        for ($i = 0; $i < $count; ++$i)
            $text += $camera + ":" + `qmVellixLayer -qn $i $camera` + " " + `qmVellixLayer -qs $i $camera` + " ";
    }
    return $text + `qmVellixNode -q -camera`;
}
global proc string journeyMenu(string $label) {
    global string $gQmVxMainMenu;
    string $item;
    for ($item in `menu -q -itemArray $gQmVxMainMenu`)
        if (`menuItem -q -label $item` == $label) return $item;
    return "";
}
global proc string journeySubMenu(string $menu, string $label) {
    string $item;
    for ($item in `menu -q -itemArray $menu`)
        if (`menuItem -q -label $item` == $label) return $item;
    return "";
}
)";

class LayersJourney : public ::testing::Test {
protected:
    LayersJourney() { folder_.Write("helpers.mel", LAYER_HELPERS); }

    QStringList Arguments(const QStringList& more = {}) const {
        return more + QStringList{"-script", folder_.Path("helpers.mel")};
    }
    static void ChooseFromMenu(RunningLightbox& program, const char* label, const char* inside = nullptr) {
        const QString item = program.Mel(QString("journeyMenu \"%1\"").arg(label));
        QStringList path = {program.Mel("string $menu = $gQmVxMainMenu"), item};
        if (inside) {
            path << program.Mel(QString("journeySubMenu \"%1\" \"%2\"").arg(item, inside));
        }
        program.Choose(path);
    }
    /// Into the new layer dialog: its name field has the focus, and the name in it is selected.
    static void NameLayer(RunningLightbox& program, const char* name) {
        program.Place("qmVxNewLayer");
        RunningLightbox::Rest(200);
        for (; *name != '\0'; ++name) {
            program.Type(static_cast<unsigned>(*name));
        }
        program.Type(RunningLightbox::Return);
    }
    static bool Has(RunningLightbox& program, const char* layers) {
        return program.Becomes("journeyLayers", layers);
    }

    Lightbox folder_;
};

TEST_F(LayersJourney, LayersAreMadeArrangedRetimedAndFoundAgain) {
    QRect manager;
    QRect retiming;
    {
        RunningLightbox program(folder_, Arguments());
        ChooseFromMenu(program, "Layer", "New Layer...");
        NameLayer(program, "rough");
        EXPECT_TRUE(Has(program, "persp:rough 0 persp"));
        ChooseFromMenu(program, "Layer Manager...");
        for (const char* const name : {"ink", "sky"}) {
            program.Click("qmVxLayerManagerNewLayer");
            NameLayer(program, name);
        }
        EXPECT_TRUE(Has(program, "persp:rough 0 persp:ink 0 persp:sky 0 persp"));

        program.Click("qmVxLayerManagerMoveDown");
        EXPECT_TRUE(Has(program, "persp:rough 0 persp:sky 0 persp:ink 0 persp"));
        program.Click("qmVxLayerState_persp_0");
        program.Click("qmVxLayerState_persp_0");
        EXPECT_TRUE(Has(program, "persp:rough 2 persp:sky 0 persp:ink 0 persp"));
        program.Type('z', RunningLightbox::Control);
        EXPECT_TRUE(Has(program, "persp:rough 1 persp:sky 0 persp:ink 0 persp")) << "from the panel too";
        program.Type('y', RunningLightbox::Control);
        EXPECT_TRUE(Has(program, "persp:rough 2 persp:sky 0 persp:ink 0 persp"));

        // What is drawn on the locked layer is refused.
        program.Click("qmVxLayer_persp_0");
        program.Messages();
        const QRect view = program.Place("modelPanel4");
        const QPoint free = view.topLeft() + QPoint(80, 120);
        program.Drag(free, free + QPoint(60, 40));
        EXPECT_THAT(program.Messages().toStdString(), HasSubstr("Active layer is locked."));

        // Sky goes to the front camera: the second camera of the layer's menu, behind its own name.
        program.Click(program.Place("qmVxLayer_persp_1").center(), RunningLightbox::Right);
        RunningLightbox::Rest(200);
        for (const unsigned key : {RunningLightbox::ArrowDown, RunningLightbox::ArrowDown,
                                   RunningLightbox::ArrowRight, RunningLightbox::ArrowDown}) {
            program.Type(key);
        }
        program.Type(RunningLightbox::Return);
        EXPECT_TRUE(Has(program, "persp:rough 2 persp:ink 0 front:sky 0 front"));

        program.Click("qmVxLayer_persp_1");
        EXPECT_TRUE(program.Becomes("qmVellixLayer -q -active persp", "1"));
        for (const char* const frame : {"1", "5", "9"}) {
            program.Mel(QString("currentTime %1").arg(frame));
            ChooseFromMenu(program, "Frame", "Insert Frame(s)");
        }
        program.Mel("currentTime 1");
        ChooseFromMenu(program, "Retiming Tool...");
        program.Click("qmVxRetimingToolMoveToNextFrame");
        program.Click("qmVxRetimingTool2f");
        EXPECT_TRUE(program.Becomes("currentTime -q", "3"));
        program.Click("qmVxRetimingTool+2f");
        EXPECT_TRUE(program.Becomes("currentTime -q", "9"));

        manager = program.Place("qmVxLayerManager");
        retiming = program.Place("qmVxRetimingTool");
        program.Mel("file -rename \"" + folder_.Path("day1.ma") + "\"; file -save -type \"mayaAscii\"");
        program.Mel("evalDeferred(\"quit -force\")");
        EXPECT_EQ(program.WaitForEnd(), 0);
    }
    RunningLightbox program(folder_, Arguments({"-file", folder_.Path("day1.ma")}));
    EXPECT_TRUE(Has(program, "persp:rough 2 persp:ink 0 front:sky 0 persp"));
    // What was open is open again.
    EXPECT_EQ(program.Place("qmVxLayerManager"), manager);
    EXPECT_EQ(program.Place("qmVxRetimingTool"), retiming);
    // The box is still checked: the time goes on to the drawing that follows.
    program.Mel("currentTime 1");
    program.Click("qmVxRetimingTool1f");
    EXPECT_TRUE(program.Becomes("currentTime -q", "2"));
    program.Mel("evalDeferred(\"quit -force\")");
    EXPECT_EQ(program.WaitForEnd(), 0);
}

} // namespace
