// window_pictures SCENE FOLDER: uses Lightbox's window, with an empty scene and with the demo's scene, and
// writes pictures of it to the folder.

#include "journeys/window/RunningLightbox.h"

#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <cmath>
#include <gtest/gtest.h>
#include <utility>

namespace {

constexpr int FRAMES = 24;

/// Runs the program and takes pictures of its window.
class Photographer {
public:
    /// Starts the program with the arguments.
    Photographer(const Lightbox& home, const QStringList& arguments, const QString& folder)
        : program_(home, arguments + QStringList{"-script", home.Path("item.mel")})
        , folder_(folder) {}

    void Take(const QString& name, const QString& control = QString()) {
        RunningLightbox::Rest(250);
        program_.Grab(control).save(folder_.filePath(name + ".png"));
    }
    QString Item(const QString& menu, const QString& label) {
        return program_.Mel("pictureItem \"" + menu + "\" \"" + label + "\"");
    }

    void TakeViews();
    void TakeLightTable();
    void TakePressure();
    void TakePanAndZoom();
    void TakeSlider();
    void TakeMenus();
    void TakeDialogs();
    void TakeFloatingView();
    void TakeTransform();
    /// Needs an empty scene.
    void TakeFirstSketch();

private:
    /// Returns the screen position of a frame on the time slider.
    QPoint FrameAt(int frame);
    /// Draws an ellipse by hand. Width and height are its half axes; all lengths are pixels of the program.
    void DrawBall(const QPoint& centre, double width, double height);

    RunningLightbox program_;
    QDir folder_;
};

void Photographer::TakeViews() {
    program_.Mel("currentTime 9; qmVellixUtil -e -ghostPrevious 1; qmVellixUtil -e -ghostNext 1");
    Take("window");
    program_.Mel("modelEditor -e -rendererName \"base_OpenGL_Renderer\" modelPanel4");
    Take("window_legacy");
    program_.Mel("modelEditor -e -rendererName \"vp2Renderer\" modelPanel4");
    program_.Mel("setNamedPanelLayout \"Four View\"");
    Take("four_views");
    program_.Mel("setNamedPanelLayout \"Two Panes Side by Side\"");
    Take("two_views");
    program_.Mel("setNamedPanelLayout \"Single View\"");
}

void Photographer::TakeLightTable() {
    program_.Mel(
        "currentTime 3; qmVellixUtil -e -pinDrawing 1; currentTime 9; qmVellixUtil -e -ghostLayers 2; "
        "qmVellixUtil -e -otherLayersOpacity 40");
    Take("light_table", "modelPanel4");
    program_.Mel(
        "qmVellixUtil -unpinAll; qmVellixUtil -e -ghostLayers 0; qmVellixUtil -e -otherLayersOpacity 100");
}

/// The tool options unfolded, with what a hand has drawn on the strip.
void Photographer::TakePressure() {
    program_.Mel(
        "qmVellixUtil -pencilTool; qmVellixUtil -pencilOptions 24 100 1; "
        "qmVellixUtil -e -pencilSizePressure 1 15 60 35; qmVellixUtil -e -pencilOpacityPressure 30 50 70; "
        "qmVellixUtil -toolOptions");
    program_.Click("qmVxToolOptionsPressureShown");
    RunningLightbox::Rest(300);
    Take("pressure", "qmVxToolOptions");
    program_.Mel("qmVellixUtil -pencilOptions 6 100 0; qmVellixUtil -e -pencilSizePressure 0 0 50 50; "
                 "qmVellixUtil -e -pencilOpacityPressure 0 50 50");
    program_.Click("qmVxToolOptionsPressureShown");
}

void Photographer::TakePanAndZoom() {
    RunningLightbox::Rest(200);
    const QPoint centre = program_.Place("modelPanel4").center();
    program_.MoveTo(centre);
    program_.Hold(RunningLightbox::Backslash);
    program_.Drag(centre, centre + QPoint(160, 90), RunningLightbox::Middle);
    program_.Drag(centre, centre + QPoint(160, 0), RunningLightbox::Right);
    program_.LetGo(RunningLightbox::Backslash);
    Take("pan_zoom_on");
    program_.Mel("camera -e -panZoomEnabled 0 persp");
    Take("pan_zoom_off");
}

QPoint Photographer::FrameAt(int frame) {
    const QRect slider = program_.Place("timeControl1");
    const double perFrame = slider.width() * 0.99 / FRAMES;
    return {qRound(slider.left() + slider.width() * 0.005 + (frame - 0.5) * perFrame),
            slider.top() + slider.height() / 3};
}

void Photographer::TakeSlider() {
    program_.Click("shelfButton1");
    program_.Click(FrameAt(7));
    RunningLightbox::Rest(500);
    program_.Hold(RunningLightbox::Shift);
    program_.Drag(FrameAt(5), FrameAt(9));
    program_.LetGo(RunningLightbox::Shift);
    Take("slider_range", "timeSliderBar");
    program_.DragTo(FrameAt(7), FrameAt(13));
    Take("slider_dragged", "timeSliderBar");
    program_.MoveTo(FrameAt(7));
    program_.Release();
    program_.Mel("setToolTo selectSuperContext");
    // A click beside the range clears it.
    program_.Click(FrameAt(15));
    program_.Mel("currentTime 9");
}

void Photographer::TakeMenus() {
    const QString menu = program_.Mel("string $menu = $gQmVxMainMenu");
    int number = 0;
    for (const char* label : {"Draw Tool", "Layer", "Frame", "Ghosting", "Display Timeline Frames", "View",
                              "Utilities", "Cleanup"}) {
        program_.Choose({menu, Item(menu, label)});
        Take(QString("menu_%1").arg(++number));
        for (int i = 0; i < 3; ++i) {
            program_.Type(RunningLightbox::Escape);
        }
    }
    program_.Choose({"mainFileMenu"});
    Take("menu_file");
    program_.Type(RunningLightbox::Escape);
}

/// The file dialogs, which open in the middle of the window, from the file's name down to the options.
void Photographer::TakeDialogs() {
    const QRect part(-342, -16, 664, 345); // from the middle
    for (const auto& dialog : {std::make_pair("import_pictures", "qmVxImportPictures"),
                               std::make_pair("export_layers", "qmVxExportLayers")}) {
        program_.Mel(QString("evalDeferred \"%1\"").arg(dialog.second));
        RunningLightbox::Rest(1500);
        const QImage window = program_.Grab(QString());
        window.copy(part.translated(window.rect().center()))
            .save(folder_.filePath(QString(dialog.first) + ".png"));
        program_.Type(RunningLightbox::Escape);
        RunningLightbox::Rest(250);
    }
}

void Photographer::TakeFloatingView() {
    const QString menu = program_.Mel("string $menu = $gQmVxMainMenu");
    const QString view = Item(menu, "View");
    program_.Choose({menu, view, Item(view, "Move layers to Vellix View")});
    RunningLightbox::Rest(300);
    program_.Type(RunningLightbox::Return);
    RunningLightbox::Rest(300);
    program_.Mel(
        "camera -e -filmFit \"vertical\" -overscan 1.05 vellixCam; setAttr perspShape.displayResolution 0");
    Take("floating_view");
}

void Photographer::TakeTransform() {
    const QRect view = program_.Place("modelPanel4");
    const QPoint ball = view.center() + QPoint(-107, 182); // the squashed ball of the demo
    program_.Mel("currentTime 9; qmVellixUtil -e -ghostPrevious 0; qmVellixUtil -e -ghostNext 0");
    program_.Click("shelfButton2");
    program_.Drag(ball - QPoint(80, 55), ball + QPoint(80, 55));
    program_.Type(RunningLightbox::Return);
    RunningLightbox::Rest(300);
    program_.Hold(RunningLightbox::Shift);
    program_.Drag(ball, ball + QPoint(25, 0));
    program_.LetGo(RunningLightbox::Shift);
    Take("transforming", "modelPanel4");
    program_.Type(RunningLightbox::Escape);
    program_.Mel("setToolTo selectSuperContext");
}

void Photographer::DrawBall(const QPoint& centre, double width, double height) {
    const auto place = [&](double turn) {
        return centre + QPoint(qRound(width * std::cos(2.0 * M_PI * turn)),
                               qRound(height * std::sin(2.0 * M_PI * turn)));
    };
    constexpr int steps = 70;
    program_.Press(place(0.0));
    for (int i = 1; i <= steps; ++i) {
        program_.MoveTo(place(1.05 * i / steps));
        RunningLightbox::Rest(10);
    }
    program_.Release();
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
    const QPoint centre = program_.Place("modelPanel4").center();
    program_.Mel("playbackOptions -ast 1 -min 1 -max 24 -aet 24");
    program_.Click("shelfButton1");
    for (const Drawing& drawing : drawings) {
        program_.Click(FrameAt(drawing.frame));
        DrawBall(centre + drawing.place, 55.0 * 55.0 / drawing.height, drawing.height);
        if (drawing.frame == 1) {
            Take("first_drawing");
            program_.Mel("qmVellixUtil -e -ghostPrevious 1; qmVellixUtil -e -ghostNext 1");
        }
    }
    program_.Click(FrameAt(10));
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
    photographer.TakeLightTable();
    photographer.TakeTransform();
    photographer.TakePanAndZoom();
    photographer.TakeSlider();
    photographer.TakeMenus();
    photographer.TakeDialogs();
    photographer.TakeFloatingView();
    photographer.TakePressure();
    return ::testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed() ? 1 : 0;
}
