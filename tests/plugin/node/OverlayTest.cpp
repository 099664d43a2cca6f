#include "core/LayerManager.h"
#include "host/Settings.h"
#include "lightbox/FakeWindow.h"
#include "node/BaseNode.h"
#include "openmaya/ApiBridge.h"
#include "plugin/PluginTest.h"
#include "scene/CameraView.h"

#include <maya/M3dView.h>
#include <maya/MFrameContext.h>

namespace vellix {

namespace {

using lightbox::ApiBridge;
using lightbox::CameraView;

class OverlayTest : public PluginTest {
protected:
    OverlayTest() {
        Run("qmVellixNode; setAttr defaultResolution.width 1280; setAttr defaultResolution.height 720");
        Settings::ignore2dPanZoom = false;
    }
    ~OverlayTest() override {
        Settings::ignore2dPanZoom = false;
        Host().SetUserInterface(nullptr);
    }

    BaseNode& Node() { return *BaseNode::GetMaster(); }
    /// Updates the overlay as drawing in Viewport 2.0 does.
    void Update(const FakeView& view) {
        const CameraView camera(*view.Camera(), view.Width(), view.Height());
        const auto context = ApiBridge::MakeFrameContext(view, camera);
        Node().UpdateOverlayValues(ApiBridge::Wrap(*view.Camera()), view.Width(), view.Height(), true);
        Node().UpdateOverlayPan(ApiBridge::Wrap(*view.Camera()), *context);
    }
    void Update(int width, int height, const char* camera = "perspShape") {
        Update(FakeView("modelPanel4", camera, QSize(width, height)));
    }
    int GateSize() { return static_cast<int>(2.0f * Node().GetOverlayScale()); }
};

} // namespace

TEST_F(OverlayTest, TheGateFollowsTheFilmFit) {
    struct Case {
        const char* camera;
        int filmFit;
        double overscan;
        int width;
        int height;
        double filmHeight; ///< of a film that is 1.5 wide
        int gate;
    };
    // A render aspect of 16:9 (1.777...); film aspects 1.5 and 2.5.
    const Case cases[] = {
        {"perspShape", 1, 1.0, 1000, 600, 1.0, 1000},  // horizontal: the width
        {"perspShape", 1, 1.3, 1000, 600, 1.0, 769},   // 1000 / 1.3
        {"perspShape", 2, 1.0, 1000, 600, 1.0, 1066},  // vertical: 600 * 16/9
        {"perspShape", 2, 2.0, 1000, 601, 1.0, 534},   // 601 / 2 * 16/9
        {"perspShape", 0, 1.0, 1000, 800, 1.0, 1200},  // fill, 1.25 < 1.5: 1.5 / 1.25
        {"perspShape", 0, 1.0, 1000, 800, 0.6, 1422},  // fill, 1.25 < 2.5, 16/9 <= 2.5: 16/9 / 1.25
        {"perspShape", 0, 1.0, 1000, 500, 1.0, 1000},  // fill, 2 >= 1.5, 16/9 >= 1.5
        {"perspShape", 0, 1.0, 1500, 500, 0.6, 1066},  // fill, 3 >= 2.5, 16/9 < 2.5: 16/9 / 2.5
        {"perspShape", 3, 1.0, 1000, 500, 1.0, 888},   // overscan: 500 * 16/9
        {"perspShape", 3, 1.0, 1000, 800, 1.0, 1185},  // 800 / 1.2 * 16/9
        {"frontShape", 0, 1.0, 1000, 800, 1.0, 1000},  // orthographic, fill: as horizontal
        {"frontShape", 1, 1.0, 1000, 800, 1.0, 1000},  //
        {"frontShape", 2, 1.0, 1000, 800, 1.0, 1422},  // 800 * 16/9
        {"frontShape", 3, 1.25, 1000, 800, 1.0, 1137}, // as vertical: 800 / 1.25 * 16/9
    };
    for (const Case& each : cases) {
        Run(QString("setAttr %1.filmFit %2; setAttr %1.overscan %3; setAttr %1.horizontalFilmAperture 1.5;"
                    "setAttr %1.verticalFilmAperture %4")
                .arg(each.camera)
                .arg(each.filmFit)
                .arg(each.overscan)
                .arg(each.filmHeight)
                .toStdString());
        Update(each.width, each.height, each.camera);
        SCOPED_TRACE(::testing::Message()
                     << each.camera << " fit " << each.filmFit << ", " << each.width << " x " << each.height);
        EXPECT_EQ(GateSize(), each.gate);
        EXPECT_EQ(Node().GetOverlayCenter(), MPoint(each.width * 0.5, each.height * 0.5));
        // The square's edges are the image's: 0 and its width, from the top down.
        const double half = Node().GetOverlayScale();
        const auto pixel = [&](double x, double y) {
            return Node().ScreenCoordsToTexCoords(
                QPoint(qRound(each.width * 0.5 + x), qRound(each.height * 0.5 + y)));
        };
        const double tolerance = 0.5 / Node().TextureToScreenScale() + 1.0;
        EXPECT_NEAR(pixel(-half, 0).x(), 0, tolerance);
        EXPECT_NEAR(pixel(half, 0).x(), 1024, tolerance);
        EXPECT_NEAR(pixel(0, half).y(), 0, tolerance);
        EXPECT_NEAR(pixel(0, -half).y(), 1024, tolerance);
    }
}

TEST_F(OverlayTest, EdgesAreExactWhereTheyAreWholePixels) {
    Run("setAttr perspShape.filmFit 1; setAttr perspShape.overscan 1");
    Update(1000, 600);
    EXPECT_EQ(Node().GetOverlayScale(), 500.0f);
    EXPECT_EQ(Node().ScreenCoordsToTexCoords(QPoint(0, 800)), QPoint(0, 0));
    EXPECT_EQ(Node().ScreenCoordsToTexCoords(QPoint(1000, -200)), QPoint(1024, 1024));
    EXPECT_EQ(Node().ScreenCoordsToTexCoords(QPoint(500, 300)), QPoint(512, 512));
    EXPECT_FLOAT_EQ(Node().TextureToScreenScale(), 1000.0f / 1024.0f);
}

TEST_F(OverlayTest, ZoomAndPan) {
    Run("setAttr perspShape.filmFit 1; setAttr perspShape.overscan 1; setAttr perspShape.panZoomEnabled 1;"
        "setAttr perspShape.zoom 0.5");
    Update(1000, 600);
    EXPECT_EQ(Node().GetOverlayScale(), 1000.0f);
    for (const char* zoom : {"0", "-2"}) {
        Run(std::string("setAttr perspShape.zoom ") + zoom);
        Update(1000, 600);
        EXPECT_FLOAT_EQ(Node().GetOverlayScale(), 500000.0f) << "as 0.001";
    }
    Run("setAttr perspShape.zoom 0.5; setAttr perspShape.horizontalPan 0.2; setAttr perspShape.verticalPan "
        "0.1");
    Update(1000, 600);
    // Half the film's width of 1.41732 inches fills the view, so an inch is 1411 pixels.
    EXPECT_NEAR(Node().GetOverlayCenter().x, 500 - 0.2 * 1411.1, 0.5);
    EXPECT_NEAR(Node().GetOverlayCenter().y, 300 - 0.1 * 1411.1, 0.5);
    Settings::ignore2dPanZoom = true;
    Update(1000, 600);
    EXPECT_EQ(Node().GetOverlayCenter(), MPoint(500, 300));
    EXPECT_EQ(Node().GetOverlayScale(), 500.0f);
    EXPECT_EQ(Node().ScreenCoordsToTexCoords(QPoint(0, 800)), QPoint(0, 0));
}

TEST_F(OverlayTest, ValuesThatMakeNoGateAreSurvived) {
    for (const char* mel : {"setAttr perspShape.overscan 0", "setAttr perspShape.overscan 1e-300",
                            "setAttr perspShape.overscan 1e300", "setAttr perspShape.verticalFilmAperture 0",
                            "setAttr defaultResolution.height 0"}) {
        Run(mel);
        for (const char* fit : {"0", "1", "2", "3"}) {
            Run(std::string("setAttr perspShape.filmFit ") + fit);
            Update(640, 0);
            Update(1, 1);
            Update(640, 480);
            Node().ScreenCoordsToTexCoords(QPoint(10000, -10000));
        }
    }
}

// Over every film fit, orthographic and not, overscan, aspect, pan and zoom, and sizes of views: where the
// drawing lies is where the camera shows its gate, a point of the view comes back from the image within half
// an image pixel, and an image pixel comes back as itself.
TEST_F(OverlayTest, ScreenToImageAndBackIsTheIdentity) {
    FakeWindow& window = FakeWindow::Open(Host());
    int combinations = 0;
    for (const char* camera : {"perspShape", "frontShape"}) {
        for (const int fit : {0, 1, 2, 3}) {
            Run("setAttr defaultResolution.width " + std::to_string(fit % 2 == 0 ? 960 : 540));
            for (const double overscan : {1.0, 1.3}) {
                for (const double filmHeight : {0.6, 0.94488}) {
                    for (const QSize size : {QSize(640, 480), QSize(1025, 577), QSize(301, 900)}) {
                        for (const double zoom : {0.0, 0.4, 1.7}) {
                            const bool pans = zoom > 0.0;
                            Run(QStringLiteral("setAttr %1.filmFit %2; setAttr %1.overscan %3;"
                                               "setAttr %1.verticalFilmAperture %4;"
                                               "setAttr %1.panZoomEnabled %5; setAttr %1.zoom %6;"
                                               "setAttr %1.horizontalPan %7; setAttr %1.verticalPan -0.05")
                                    .arg(camera)
                                    .arg(fit)
                                    .arg(overscan)
                                    .arg(filmHeight)
                                    .arg(pans ? 1 : 0)
                                    .arg(zoom)
                                    .arg(pans ? 0.15 : 0.0)
                                    .toStdString());
                            FakeView view("modelPanel4", camera, size);
                            window.views = {&view};
                            Update(view);
                            const MPoint center = Node().GetOverlayCenter();
                            SCOPED_TRACE(::testing::Message()
                                         << camera << " fit " << fit << " overscan " << overscan << " film "
                                         << filmHeight << " " << size.width() << "x" << size.height()
                                         << " zoom " << zoom);
                            const float scale = Node().TextureToScreenScale();
                            const QPoint corners[] = {QPoint(0, 0), QPoint(1024, 1024), QPoint(3, 700),
                                                      QPoint(511, 512)};
                            Node().SetTransformOutline("persp", corners[0], corners[1], corners[2],
                                                       corners[3]);
                            MPoint onView[4];
                            Node().TransformOutlinePoints(onView[0], onView[1], onView[2], onView[3]);
                            for (int i = 0; i < 4; ++i) {
                                const QPoint whole(qRound(onView[i].x), qRound(onView[i].y));
                                const QPoint back = Node().ScreenCoordsToTexCoords(whole);
                                // The whole pixel of the view is up to half of one away.
                                EXPECT_LE(std::abs(back.x() - corners[i].x()), 0.5 / scale + 0.51);
                                EXPECT_LE(std::abs(back.y() - corners[i].y()), 0.5 / scale + 0.51);
                            }
                            for (const QPoint point :
                                 {QPoint(0, 0), QPoint(17, 333), QPoint(size.width(), size.height())}) {
                                const QPoint pixel = Node().ScreenCoordsToTexCoords(point);
                                MPoint again;
                                Node().SetTransformOutline("persp", pixel, pixel, pixel, pixel);
                                Node().TransformOutlinePoints(again, again, again, again);
                                EXPECT_LE(std::abs(again.x - point.x()), 0.501 * scale);
                                EXPECT_LE(std::abs(again.y - point.y()), 0.501 * scale);
                            }
                            // The legacy viewport rounds what it is centred on to whole pixels.
                            M3dView legacy = M3dView::active3dView();
                            Node().UpdateOverlayValues(legacy);
                            EXPECT_LE(std::abs(Node().GetOverlayCenter().x - center.x), 0.5);
                            EXPECT_LE(std::abs(Node().GetOverlayCenter().y - center.y), 0.5);
                            // The square is as wide as what is rendered.
                            const QRectF gate =
                                CameraView(*view.Camera(), size.width(), size.height()).ResolutionGate();
                            EXPECT_NEAR(gate.center().x(), center.x, 0.2);
                            EXPECT_NEAR(gate.center().y(), center.y, 0.2);
                            EXPECT_NEAR(gate.width(), 1024.0 * scale, 1.001 / (pans ? zoom : 1.0));
                            ++combinations;
                        }
                    }
                }
            }
        }
    }
    EXPECT_GE(combinations, 200);
}

TEST_F(OverlayTest, DrawingTellsTheLayersTheTime) {
    Run("currentTime 17.6");
    Update(640, 480);
    EXPECT_EQ(Node().GetLayerManager()->GetFrame(), 17);
}

TEST_F(OverlayTest, TheOutlineBelongsToOneCamera) {
    EXPECT_FALSE(Node().DrawTransformOutline("persp"));
    Node().SetTransformOutline("persp", QPoint(), QPoint(), QPoint(), QPoint());
    EXPECT_TRUE(Node().DrawTransformOutline("persp"));
    EXPECT_FALSE(Node().DrawTransformOutline("top"));
    Node().ClearTransformOutline();
    EXPECT_FALSE(Node().DrawTransformOutline("persp"));
}

} // namespace vellix
