// The draw tool, by the pointer and the keyboard.

#include "journeys/window/RunningLightbox.h"

#include <QImage>

#include <functional>
#include <gtest/gtest.h>
#include <vector>

namespace {

constexpr unsigned DOWN = 0xff54;
constexpr unsigned RIGHT = 0xff53;

class DrawJourney : public ::testing::Test {
protected:
    DrawJourney() {
        m_folder.RunScript("qmVellixNode -l -f -c persp; file -rename \"a.ma\"; file -save -type "
                           "\"mayaAscii\";");
        m_program = std::make_unique<RunningLightbox>(m_folder, QStringList{"-file", m_folder.Path("a.ma")});
        m_middle = m_program->Place("modelPanel4").center();
    }

    /// The drawing at frame 1, as it would be exported.
    QImage Drawing() {
        const QString file = m_folder.Path("out.####.png");
        m_program->Mel("qmVellixExport -file \"" + file + "\" -camera persp -startTime 1 -endTime 1");
        QImage image(m_folder.Path("out.0001.png"));
        EXPECT_FALSE(image.isNull()) << m_program->Messages().toStdString();
        return image.convertToFormat(QImage::Format_ARGB32);
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
    QImage before = Drawing();
    for (const char* renderer : {"vp2Renderer", "base_OpenGL_Renderer"}) {
        m_program->Mel(QString("modelEditor -e -rendererName \"%1\" modelPanel4").arg(renderer));
        for (const Step& step : steps) {
            SCOPED_TRACE(std::string(renderer) + ": " + step.name);
            Tool(step.name);
            step.does();
            RunningLightbox::Rest(100);
            const QImage after = Drawing();
            EXPECT_NE(after, before);
            m_program->Type('z', RunningLightbox::Control);
            EXPECT_EQ(Drawing(), before);
            m_program->Mel("redo");
            EXPECT_EQ(Drawing(), after);
            before = after;
        }
        m_middle += QPoint(20, 90);
    }
    m_program->Mel("file -save; file -force -new; file -open \"" + m_folder.Path("a.ma") + "\"");
    EXPECT_EQ(Drawing(), before);
    EXPECT_EQ(m_program->Messages().count("Error"), 0);
}

// The way of a hand: the tool from the shelf, another one and a larger one without leaving the view.
TEST_F(DrawJourney, ToolsAreChosenAndSizedInTheView) {
    m_program->Mel("qmVellixUtil -brushTool; qmVellixUtil -brushOptions 10 100 100 0");
    m_program->Mel("setToolTo selectSuperContext; qmVellixUtil -draw");
    ASSERT_TRUE(m_program->Becomes("currentCtx", "qmVxDrawCtx1"));
    m_program->MoveTo(At(0, 0));
    m_program->Hold('b');
    m_program->Drag(At(0, 0), At(200, 0));
    m_program->LetGo('b');
    RunningLightbox::Rest(100);
    const QImage empty = Drawing();
    m_program->Drag(At(-100, 0), At(0, 0));
    RunningLightbox::Rest(100);
    const QImage thick = Drawing();
    EXPECT_NE(thick, empty);
    int height = 0;
    for (int y = 0; y < thick.height(); ++y) {
        height += qAlpha(thick.pixel(thick.width() / 2 - 30, y)) > 128;
    }
    EXPECT_GE(height, 18);

    // The layer's item, Transform, and in the menu of tools after the pencil and the brush the eraser.
    m_program->Click(At(50, 50), RunningLightbox::Right);
    RunningLightbox::Rest(200);
    for (const unsigned key : {DOWN, DOWN, DOWN, RIGHT, DOWN, DOWN}) {
        m_program->Type(key);
    }
    m_program->Type(RunningLightbox::Return);
    RunningLightbox::Rest(200);
    m_program->Drag(At(-120, 0), At(20, 0));
    RunningLightbox::Rest(100);
    const QImage erased = Drawing();
    int left = 0;
    for (int y = 0; y < erased.height(); ++y) {
        for (int x = 0; x < erased.width(); ++x) {
            left += qAlpha(erased.pixel(x, y)) > 0;
        }
    }
    EXPECT_EQ(left, 0) << "the eraser is larger than the brush";
    EXPECT_EQ(m_program->Messages().count("Error"), 0);
}
