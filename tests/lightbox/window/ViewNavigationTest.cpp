#include "viewport/ViewNavigation.h"

#include "WindowFixture.h"
#include "scene/CameraView.h"

#include <cmath>

using Imath::V3d;
using lightbox::CameraView;
using lightbox::DagNode;
using lightbox::ViewNavigation;
using Mode = ViewNavigation::Mode;

class ViewNavigationTest : public WindowFixture {
protected:
    static constexpr int WIDTH = 800;
    static constexpr int HEIGHT = 600;

    std::shared_ptr<DagNode> Camera(const std::string& name) {
        return lightbox::ViewportWidget::FindCamera(host_->scene(), name);
    }
    void Drag(Mode mode, const std::string& camera, const QPointF& delta) {
        ViewNavigation navigation(host_->files());
        navigation.Begin(mode, Camera(camera), QPointF(400, 300), QSize(WIDTH, HEIGHT));
        // In steps, as a hand does it.
        for (int step = 1; step <= 10; ++step) {
            navigation.Move(QPointF(400, 300) + delta * step / 10.0);
        }
        navigation.End();
    }
    V3d Eye(const std::string& camera) { return Camera(camera)->WorldMatrix().translation(); }
    V3d Forward(const std::string& camera) {
        const Imath::M44d m = Camera(camera)->WorldMatrix();
        return -V3d(m[2][0], m[2][1], m[2][2]).normalized();
    }
    V3d Center(const std::string& camera) {
        return Eye(camera) + Forward(camera) * Number(camera + "Shape.centerOfInterest");
    }
    V3d InView(const std::string& camera, const V3d& world) {
        return CameraView(*Camera(camera), WIDTH, HEIGHT).WorldToView(world);
    }
};

TEST_F(ViewNavigationTest, ButtonsAndKeysChooseWhatADragDoes) {
    struct Row {
        Qt::MouseButtons buttons;
        Qt::KeyboardModifiers modifiers;
        bool is2d;
        Mode mode;
    };
    const Row rows[] = {
        {Qt::LeftButton, Qt::AltModifier, false, Mode::Tumble},
        {Qt::MiddleButton, Qt::AltModifier, false, Mode::Track},
        {Qt::RightButton, Qt::AltModifier, false, Mode::Dolly},
        {Qt::LeftButton | Qt::MiddleButton, Qt::AltModifier, false, Mode::Dolly},
        {Qt::LeftButton, Qt::AltModifier | Qt::ShiftModifier, false, Mode::Tumble},
        {Qt::LeftButton, Qt::NoModifier, false, Mode::None},
        {Qt::MiddleButton, Qt::ControlModifier, false, Mode::None},
        {Qt::MiddleButton, Qt::NoModifier, true, Mode::Pan2d},
        {Qt::RightButton, Qt::NoModifier, true, Mode::Zoom2d},
        {Qt::LeftButton, Qt::NoModifier, true, Mode::None},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(ViewNavigation::ModeFor(row.buttons, row.modifiers, row.is2d), row.mode)
            << int(row.buttons) << " " << int(row.modifiers) << " " << row.is2d;
    }
}

TEST_F(ViewNavigationTest, TumblingKeepsTheCentreTheDistanceAndTheHorizon) {
    Run("camera -name shot; setAttr shot1.t 3 4 10; setAttr shot1.r -20 15 0; setAttr shotShape1.coi 8;"
        "group -em -n rig; setAttr rig.t 1 2 3; setAttr rig.r 0 40 0; parent shot1 rig");
    Run("select -cl");
    const auto cameraNamed = [&](const std::string& name) { return name == "persp" ? name : "shot1"; };
    for (const std::string name : {"persp", "shot"}) {
        const std::string camera = cameraNamed(name);
        const std::string shape = name == "persp" ? "perspShape" : "shotShape1";
        const auto center = [&] {
            return Eye(camera) + Forward(camera) * Number(shape + ".centerOfInterest");
        };
        for (const QPointF& delta :
             {QPointF(120, 0), QPointF(0, 60), QPointF(-500, -40), QPointF(900, 300)}) {
            const V3d before = center();
            const double distance = (Eye(camera) - before).length();
            Drag(Mode::Tumble, camera, delta);
            EXPECT_LT((center() - before).length(), 1e-6) << camera;
            EXPECT_NEAR((Eye(camera) - before).length(), distance, 1e-6) << camera;
            const Imath::M44d m = Camera(camera)->WorldMatrix();
            EXPECT_NEAR(m[0][1], 0.0, 1e-9) << camera << ": its x axis stays level";
        }
    }
}

TEST_F(ViewNavigationTest, TumblingTurnsTheWayTheHandGoes) {
    Run("setAttr persp.t 0 0 10; setAttr persp.r 0 0 0; setAttr perspShape.centerOfInterest 10");
    Drag(Mode::Tumble, "persp", QPointF(100, 0));
    EXPECT_LT(Eye("persp").x, -1.0) << "the pointer takes the scene to the right, the camera goes left";
    EXPECT_NEAR(Number("persp.rotateY"), -180.0 * 100 / WIDTH, 1e-6);
    Drag(Mode::Tumble, "persp", QPointF(0, 100));
    EXPECT_GT(Eye("persp").y, 1.0) << "downward lifts the camera";
    EXPECT_NEAR(Number("persp.rotateX"), -180.0 * 100 / WIDTH, 1e-6);
    // Past the side the angle counts on; it does not turn over.
    Drag(Mode::Tumble, "persp", QPointF(-700, 0));
    EXPECT_NEAR(Number("persp.rotateY"), 180.0 * 600 / WIDTH, 1e-6);
    EXPECT_NEAR(Number("persp.rotateX"), -180.0 * 100 / WIDTH, 1e-6);
    EXPECT_NEAR(Number("persp.rotateZ"), 0.0, 1e-6);
}

TEST_F(ViewNavigationTest, TrackingKeepsThePointOfInterestUnderThePointer) {
    for (const std::string camera : {"persp", "top", "front", "side"}) {
        const V3d center = Center(camera);
        const V3d before = InView(camera, center);
        const V3d forward = Forward(camera);
        Drag(Mode::Track, camera, QPointF(70, -45));
        const V3d after = InView(camera, center);
        EXPECT_NEAR(after.x - before.x, 70.0, 1e-4) << camera;
        EXPECT_NEAR(after.y - before.y, 45.0, 1e-4) << camera;
        EXPECT_LT((Forward(camera) - forward).length(), 1e-9) << camera;
    }
}

TEST_F(ViewNavigationTest, DollyingComesNearerAndNeverPastTheCentre) {
    const V3d center = Center("persp");
    const double distance = (Eye("persp") - center).length();
    Drag(Mode::Dolly, "persp", QPointF(250, 0));
    EXPECT_NEAR((Eye("persp") - center).length(), distance / 2.0, 1e-6);
    EXPECT_LT((Center("persp") - center).length(), 1e-6);
    Drag(Mode::Dolly, "persp", QPointF(0, 250));
    EXPECT_NEAR((Eye("persp") - center).length(), distance, 1e-6);
    Drag(Mode::Dolly, "persp", QPointF(100000, 0));
    EXPECT_GT((Eye("persp") - center).length(), 0.0);
    EXPECT_LT((Center("persp") - center).length(), 1e-3);

    const double width = Number("topShape.orthographicWidth");
    const V3d eye = Eye("top");
    Drag(Mode::Dolly, "top", QPointF(250, 0));
    EXPECT_NEAR(Number("topShape.orthographicWidth"), width / 2.0, 1e-9);
    EXPECT_EQ(Eye("top"), eye);
}

TEST_F(ViewNavigationTest, WheelGoesAShareOfTheWayPerNotchAndBackAgain) {
    ViewNavigation navigation(host_->files());
    const double distance = Number("perspShape.centerOfInterest");
    navigation.Wheel(Camera("persp"), 120);
    EXPECT_LT(Number("perspShape.centerOfInterest"), distance * 0.95);
    EXPECT_GT(Number("perspShape.centerOfInterest"), distance * 0.7);
    navigation.Wheel(Camera("persp"), -120);
    EXPECT_NEAR(Number("perspShape.centerOfInterest"), distance, 1e-9);
}

TEST_F(ViewNavigationTest, PanAndZoomMoveThePictureByWhatTheHandMoves) {
    for (const std::string camera : {"persp", "front"}) {
        const V3d eye = Eye(camera);
        const V3d point = Center(camera);
        const V3d before = InView(camera, point);
        Drag(Mode::Pan2d, camera, QPointF(50, 30));
        EXPECT_EQ(Number(camera + "Shape.panZoomEnabled"), 1.0);
        const V3d panned = InView(camera, point);
        EXPECT_NEAR(panned.x - before.x, 50.0, 1e-6) << camera;
        EXPECT_NEAR(panned.y - before.y, -30.0, 1e-6) << camera;
        EXPECT_EQ(Eye(camera), eye) << "the camera itself stays";
        Drag(Mode::Zoom2d, camera, QPointF(250, 0));
        EXPECT_NEAR(Number(camera + "Shape.zoom"), 0.5, 1e-9);
        Drag(Mode::Zoom2d, camera, QPointF(1e6, 0));
        EXPECT_GE(Number(camera + "Shape.zoom"), 0.001);
    }
}

TEST_F(ViewNavigationTest, LeavesWhatIsLockedAndTheUndoQueueAlone) {
    Run("setAttr -lock 1 persp.rotateX");
    const double angle = Number("persp.rotateX");
    const double yaw = Number("persp.rotateY");
    Run("flushUndo; file -modified 0");
    Drag(Mode::Tumble, "persp", QPointF(40, 40));
    EXPECT_EQ(Number("persp.rotateX"), angle);
    EXPECT_NE(Number("persp.rotateY"), yaw);
    EXPECT_EQ(Run("undoInfo -q -undoName").AsString(), "");
    EXPECT_EQ(Run("file -q -modified").AsInt(), 0) << "the start-up cameras are nobody's work";

    Run("camera -n shot; flushUndo; file -modified 0");
    Drag(Mode::Track, "shot1", QPointF(40, 40));
    EXPECT_EQ(Run("file -q -modified").AsInt(), 1);
}

TEST_F(ViewNavigationTest, ACameraThatGoesDuringADragIsLetGo) {
    Run("camera -n shot");
    ViewNavigation navigation(host_->files());
    navigation.Begin(Mode::Tumble, Camera("shot1"), QPointF(1, 1), QSize(WIDTH, HEIGHT));
    Run("delete shot1");
    navigation.Move(QPointF(100, 100));
    navigation.Begin(Mode::Track, Camera("persp"), QPointF(1, 1), QSize(0, 0));
    navigation.Move(QPointF(50, 50));
    EXPECT_TRUE(std::isfinite(Number("persp.translateX")));
}
