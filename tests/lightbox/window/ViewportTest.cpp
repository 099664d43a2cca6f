#include "WindowFixture.h"
#include "openmaya/DrawList.h"
#include "scene/CameraView.h"
#include "viewport/GateOverlay.h"

#include <QAction>
#include <QImage>
#include <QOpenGLContext>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

#include <algorithm>
#include <utility>

using lightbox::ViewOptions;

class ViewportTest : public WindowFixture {
protected:
    /// Frames drawn by the view while the work is done and the loop comes to rest.
    unsigned Frames(const std::function<void()>& work) {
        Settle(150);
        const unsigned before = View().FrameCount();
        work();
        Settle(150);
        return View().FrameCount() - before;
    }
};

TEST_F(ViewportTest, IsDrawnOnceForEachTurnOfTheEventLoopAndOnlyWhenSomethingChanged) {
    Show();
    struct Row {
        const char* what;
        std::string mel;
        unsigned frames;
    };
    const Row rows[] = {{"nothing", "$nothing = 1", 0},
                        {"a hundred values", "for ($i = 0; $i < 100; ++$i) setAttr persp.tx $i", 1},
                        {"new nodes", "createNode locator; createNode transform -n a", 1},
                        {"the time", "currentTime 5; currentTime 6; currentTime 7", 1},
                        {"the selection", "select -cl", 1},
                        {"undo", "undo", 1},
                        {"a name", "rename a b", 1},
                        {"the tool", "setToolTo moveSuperContext", 1},
                        {"the frame rate", "currentUnit -time ntsc", 1},
                        {"an option", "modelEditor -e -grid 0 modelPanel4", 1},
                        {"the camera", "lookThru modelPanel4 top", 1},
                        {"what is drawn already", "setAttr top.tx 7; refresh -force", 1}};
    for (const Row& row : rows) {
        EXPECT_EQ(Frames([&] { Run(row.mel); }), row.frames) << row.what;
    }
    EXPECT_EQ(Frames([&] {
                  for (int i = 0; i < 5; ++i) {
                      host_->ui()->RefreshViews(false);
                  }
              }),
              1u);
    EXPECT_EQ(Frames([&] {
                  host_->ui()->RefreshViews(true);
                  host_->ui()->RefreshViews(true);
              }),
              2u)
        << "at once means at once";
}

TEST_F(ViewportTest, AWindowWithAViewIsAsSmallAsItIsAskedToBe) {
    Run("window -widthHeight 300 280 small; paneLayout; modelPanel -camera persp smallPanel; showWindow "
        "small");
    Settle(100);
    EXPECT_EQ(Run("window -q -width small").Shown(), "300");
    // The menus that have no room are behind an arrow that can be seen.
    auto* const panel = View("smallPanel").parentWidget();
    const auto* const more = panel->findChild<QToolButton*>("qt_menubar_ext_button");
    ASSERT_NE(more, nullptr);
    ASSERT_TRUE(more->isVisible());
    const QImage image =
        more->window()->grab(QRect(more->mapTo(more->window(), QPoint(0, 0)), more->size())).toImage();
    int lightest = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            lightest = std::max(lightest, qGray(image.pixel(x, y)));
        }
    }
    EXPECT_GT(lightest, 150);
}

// Tools of the legacy viewport invert what is below them: the highest bit of dark grey and of light grey
// would give two colours.
TEST_F(ViewportTest, TheBackgroundIsOnOneSideOfMidGrey) {
    Show();
    Run("modelEditor -e -grid 0 modelPanel4");
    Settle(100);
    const QImage picture = View().grabFramebuffer();
    for (int y = 20; y < picture.height() - 60; y += 10) {
        const QColor color = picture.pixelColor(picture.width() - 20, y);
        EXPECT_LT(std::max({color.red(), color.green(), color.blue()}), 128) << y;
    }
}

TEST_F(ViewportTest, HiddenViewsAreNotDrawn) {
    Show();
    const unsigned before = View("modelPanel1").FrameCount();
    Run("setAttr persp.tx 3");
    host_->ui()->RefreshViews(true);
    Settle();
    EXPECT_EQ(View("modelPanel1").FrameCount(), before);
}

TEST_F(ViewportTest, AFrameThatAsksForOthersAtOnceIsNotInterrupted) {
    Show();
    Run("setNamedPanelLayout \"Four View\"");
    Settle(150);
    const unsigned before = View("modelPanel1").FrameCount();
    bool isAsked = false;
    QObject::connect(&View(), &lightbox::ViewportWidget::Drawn, &View(), [&] {
        if (!std::exchange(isAsked, true)) {
            host_->ui()->RefreshViews(true);
            EXPECT_EQ(View("modelPanel1").FrameCount(), before);
            EXPECT_EQ(QOpenGLContext::currentContext(), View().context());
        }
    });
    View().Refresh(true);
    Settle(150);
    EXPECT_EQ(View("modelPanel1").FrameCount(), before + 1);
}

TEST_F(ViewportTest, LooksThroughACameraUntilItGoes) {
    Show();
    Run("camera -n shot");
    QSignalSpy changed(&View(), &lightbox::ViewportWidget::CameraChanged);
    EXPECT_TRUE(Panel("modelPanel4").LookThrough("shot1"));
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(View().Camera()->Name(), "shotShape1");
    EXPECT_FALSE(Panel("modelPanel4").LookThrough("nobody"));
    EXPECT_FALSE(Panel("modelPanel4").LookThrough("time1"));
    EXPECT_EQ(View().Camera()->Name(), "shotShape1");
    Run("rename shot1 take");
    EXPECT_EQ(View().Camera()->Parent()->Name(), "take");
    Run("delete take");
    EXPECT_EQ(View().Camera()->Parent()->Name(), "persp");
    // A scene that is opened anew brings a camera of that name again.
    Panel("modelPanel2").LookThrough("side");
    Run("file -f -new");
    EXPECT_EQ(View("modelPanel2").Camera()->Parent()->Name(), "side");
    EXPECT_EQ(View("modelPanel2").Camera()->InScene(), &host_->scene());
    Settle();
}

TEST_F(ViewportTest, LooksThroughAnotherCameraWhenThePerspectiveOneIsRenamed) {
    Show();
    Run("rename persp hero; string $made[] = `camera`; lookThru modelPanel4 $made[0]; delete $made[0]");
    ASSERT_TRUE(View().Camera());
    EXPECT_EQ(View().Camera()->InScene(), &host_->scene());
    Settle();
}

TEST_F(ViewportTest, AltDragsNavigateAndTheRestIsTheToolsOwn) {
    Show();
    const QPoint center = View().rect().center();
    const double before = Number("persp.rotateY");
    QTest::mousePress(&View(), Qt::LeftButton, Qt::AltModifier, center);
    QMouseEvent move(QEvent::MouseMove, center + QPoint(50, 0), Qt::NoButton, Qt::LeftButton,
                     Qt::AltModifier);
    QApplication::sendEvent(&View(), &move);
    QTest::mouseRelease(&View(), Qt::LeftButton, Qt::AltModifier, center + QPoint(50, 0));
    EXPECT_LT(Number("persp.rotateY"), before - 1.0);
    const double after = Number("persp.rotateY");
    QTest::mousePress(&View(), Qt::LeftButton, Qt::NoModifier, center);
    QTest::mouseMove(&View(), center + QPoint(60, 0));
    QTest::mouseRelease(&View(), Qt::LeftButton, Qt::NoModifier, center + QPoint(60, 0));
    EXPECT_EQ(Number("persp.rotateY"), after);
}

TEST_F(ViewportTest, BackslashWithTheMiddleButtonPansThePicture) {
    Show();
    const QPoint center = View().rect().center();
    View().setFocus();
    QTest::keyPress(&View(), Qt::Key_Backslash);
    QTest::mousePress(&View(), Qt::MiddleButton, Qt::NoModifier, center);
    QMouseEvent move(QEvent::MouseMove, center + QPoint(40, 0), Qt::NoButton, Qt::MiddleButton,
                     Qt::NoModifier);
    QApplication::sendEvent(&View(), &move);
    QTest::mouseRelease(&View(), Qt::MiddleButton, Qt::NoModifier, center + QPoint(40, 0));
    QTest::keyRelease(&View(), Qt::Key_Backslash);
    EXPECT_EQ(Number("perspShape.panZoomEnabled"), 1.0);
    EXPECT_LT(Number("perspShape.horizontalPan"), 0.0);
}

TEST_F(ViewportTest, MenusSetTheOptionsOfTheirOwnViewAndShowThem) {
    Show();
    const auto action = [&](const char* panel, const QString& text) -> QAction* {
        for (QAction* candidate : Panel(panel).findChildren<QAction*>()) {
            if (candidate->text() == text) {
                return candidate;
            }
        }
        return nullptr;
    };
    ASSERT_NE(action("modelPanel4", "Legacy Viewport"), nullptr);
    action("modelPanel4", "Legacy Viewport")->trigger();
    EXPECT_FALSE(View().IsViewport2());
    EXPECT_TRUE(View("modelPanel1").IsViewport2());
    EXPECT_TRUE(action("modelPanel4", "Legacy Viewport")->isChecked());
    EXPECT_FALSE(action("modelPanel4", "Viewport 2.0")->isChecked());
    action("modelPanel4", "Viewport 2.0")->trigger();
    EXPECT_TRUE(View().IsViewport2());
    action("modelPanel4", "Grid")->trigger();
    EXPECT_FALSE(View().Options().display.grid);

    // The gates belong to the camera; a script's change shows in the buttons.
    action("modelPanel4", "Resolution Gate")->trigger();
    EXPECT_EQ(Number("perspShape.displayResolution"), 1.0);
    EXPECT_EQ(Number("perspShape.overscan"), 1.3) << "room for the gate";
    Run("setAttr perspShape.displayFilmGate 1");
    Settle();
    EXPECT_TRUE(action("modelPanel4", "Film Gate")->isChecked());
    Run("undo; undo");
    Settle();
    EXPECT_FALSE(action("modelPanel4", "Resolution Gate")->isChecked());
    EXPECT_EQ(Number("perspShape.overscan"), 1.0);
}

TEST_F(ViewportTest, GatesAreDrawnWhereTheCameraHasThem) {
    Run("setAttr perspShape.displayResolution 1; setAttr perspShape.displayGateMask 1;"
        "setAttr perspShape.overscan 1; setAttr defaultResolution.width 1280; setAttr "
        "defaultResolution.height 720");
    const auto camera = lightbox::ViewportWidget::FindCamera(host_->scene(), "persp");
    const lightbox::CameraView view(*camera, 1000, 800);
    const lightbox::DrawList items = lightbox::GateOverlay::Items(*camera, view, ViewOptions());
    const auto count = [&](const auto& condition) {
        return std::count_if(items.begin(), items.end(), condition);
    };
    // Horizontal fit: the gate is as wide as the view, and its mask lies above and below it only.
    EXPECT_EQ(count([](const lightbox::DrawItem& item) {
                  return item.kind == lightbox::DrawItem::Kind::Rectangle && !item.filled &&
                         std::abs(item.halfWidth - 500.0) < 0.01 && std::abs(item.halfHeight - 281.25) < 0.01;
              }),
              1);
    double masked = 0.0;
    for (const lightbox::DrawItem& item : items) {
        masked += item.filled ? item.halfWidth * item.halfHeight * 4.0 : 0.0;
    }
    EXPECT_NEAR(masked, 1000 * 800 - 1000 * 562.5, 1.0);
    const auto hasText = [&](const char* text) {
        return count([&](const lightbox::DrawItem& item) { return item.text == text; }) == 1;
    };
    EXPECT_TRUE(hasText("1280 x 720"));
    EXPECT_TRUE(hasText("persp"));
    Run("setAttr perspShape.displayResolution 0");
    EXPECT_EQ(lightbox::GateOverlay::Items(*camera, view, ViewOptions()).size(), 1u) << "the name alone";
}

TEST_F(ViewportTest, ContextsNestAndGiveBackWhatWasCurrent) {
    Show();
    QOpenGLContext* const before = QOpenGLContext::currentContext();
    View().BeginGl();
    EXPECT_EQ(QOpenGLContext::currentContext(), View().context());
    View().BeginGl();
    View().EndGl();
    EXPECT_EQ(QOpenGLContext::currentContext(), View().context());
    View().EndGl();
    EXPECT_EQ(QOpenGLContext::currentContext(), before);
    View().EndGl();
}

// A frame draws only what is another than in the picture before; not when that one is gone.
TEST_F(ViewportTest, APictureThatWasLostIsDrawnWhole) {
    Run("polySphere; select -cl");
    Show();
    QWidget* const home = View().parentWidget();
    const QRect place = View().geometry();
    QWidget elsewhere;
    elsewhere.resize(place.size());
    const QImage whole = View().grabFramebuffer();
    const struct {
        const char* what;
        std::function<void()> lose;
    } rows[] = {
        {"a tool drew over it",
         [this] {
             View().BeginGl();
             glClearColor(1.0f, 0.0f, 0.0f, 1.0f);
             glClear(GL_COLOR_BUFFER_BIT);
             View().EndGl();
         }},
        {"the other renderer drew, after a tool that left its scissors",
         [&] {
             View().BeginGl();
             glEnable(GL_SCISSOR_TEST);
             glScissor(0, 0, 1, 1);
             View().EndGl();
             ViewOptions options = View().Options();
             options.renderer = ViewOptions::Renderer::Legacy;
             View().SetOptions(options);
             Run("setAttr pSphere1.v 0");
             EXPECT_NE(View().grabFramebuffer(), whole);
             Run("setAttr pSphere1.v 1");
             options.renderer = ViewOptions::Renderer::Viewport2;
             View().SetOptions(options);
         }},
        {"there and back again in size",
         [&] {
             View().resize(place.size() / 2);
             View().resize(place.size());
         }},
        {"another window",
         [&] {
             View().setParent(&elsewhere);
             View().setGeometry(QRect(QPoint(), place.size()));
             elsewhere.show();
             View().show();
             Settle();
         }},
        {"the first one again",
         [&] {
             View().setParent(home);
             View().setGeometry(place);
             View().show();
             Settle();
         }},
    };
    for (const auto& row : rows) {
        row.lose();
        View().Refresh(false);
        EXPECT_EQ(View().grabFramebuffer(), whole) << row.what;
    }
}
