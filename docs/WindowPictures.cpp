// window_pictures SCENE FOLDER: uses Lightbox's window, with an empty scene and with the demo's scene, and
// writes pictures of it to the folder.

#include "journeys/window/RunningLightbox.h"

#include <QDir>
#include <QGuiApplication>
#include <QPainter>

#include <cmath>
#include <gtest/gtest.h>

namespace {

constexpr int FRAMES = 24;

/// Runs the program and takes pictures of its window.
class Photographer {
public:
    /// Starts the program with the arguments.
    Photographer(const Lightbox& home, const QStringList& arguments, const QString& folder)
        : m_program(home, arguments + QStringList{"-script", home.Path("item.mel")})
        , m_folder(folder) {}

    void Take(const QString& name, const QString& control = QString()) {
        RunningLightbox::Rest(250);
        m_program.Grab(control).save(m_folder.filePath(name + ".png"));
    }
    QString Item(const QString& menu, const QString& label) {
        return m_program.Mel("pictureItem \"" + menu + "\" \"" + label + "\"");
    }

    void TakeViews();
    void TakePanAndZoom();
    void TakeSlider();
    void TakeMenus();
    void TakeFloatingView();
    void TakeTransform();
    /// Needs an empty scene.
    void TakeFirstSketch();

private:
    /// Returns the screen position of a frame on the time slider.
    QPoint FrameAt(int frame);
    /// Draws an ellipse by hand. Width and height are its half axes; all lengths are pixels of the program.
    void DrawBall(const QPoint& centre, double width, double height);

    RunningLightbox m_program;
    QDir m_folder;
};

void Photographer::TakeViews() {
    m_program.Mel("currentTime 9; qmVellixUtil -e -ghostPrevious 1; qmVellixUtil -e -ghostNext 1");
    Take("window");
    m_program.Mel("modelEditor -e -rendererName \"base_OpenGL_Renderer\" modelPanel4");
    Take("window_legacy");
    m_program.Mel("modelEditor -e -rendererName \"vp2Renderer\" modelPanel4");
    m_program.Mel("setNamedPanelLayout \"Four View\"");
    Take("four_views");
    m_program.Mel("setNamedPanelLayout \"Two Panes Side by Side\"");
    Take("two_views");
    m_program.Mel("setNamedPanelLayout \"Single View\"");
}

void Photographer::TakePanAndZoom() {
    RunningLightbox::Rest(200);
    const QPoint centre = m_program.Place("modelPanel4").center();
    m_program.MoveTo(centre);
    m_program.Hold(RunningLightbox::Backslash);
    m_program.Drag(centre, centre + QPoint(160, 90), RunningLightbox::Middle);
    m_program.Drag(centre, centre + QPoint(160, 0), RunningLightbox::Right);
    m_program.LetGo(RunningLightbox::Backslash);
    Take("pan_zoom_on");
    m_program.Mel("camera -e -panZoomEnabled 0 persp");
    Take("pan_zoom_off");
}

QPoint Photographer::FrameAt(int frame) {
    const QRect slider = m_program.Place("timeControl1");
    const double perFrame = slider.width() * 0.99 / FRAMES;
    return {qRound(slider.left() + slider.width() * 0.005 + (frame - 0.5) * perFrame),
            slider.top() + slider.height() / 3};
}

void Photographer::TakeSlider() {
    m_program.Click("shelfButton1");
    m_program.Click(FrameAt(7));
    RunningLightbox::Rest(500);
    m_program.Hold(RunningLightbox::Shift);
    m_program.Drag(FrameAt(5), FrameAt(9));
    m_program.LetGo(RunningLightbox::Shift);
    Take("slider_range", "timeSliderBar");
    m_program.DragTo(FrameAt(7), FrameAt(13));
    Take("slider_dragged", "timeSliderBar");
    m_program.MoveTo(FrameAt(7));
    m_program.Release();
    m_program.Mel("setToolTo selectSuperContext");
    // A click beside the range clears it.
    m_program.Click(FrameAt(15));
    m_program.Mel("currentTime 9");
}

void Photographer::TakeMenus() {
    const QString menu = m_program.Mel("string $menu = $gQmVxMainMenu");
    int number = 0;
    for (const char* label : {"Draw Tool", "Layer", "Frame", "Ghosting", "Display Timeline Frames", "View",
                              "Utilities", "Cleanup"}) {
        m_program.Choose({menu, Item(menu, label)});
        Take(QString("menu_%1").arg(++number));
        for (int i = 0; i < 3; ++i) {
            m_program.Type(RunningLightbox::Escape);
        }
    }
    m_program.Choose({"mainFileMenu"});
    Take("menu_file");
    m_program.Type(RunningLightbox::Escape);
}

void Photographer::TakeFloatingView() {
    const QString menu = m_program.Mel("string $menu = $gQmVxMainMenu");
    const QString view = Item(menu, "View");
    m_program.Choose({menu, view, Item(view, "Move layers to Vellix View")});
    RunningLightbox::Rest(300);
    m_program.Type(RunningLightbox::Return);
    RunningLightbox::Rest(300);
    m_program.Mel(
        "camera -e -filmFit \"vertical\" -overscan 1.05 vellixCam; setAttr perspShape.displayResolution 0");
    Take("floating_view");
}

void Photographer::TakeTransform() {
    const QRect view = m_program.Place("modelPanel4");
    const QPoint ball = view.center() + QPoint(-107, 182); // the squashed ball of the demo
    m_program.Mel("currentTime 9; qmVellixUtil -e -ghostPrevious 0; qmVellixUtil -e -ghostNext 0");
    m_program.Click("shelfButton2");
    m_program.Drag(ball - QPoint(80, 55), ball + QPoint(80, 55));
    m_program.Type(RunningLightbox::Return);
    RunningLightbox::Rest(300);
    m_program.Hold(RunningLightbox::Shift);
    m_program.Drag(ball, ball + QPoint(25, 0));
    m_program.LetGo(RunningLightbox::Shift);
    Take("transforming", "modelPanel4");
    m_program.Type(RunningLightbox::Escape);
    m_program.Mel("setToolTo selectSuperContext");
}

void Photographer::DrawBall(const QPoint& centre, double width, double height) {
    const auto place = [&](double turn) {
        return centre + QPoint(qRound(width * std::cos(2.0 * M_PI * turn)),
                               qRound(height * std::sin(2.0 * M_PI * turn)));
    };
    constexpr int steps = 70;
    m_program.Press(place(0.0));
    for (int i = 1; i <= steps; ++i) {
        m_program.MoveTo(place(1.05 * i / steps));
        RunningLightbox::Rest(10);
    }
    m_program.Release();
    RunningLightbox::Rest(600); // else the next press is a double click
}

void Photographer::TakeFirstSketch() {
    struct Drawing {
        int frame;
        QPoint place;
        double height;
    };
    // A ball that falls, is squashed, and jumps.
    const Drawing drawings[] = {{1, {-300, -150}, 55.0}, {4, {-200, 20}, 62.0},  {7, {-110, 165}, 38.0},
                                {10, {-10, 30}, 62.0},   {13, {100, -60}, 55.0}, {16, {200, 30}, 60.0}};
    const QPoint centre = m_program.Place("modelPanel4").center();
    m_program.Mel("playbackOptions -ast 1 -min 1 -max 24 -aet 24");
    m_program.Click("shelfButton1");
    for (const Drawing& drawing : drawings) {
        m_program.Click(FrameAt(drawing.frame));
        DrawBall(centre + drawing.place, 55.0 * 55.0 / drawing.height, drawing.height);
        if (drawing.frame == 1) {
            Take("first_drawing");
            m_program.Mel("qmVellixUtil -e -ghostPrevious 1; qmVellixUtil -e -ghostNext 1");
        }
    }
    m_program.Click(FrameAt(10));
    Take("first_sketch");
}

} // namespace

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    if (argc != 3) {
        qCritical("usage: window_pictures SCENE FOLDER");
        return 1;
    }
    const Lightbox home;
    home.Write("item.mel", R"(global proc string pictureItem(string $menu, string $label) {
        string $item;
        for ($item in `menu -q -itemArray $menu`)
            if (`menuItem -q -label $item` == $label) return $item;
        return "";
    })");
    QDir().mkpath(argv[2]);
    Photographer(home, {}, argv[2]).TakeFirstSketch();
    Photographer photographer(home, {"-file", argv[1]}, argv[2]);
    photographer.TakeViews();
    photographer.TakeTransform();
    photographer.TakePanAndZoom();
    photographer.TakeSlider();
    photographer.TakeMenus();
    photographer.TakeFloatingView();
    return ::testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed() ? 1 : 0;
}
