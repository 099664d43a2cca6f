#include "FakeWindow.h"
#include "HostFixture.h"
#include "mel/Interpreter.h"
#include "openmaya/ApiBridge.h"
#include "scene/CameraView.h"

#include <maya/M3dView.h>
#include <maya/MColor.h>
#include <maya/MCommonRenderSettingsData.h>
#include <maya/MFnCamera.h>
#include <maya/MFrameContext.h>
#include <maya/MMatrix.h>
#include <maya/MQtUtil.h>
#include <maya/MRenderUtil.h>
#include <maya/MVector.h>
#include <maya/MViewport2Renderer.h>

using namespace lightbox;
using MHWRender::MFrameContext;

namespace {

class ViewClassesTest : public HostFixture {
protected:
    ViewClassesTest() { Run("setAttr persp.rotate 0 0 0; setAttr persp.translate 0 0 20"); }

    mel::Value Run(const std::string& text) { return host_.interpreter().Execute(text); }
    static MDagPath PathTo(const char* name) {
        return ApiBridge::Wrap(*std::dynamic_pointer_cast<DagNode>(Host::Get().scene().Find(name)));
    }
};

} // namespace

TEST_F(ViewClassesTest, WithoutAWindowThereAreNoViews) {
    MStatus status;
    M3dView view = M3dView::active3dView(&status);
    EXPECT_TRUE(status.error());
    EXPECT_EQ(M3dView::numberOf3dViews(), 0U);
    EXPECT_TRUE(M3dView::get3dView(0, view).error());
    EXPECT_EQ(view.widget(&status), nullptr);
    EXPECT_TRUE(status.error());
    MDagPath camera;
    EXPECT_TRUE(view.getCamera(camera).error());
    EXPECT_TRUE(view.beginGL().error());
    short x = 3;
    short y = 4;
    EXPECT_FALSE(view.worldToView(MPoint(), x, y, &status));
    EXPECT_TRUE(status.error());
    EXPECT_EQ(x, 3);
    EXPECT_EQ(MHWRender::MRenderer::theRenderer(), nullptr);
    EXPECT_EQ(MQtUtil::mainWindow(), nullptr);
}

TEST_F(ViewClassesTest, ViewsAreThoseOfTheWindow) {
    FakeWindow& window = FakeWindow::Open(host_);
    auto first = std::make_unique<FakeView>("modelPanel4", "perspShape", QSize(640, 480));
    FakeView second("modelPanel1", "topShape", QSize(200, 100));
    second.isViewport2 = false;
    window.views = {first.get(), &second};

    M3dView view = M3dView::active3dView();
    EXPECT_EQ(view.portWidth(), 640);
    EXPECT_EQ(view.widget(), &first->Widget());
    EXPECT_EQ(view.getRendererName(), M3dView::kViewport2Renderer);
    MDagPath camera;
    ASSERT_TRUE(view.getCamera(camera));
    EXPECT_EQ(camera.fullPathName(), "|persp|perspShape");
    M3dView other;
    ASSERT_TRUE(M3dView::getM3dViewFromModelPanel("modelPanel1", other));
    EXPECT_NE(other.getRendererName(), M3dView::kViewport2Renderer);
    MDagPath front = PathTo("front");
    ASSERT_TRUE(other.setCamera(front)) << "by its transform";
    ASSERT_TRUE(other.getCamera(camera));
    EXPECT_EQ(camera.fullPathName(), "|front|frontShape");
    MDagPath time = PathTo("persp");
    time.pop(1);
    EXPECT_TRUE(other.setCamera(time).error());

    EXPECT_TRUE(view.refresh());
    EXPECT_TRUE(view.refresh(true));
    EXPECT_EQ(first->refreshes, 2);
    EXPECT_EQ(second.refreshes, 1);

    window.views = {&second};
    first.reset();
    MStatus status;
    EXPECT_EQ(view.portWidth(&status), 0) << "the view has gone";
    EXPECT_TRUE(status.error());
}

TEST_F(ViewClassesTest, XorDrawingShowsInTheLegacyViewportOnly) {
    FakeWindow& window = FakeWindow::Open(host_);
    FakeView view("modelPanel4", "perspShape", QSize(640, 480));
    window.views = {&view};
    M3dView drawn = M3dView::active3dView();
    for (const bool isViewport2 : {false, true}) {
        view.isViewport2 = isViewport2;
        view.presentations = 0;
        ASSERT_TRUE(drawn.beginXorDrawing(true, true, 1.0f, M3dView::kStippleDashed));
        EXPECT_EQ(view.openGl, 1);
        ASSERT_TRUE(drawn.endXorDrawing());
        EXPECT_EQ(view.openGl, 0);
        EXPECT_EQ(view.presentations, isViewport2 ? 0 : 1);
    }
}

TEST_F(ViewClassesTest, PointsGoToTheViewAndBack) {
    FakeWindow& window = FakeWindow::Open(host_);
    FakeView view("modelPanel4", "perspShape", QSize(640, 480));
    window.views = {&view};
    M3dView drawn = M3dView::active3dView();
    for (const char* camera : {"perspShape", "frontShape"}) {
        view.LookThrough(camera);
        const CameraView cameraView(*view.Camera(), 640, 480);
        const auto context = ApiBridge::MakeFrameContext(view, cameraView);
        short x = 0;
        short y = 0;
        EXPECT_TRUE(drawn.worldToView(MPoint(0, 0, 0), x, y)) << camera;
        EXPECT_EQ(x, 320);
        EXPECT_EQ(y, 240);
        EXPECT_FALSE(drawn.worldToView(MPoint(1e6, 0, 0), x, y)) << "outside";

        MPoint nearPoint;
        MVector direction;
        ASSERT_TRUE(drawn.viewToWorld(100, 350, nearPoint, direction));
        double exactX = 0.0;
        double exactY = 0.0;
        ASSERT_TRUE(context->worldToViewport(nearPoint + direction * 7.0, exactX, exactY));
        EXPECT_NEAR(exactX, 100.0, 1e-6);
        EXPECT_NEAR(exactY, 350.0, 1e-6);

        const MPoint clip = MPoint(1, 2, 3) * context->getMatrix(MFrameContext::kViewProjMtx);
        const MPoint back = clip * context->getMatrix(MFrameContext::kViewProjInverseMtx);
        EXPECT_TRUE(MPoint(back).cartesianize().isEquivalent(MPoint(1, 2, 3), 1e-6));
        MStatus status;
        context->getMatrix(MFrameContext::kWorldViewMtx, &status);
        EXPECT_TRUE(status.error()) << "there is no object";
    }
}

TEST_F(ViewClassesTest, CamerasSayWhatTheirAttributesSay) {
    Run("setAttr persp.rotate 0 90 0; setAttr perspShape.filmFit 3; setAttr perspShape.overscan 1.5;"
        "setAttr perspShape.lensSqueezeRatio 2; setAttr perspShape.horizontalFilmAperture 1.2;"
        "setAttr perspShape.verticalFilmAperture 0.8; setAttr perspShape.panZoomEnabled 1;"
        "setAttr perspShape.zoom 0.25; setAttr perspShape.horizontalPan 0.1");
    const MFnCamera camera(PathTo("persp"));
    EXPECT_EQ(camera.filmFit(), MFnCamera::kOverscanFilmFit);
    EXPECT_FALSE(camera.isOrtho());
    EXPECT_EQ(camera.overscan(), 1.5);
    EXPECT_NEAR(camera.aspectRatio(), 3.0, 1e-12);
    EXPECT_TRUE(camera.panZoomEnabled());
    EXPECT_EQ(camera.zoom(), 0.25);
    EXPECT_EQ(camera.horizontalPan(), 0.1);
    EXPECT_TRUE(camera.eyePoint(MSpace::kWorld).isEquivalent(MPoint(0, 0, 20)));
    EXPECT_TRUE(camera.viewDirection(MSpace::kWorld).isEquivalent(MVector(-1, 0, 0), 1e-9));
    EXPECT_TRUE(MFnCamera(PathTo("topShape")).isOrtho());
    MStatus status;
    const MFnCamera none(MObject::kNullObj, &status);
    EXPECT_TRUE(status.error());
    EXPECT_EQ(none.zoom(), 0.0);

    Run("setAttr defaultResolution.width 1280; setAttr defaultResolution.height 720");
    MCommonRenderSettingsData settings;
    MRenderUtil::getCommonRenderSettings(settings);
    EXPECT_EQ(settings.width, 1280U);
    EXPECT_EQ(settings.height, 720U);
}

TEST_F(ViewClassesTest, MatricesVectorsAndColors) {
    MMatrix move;
    move(3, 0) = 5.0;
    MMatrix scale;
    scale(0, 0) = 2.0;
    EXPECT_EQ(MPoint(1, 2, 3) * (scale * move), MPoint(7, 2, 3));
    EXPECT_EQ(MVector(1, 2, 3) * (scale * move), MVector(2, 2, 3)) << "a direction does not move";
    EXPECT_TRUE((scale * move).inverse().isEquivalent(move.inverse() * scale.inverse()));
    MMatrix flat;
    flat(1, 1) = 0.0;
    EXPECT_TRUE(flat.isSingular());
    EXPECT_EQ(flat.inverse(), MMatrix::identity);
    EXPECT_EQ(MVector::xAxis ^ MVector::yAxis, MVector::zAxis);
    EXPECT_EQ(MVector(3, 4, 0).length(), 5.0);
    EXPECT_EQ(MVector().normal(), MVector::zero);
    EXPECT_EQ(MPoint(2, 4, 6, 2).cartesianize(), MPoint(1, 2, 3));

    const MColor green(MColor::kHSV, 120.0f, 1.0f, 0.5f);
    EXPECT_FLOAT_EQ(green.r, 0.0f);
    EXPECT_FLOAT_EQ(green.g, 0.5f);
    EXPECT_FLOAT_EQ(green.b, 0.0f);
    EXPECT_EQ(MColor(MColor::kCMY, 1.0f, 0.0f, 0.25f), MColor(0.0f, 1.0f, 0.75f));
}
