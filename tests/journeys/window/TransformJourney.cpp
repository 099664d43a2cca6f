// The transform tool, by the pointer and the keyboard.

#include "journeys/window/RunningLightbox.h"

#include <QPainter>

#include <functional>
#include <gtest/gtest.h>
#include <vector>

namespace {

/// Items of the tool's menus, counted from the top as the Down key goes; Paste can be chosen once something
/// is copied.
enum InSelectStage {
    TransformItem = 1,
    TransformCopyItem,
    CutItem,
    CopyItem,
    PasteItem,
    PasteAndTransformItem
};
enum InTransformStage { ApplyItem = 1, RevertItem, FlipHorizontalItem, FlipVerticalItem };

constexpr unsigned BACKSPACE = 0xff08;

class TransformJourney : public ::testing::Test {
protected:
    TransformJourney() {
        folder_.Write("strokes.json",
                      R"({"format": "vellix-strokes", "version": 1, "size": 1024, "strokes": [
            {"frame": 1, "tool": "brush", "size": 40, "opacity": 90, "hardness": 60, "color": [200, 40, 20],
             "samples": [[440,470,1,0],[470,500,0.8,50],[520,500,0.6,100],[560,530,0.4,150]]},
            {"frame": 1, "tool": "pencil", "size": 6, "opacity": 60, "hardness": 100, "color": [20, 40, 160],
             "samples": [[430,460,1,0],[500,540,0.8,50],[580,470,0.9,100]]}]})");
        folder_.RunScript("qmVellixNode -l -c persp; qmVellixReplay -file \"strokes.json\" -camera persp;"
                          "currentTime 1; file -rename \"a.ma\"; file -save -type \"mayaAscii\";");
        program_ = std::make_unique<RunningLightbox>(folder_, QStringList{"-file", folder_.Path("a.ma")});
        // What is drawn in software is drawn sooner when it is small.
        program_->Mel("window -e -widthHeight 900 720 MayaWindow");
        program_->Settle();
        middle_ = program_->Place("modelPanel4").center();
    }

    void Use(const char* renderer) {
        program_->Mel(QString("modelEditor -e -rendererName \"%1\" modelPanel4").arg(renderer));
    }
    QPoint At(int x, int y) const { return middle_ + QPoint(x, y); }
    /// All of the drawing, wherever the steps have put it.
    void Select() { program_->Drag(At(-150, -110), At(110, 100)); }
    void Menu(int item) {
        program_->Click(At(-130, -95), RunningLightbox::Right); // pasted from there
        for (int i = 0; i < item; ++i) {
            program_->Hold(RunningLightbox::ArrowDown);
            program_->LetGo(RunningLightbox::ArrowDown);
        }
        program_->Type(RunningLightbox::Return);
    }
    void Enter() { program_->Type(RunningLightbox::Return); }
    void WithShift(const std::function<void()>& does) {
        program_->Hold(RunningLightbox::Shift);
        does();
        program_->LetGo(RunningLightbox::Shift);
    }
    void Move() { program_->Drag(At(-100, 80), At(-92, 73)); }
    void Rotate() {
        WithShift([this] { program_->Drag(At(-100, 80), At(-63, 90)); });
    }
    void Scale() { program_->Drag(At(-100, 80), At(0, 80), RunningLightbox::Middle); }

    Lightbox folder_;
    std::unique_ptr<RunningLightbox> program_;
    QPoint middle_;
};

TEST_F(TransformJourney, TwentyStepsAreUndoneAndRedoneExactly) {
    struct Step {
        const char* name;
        std::function<void()> does;
        bool changes = true;
    };
    const auto transformed = [this](std::initializer_list<std::function<void()>> drags) {
        return [this, drags = std::vector<std::function<void()>>(drags)] {
            Select();
            Enter();
            for (const auto& drag : drags) {
                drag();
            }
            Enter();
        };
    };
    const auto move = [this] { Move(); };
    const auto rotate = [this] { Rotate(); };
    const auto scale = [this] { Scale(); };
    const auto scaleFreely = [this] { WithShift([this] { Scale(); }); };
    const auto flipHorizontal = [this] { Menu(FlipHorizontalItem); };
    const auto flipVertical = [this] { Menu(FlipVerticalItem); };
    const std::vector<Step> steps = {
        {"move", transformed({move})},
        {"rotate", transformed({rotate})},
        {"scale", transformed({scale})},
        {"scale freely", transformed({scaleFreely})},
        {"flip horizontally", transformed({flipHorizontal})},
        {"flip vertically", transformed({flipVertical})},
        {"all together", transformed({move, rotate, scale, flipHorizontal})},
        {"move the whole image",
         [=] {
             Enter();
             Move();
             Enter();
         }},
        {"copy", [=] { Select(), Menu(CopyItem); }, false},
        {"paste", [=] { Menu(PasteItem); }},
        {"cut", [=] { Select(), Menu(CutItem); }},
        {"paste what was cut", [=] { Menu(PasteItem); }},
        {"paste and transform",
         [=] {
             Menu(PasteAndTransformItem);
             Move();
             Rotate();
             Menu(ApplyItem);
         }},
        {"transform a copy",
         [=] {
             Select();
             Menu(TransformCopyItem);
             Move();
             Enter();
         }},
        {"transform from the menu",
         [=] {
             Select();
             Menu(TransformItem);
             Scale();
             Menu(ApplyItem);
         }},
        {"revert by key", [=] { Select(), Enter(), Move(), program_->Type(BACKSPACE); }, false},
        {"revert from the menu", [=] { Select(), Enter(), Rotate(), Menu(RevertItem); }, false},
        {"revert a paste", [=] { Menu(PasteAndTransformItem), Move(), program_->Type(BACKSPACE); }, false},
        {"move at last", transformed({move})},
        {"cancel", [=] { Select(), Enter(), Move(), program_->Type(RunningLightbox::Escape); }, false},
    };
    QImage before = program_->Drawing();
    for (const char* renderer : {"vp2Renderer", "base_OpenGL_Renderer"}) {
        Use(renderer);
        program_->Mel("qmVellixUtil -transform");
        EXPECT_TRUE(program_->Becomes("currentCtx", "qmVxTransformCtx1"));
        for (const Step& step : steps) {
            SCOPED_TRACE(std::string(renderer) + ": " + step.name);
            step.does();
            if (!step.changes) {
                EXPECT_EQ(program_->Drawing(), before);
                continue;
            }
            const QImage after = program_->ChangedDrawing(before);
            EXPECT_NE(after, before);
            program_->Type('z', RunningLightbox::Control);
            EXPECT_EQ(program_->ChangedDrawing(after), before);
            program_->Mel("redo");
            EXPECT_EQ(program_->Drawing(), after);
            before = after;
        }
        EXPECT_TRUE(program_->Becomes("currentCtx", "qmVxDrawCtx1")) << "where a cancelled transform ends";
    }
    EXPECT_EQ(program_->Messages().count("Error"), 0);
}

} // namespace
