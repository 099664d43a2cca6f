// window_pictures SCENE FOLDER: uses Lightbox's window on the demo's scene and writes what is seen into the
// folder.

#include "journeys/window/RunningLightbox.h"

#include <QDir>
#include <QGuiApplication>
#include <QPainter>

#include <gtest/gtest.h>

namespace {

constexpr int FRAMES = 24;

/// The program with the demo's scene, and the pictures that are taken of it.
class Photographer {
public:
    Photographer(const Lightbox& home, const QString& scene, const QString& folder)
        : m_program(home, {"-file", scene, "-script", home.Path("item.mel")})
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

private:
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

void Photographer::TakeSlider() {
    const QRect slider = m_program.Place("timeControl1");
    const auto at = [&slider](int frame) {
        const double perFrame = slider.width() * 0.99 / FRAMES;
        return QPoint(qRound(slider.left() + slider.width() * 0.005 + (frame - 0.5) * perFrame),
                      slider.top() + slider.height() / 3);
    };
    m_program.Click("shelfButton1");
    m_program.Click(at(7));
    RunningLightbox::Rest(500);
    m_program.Hold(RunningLightbox::Shift);
    m_program.Drag(at(5), at(9));
    m_program.LetGo(RunningLightbox::Shift);
    Take("slider_range", "timeSliderBar");
    m_program.DragTo(at(7), at(13));
    Take("slider_dragged", "timeSliderBar");
    m_program.MoveTo(at(7));
    m_program.Release();
    m_program.Mel("setToolTo selectSuperContext");
    // Beside the range, which is gone with it.
    m_program.Click(at(15));
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
    Photographer photographer(home, argv[1], argv[2]);
    photographer.TakeViews();
    photographer.TakePanAndZoom();
    photographer.TakeSlider();
    photographer.TakeMenus();
    photographer.TakeFloatingView();
    return ::testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed() ? 1 : 0;
}
