// The draw tool, by the pointer and the keyboard.

#include "journeys/window/RunningLightbox.h"

#include <QImage>
#include <QMap>

#include <functional>
#include <gtest/gtest.h>
#include <vector>

namespace {

class DrawJourney : public ::testing::Test {
protected:
    DrawJourney() {
        folder_.RunScript("qmVellixNode -l -c persp; qmVellixReplay -camera persp -file "
                          "\"" VELLIX_SOURCE_FOLDER "/demo/rough.json\"; currentTime 1;"
                          "qmVellixLayer -add -ls 0 front; qmVellixLayer -add -ls 0 -n \"Clean-up\" persp;"
                          "file -rename \"a.ma\"; file -save -type \"mayaAscii\";");
        program_ = std::make_unique<RunningLightbox>(folder_, QStringList{"-file", folder_.Path("a.ma")});
        middle_ = program_->Place("modelPanel4").center();
    }

    QPoint At(int x, int y) const { return middle_ + QPoint(x, y); }
    void Tool(const char* flag) { program_->Mel(QString("qmVellixUtil -%1Tool").arg(flag)); }
    void Text(const char* text) {
        for (; *text != '\0'; ++text) {
            program_->Type(static_cast<unsigned char>(*text));
        }
    }

    Lightbox folder_;
    std::unique_ptr<RunningLightbox> program_;
    QPoint middle_;
};

} // namespace

TEST_F(DrawJourney, EveryToolDrawsAndIsUndoneAndKept) {
    const auto drag = [this](int x, int y) { return [=] { program_->Drag(At(x, y), At(x + 60, y + 40)); }; };
    struct Step {
        const char* name;
        std::function<void()> does;
    };
    const std::vector<Step> steps = {
        {"pencil", drag(-200, -100)},
        {"brush", drag(-100, -100)},
        {"line", drag(0, -100)},
        {"arrow", drag(100, -100)},
        {"ellipse", drag(-200, 0)},
        {"rectangle", drag(-100, 0)},
        {"text",
         [=] {
             program_->Click(At(0, 0));
             Text("fast bam");
             program_->Type(RunningLightbox::Return);
             Text("2");
             program_->Type(RunningLightbox::Escape);
         }},
        {"eraser", drag(-110, -90)},
    };
    const struct {
        const char* renderer;
        const char* camera;
        const char* view;
    } rounds[] = {
        {"vp2Renderer", "persp", ""},
        {"base_OpenGL_Renderer", "front",
         "camera -e -panZoomEnabled 1 front; setAttr frontShape.zoom 0.8; setAttr frontShape.hpn 0.05"},
    };
    QMap<QString, QImage> drawn;
    for (const auto& round : rounds) {
        program_->Mel(QString("modelEditor -e -rendererName \"%1\" modelPanel4; lookThru modelPanel4 %2; %3")
                          .arg(round.renderer, round.camera, round.view));
        program_->Settle();
        QImage before = program_->Drawing(round.camera);
        for (const Step& step : steps) {
            SCOPED_TRACE(std::string(round.renderer) + ": " + step.name);
            Tool(step.name);
            step.does();
            const QImage after = program_->ChangedDrawing(before, round.camera);
            EXPECT_NE(after, before);
            program_->Type('z', RunningLightbox::Control);
            EXPECT_EQ(program_->ChangedDrawing(after, round.camera), before);
            program_->Mel("redo");
            EXPECT_EQ(program_->Drawing(round.camera), after);
            before = after;
        }
        drawn[round.camera] = before;
    }
    program_->Mel("file -save; file -force -new; file -open \"" + folder_.Path("a.ma") + "\"");
    for (const auto& round : rounds) {
        EXPECT_EQ(program_->Drawing(round.camera), drawn[round.camera]);
    }
    EXPECT_EQ(program_->Messages().count("Error"), 0);
}

// The way of a hand: the tool from the shelf, another one and a larger one without leaving the view.
TEST_F(DrawJourney, ToolsAreChosenAndSizedInTheView) {
    program_->Mel("file -force -new; qmVellixNode -l -f -c persp");
    program_->Mel("qmVellixUtil -brushTool; qmVellixUtil -brushOptions 10 100 100 0");
    program_->Mel("setToolTo selectSuperContext; qmVellixUtil -draw");
    ASSERT_TRUE(program_->Becomes("currentCtx", "qmVxDrawCtx1"));
    program_->MoveTo(At(0, 0));
    program_->Hold('b');
    program_->Drag(At(0, 0), At(200, 0));
    program_->LetGo('b');
    const QImage empty = program_->Drawing();
    program_->Drag(At(-100, 0), At(0, 0));
    const QImage thick = program_->ChangedDrawing(empty);
    EXPECT_NE(thick, empty);
    int height = 0;
    for (int y = 0; y < thick.height(); ++y) {
        height += qAlpha(thick.pixel(thick.width() / 2 - 30, y)) > 128;
    }
    EXPECT_GE(height, 18);

    // The layer's item, Transform, and in the menu of tools after the pencil and the brush the eraser.
    program_->Click(At(50, 50), RunningLightbox::Right);
    for (const unsigned key :
         {RunningLightbox::ArrowDown, RunningLightbox::ArrowDown, RunningLightbox::ArrowDown,
          RunningLightbox::ArrowRight, RunningLightbox::ArrowDown, RunningLightbox::ArrowDown}) {
        program_->Type(key);
    }
    program_->Type(RunningLightbox::Return);
    program_->Drag(At(-120, 0), At(20, 0));
    const QImage erased = program_->ChangedDrawing(thick);
    int left = 0;
    for (int y = 0; y < erased.height(); ++y) {
        for (int x = 0; x < erased.width(); ++x) {
            left += qAlpha(erased.pixel(x, y)) > 0;
        }
    }
    EXPECT_EQ(left, 0) << "the eraser is larger than the brush";
    EXPECT_EQ(program_->Messages().count("Error"), 0);
}
