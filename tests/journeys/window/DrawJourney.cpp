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
        m_folder.RunScript("qmVellixNode -l -c persp; qmVellixReplay -camera persp -file "
                           "\"" VELLIX_SOURCE_FOLDER "/demo/rough.json\"; currentTime 1;"
                           "qmVellixLayer -add -ls 0 front; qmVellixLayer -add -ls 0 -n \"Clean-up\" persp;"
                           "file -rename \"a.ma\"; file -save -type \"mayaAscii\";");
        m_program = std::make_unique<RunningLightbox>(m_folder, QStringList{"-file", m_folder.Path("a.ma")});
        m_middle = m_program->Place("modelPanel4").center();
    }

    QPoint At(int x, int y) const { return m_middle + QPoint(x, y); }
    void Tool(const char* flag) { m_program->Mel(QString("qmVellixUtil -%1Tool").arg(flag)); }
    void Text(const char* text) {
        for (; *text != '\0'; ++text) {
            m_program->Type(static_cast<unsigned char>(*text));
        }
    }

    Lightbox m_folder;
    std::unique_ptr<RunningLightbox> m_program;
    QPoint m_middle;
};

} // namespace

TEST_F(DrawJourney, EveryToolDrawsAndIsUndoneAndKept) {
    const auto drag = [this](int x, int y) { return [=] { m_program->Drag(At(x, y), At(x + 60, y + 40)); }; };
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
             m_program->Click(At(0, 0));
             Text("fast bam");
             m_program->Type(RunningLightbox::Return);
             Text("2");
             m_program->Type(RunningLightbox::Escape);
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
        m_program->Mel(QString("modelEditor -e -rendererName \"%1\" modelPanel4; lookThru modelPanel4 %2; %3")
                           .arg(round.renderer, round.camera, round.view));
        m_program->Settle();
        QImage before = m_program->Drawing(round.camera);
        for (const Step& step : steps) {
            SCOPED_TRACE(std::string(round.renderer) + ": " + step.name);
            Tool(step.name);
            step.does();
            const QImage after = m_program->ChangedDrawing(before, round.camera);
            EXPECT_NE(after, before);
            m_program->Type('z', RunningLightbox::Control);
            EXPECT_EQ(m_program->ChangedDrawing(after, round.camera), before);
            m_program->Mel("redo");
            EXPECT_EQ(m_program->Drawing(round.camera), after);
            before = after;
        }
        drawn[round.camera] = before;
    }
    m_program->Mel("file -save; file -force -new; file -open \"" + m_folder.Path("a.ma") + "\"");
    for (const auto& round : rounds) {
        EXPECT_EQ(m_program->Drawing(round.camera), drawn[round.camera]);
    }
    EXPECT_EQ(m_program->Messages().count("Error"), 0);
}

// The way of a hand: the tool from the shelf, another one and a larger one without leaving the view.
TEST_F(DrawJourney, ToolsAreChosenAndSizedInTheView) {
    m_program->Mel("file -force -new; qmVellixNode -l -f -c persp");
    m_program->Mel("qmVellixUtil -brushTool; qmVellixUtil -brushOptions 10 100 100 0");
    m_program->Mel("setToolTo selectSuperContext; qmVellixUtil -draw");
    ASSERT_TRUE(m_program->Becomes("currentCtx", "qmVxDrawCtx1"));
    m_program->MoveTo(At(0, 0));
    m_program->Hold('b');
    m_program->Drag(At(0, 0), At(200, 0));
    m_program->LetGo('b');
    const QImage empty = m_program->Drawing();
    m_program->Drag(At(-100, 0), At(0, 0));
    const QImage thick = m_program->ChangedDrawing(empty);
    EXPECT_NE(thick, empty);
    int height = 0;
    for (int y = 0; y < thick.height(); ++y) {
        height += qAlpha(thick.pixel(thick.width() / 2 - 30, y)) > 128;
    }
    EXPECT_GE(height, 18);

    // The layer's item, Transform, and in the menu of tools after the pencil and the brush the eraser.
    m_program->Click(At(50, 50), RunningLightbox::Right);
    for (const unsigned key :
         {RunningLightbox::ArrowDown, RunningLightbox::ArrowDown, RunningLightbox::ArrowDown,
          RunningLightbox::ArrowRight, RunningLightbox::ArrowDown, RunningLightbox::ArrowDown}) {
        m_program->Type(key);
    }
    m_program->Type(RunningLightbox::Return);
    m_program->Drag(At(-120, 0), At(20, 0));
    const QImage erased = m_program->ChangedDrawing(thick);
    int left = 0;
    for (int y = 0; y < erased.height(); ++y) {
        for (int x = 0; x < erased.width(); ++x) {
            left += qAlpha(erased.pixel(x, y)) > 0;
        }
    }
    EXPECT_EQ(left, 0) << "the eraser is larger than the brush";
    EXPECT_EQ(m_program->Messages().count("Error"), 0);
}
