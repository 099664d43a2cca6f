#include "viewport/SceneRenderer.h"

#include "OffscreenGl.h"
#include "lightbox/MelFixture.h"
#include "scene/CameraView.h"
#include "scene/DagNode.h"
#include "scene/Plug.h"
#include "scene/Scene.h"
#include "viewport/DrawnScene.h"

#include <cmath>

using namespace lightbox;
using Imath::V3d;

/// A scene drawn into a picture, seen by the start-up cameras.
class SceneRendererTest : public MelFixture {
protected:
    static constexpr int WIDTH = 320;
    static constexpr int HEIGHT = 240;

    SceneRendererTest() {
        EXPECT_TRUE(renderer_.Initialize());
        options_.grid = false;
        options_.axisIcon = false;
        options_.backgroundTop = options_.backgroundBottom = QColor(10, 20, 30);
        Run("setAttr perspShape.filmFit 1; setAttr perspShape.overscan 1");
    }

    QImage Draw(const char* camera = "perspShape", double devicePixelRatio = 1.0) {
        auto& shape = static_cast<DagNode&>(*host_.scene().Find(camera));
        view_ = std::make_unique<CameraView>(shape, WIDTH, HEIGHT);
        const QSize pixels(static_cast<int>(WIDTH * devicePixelRatio),
                           static_cast<int>(HEIGHT * devicePixelRatio));
        const DrawnScene scene(host_.scene(), *view_, shape, options_);
        return gl_.Picture(pixels, Qt::black, [&] { renderer_.Draw(scene, devicePixelRatio); })
            .convertToFormat(QImage::Format_RGB888);
    }
    /// The pixel in which a point of the world lies.
    QPoint At(const V3d& world, double devicePixelRatio = 1.0) const {
        const V3d pixel = view_->WorldToView(world);
        return {static_cast<int>(pixel.x * devicePixelRatio),
                static_cast<int>((HEIGHT - pixel.y) * devicePixelRatio)};
    }
    static bool IsBackground(const QColor& color) {
        return std::abs(color.red() - 10) < 3 && std::abs(color.green() - 20) < 3 &&
               std::abs(color.blue() - 30) < 3;
    }
    /// Lines are smooth, and few of their pixels have the whole colour.
    static constexpr int OF_LINES = 150;
    static int CountNear(const QImage& image, const QColor& wanted, int tolerance = 12) {
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor color = image.pixelColor(x, y);
                count += std::abs(color.red() - wanted.red()) + std::abs(color.green() - wanted.green()) +
                             std::abs(color.blue() - wanted.blue()) <
                         tolerance;
            }
        }
        return count;
    }

    OffscreenGl gl_;
    SceneRenderer renderer_;
    std::unique_ptr<CameraView> view_;
    DisplayOptions options_;
    const QColor lead_{66, 255, 163};
    const QColor selected_{255, 255, 255};
};

TEST_F(SceneRendererTest, SurfacesAreLitFromTheEyeInTheColourOfTheirMaterial) {
    Run("polyPlane -w 10 -h 10 -sx 1 -sy 1; select -cl;"
        "setAttr topShape.orthographicWidth 20; setAttr topShape.overscan 1; setAttr topShape.filmFit 1;"
        "shadingNode -asShader lambert -name red; setAttr red.c 1 0 0; setAttr red.dc 0.5;"
        "sets -renderable true -noSurfaceShader true -empty -name redSG; connectAttr -f red.oc redSG.ss;");
    QImage image = Draw("topShape");
    // Default grey 0.5, diffuse 0.8, straight at the eye: lighter than what is behind it in a viewport.
    EXPECT_NEAR(image.pixelColor(WIDTH / 2, HEIGHT / 2).red(), 152, 2);
    EXPECT_TRUE(IsBackground(image.pixelColor(3, 3)));
    // 10 of 20 units across 320 pixels.
    EXPECT_NEAR(CountNear(image, QColor(152, 152, 152)), 160 * 160, 400);
    Run("select -r pPlane1; sets -e -forceElement redSG; select -cl");
    image = Draw("topShape");
    const QColor red = image.pixelColor(WIDTH / 2, HEIGHT / 2);
    EXPECT_NEAR(red.red(), 221, 2);
    EXPECT_LT(red.green(), 3);
    Run("setAttr red.it 0.5 0.5 0.5");
    const QColor through = Draw("topShape").pixelColor(WIDTH / 2, HEIGHT / 2);
    EXPECT_NEAR(through.red(), (221 + 10) / 2.0, 3);
    EXPECT_NEAR(through.blue(), 15, 3);
    // Even white keeps its shape: no side of it is as bright as the screen can be.
    Run("setAttr red.it 0 0 0; setAttr red.c 1 1 1; setAttr red.dc 0.8");
    EXPECT_LT(Draw("topShape").pixelColor(WIDTH / 2, HEIGHT / 2).red(), 255);
    options_.defaultMaterial = true;
    EXPECT_NEAR(Draw("topShape").pixelColor(WIDTH / 2, HEIGHT / 2).green(), 152, 2);
}

TEST_F(SceneRendererTest, WhatIsDrawnLiesWhereTheViewSays) {
    Run("spaceLocator -p 0 0 0; setAttr locator1.t 4 2 -3; setAttr locator1.s 0.4 0.4 0.4; select -r "
        "locator1");
    for (const double ratio : {1.0, 2.0}) {
        for (const char* panZoom : {"0", "1"}) {
            Run(std::string("setAttr perspShape.panZoomEnabled ") + panZoom +
                "; setAttr perspShape.horizontalPan 0.1; setAttr perspShape.zoom 0.7");
            const QImage image = Draw("perspShape", ratio);
            const QPoint center = At({4, 2, -3}, ratio);
            const int reach = static_cast<int>(ratio);
            EXPECT_GT(
                CountNear(image.copy(center.x() - reach, center.y() - reach, 2 * reach + 1, 2 * reach + 1),
                          lead_),
                0)
                << "at scale " << ratio << " with pan and zoom " << panZoom;
        }
    }
}

TEST_F(SceneRendererTest, ModesSelectionAndVisibilityShow) {
    Run("polyCube -w 6 -h 6 -d 6; select -cl");
    const int surface = WIDTH * HEIGHT - CountNear(Draw(), QColor(10, 20, 30));
    EXPECT_GT(surface, 2000);
    options_.shading = DisplayOptions::Shading::Wireframe;
    const int lines = WIDTH * HEIGHT - CountNear(Draw(), QColor(10, 20, 30));
    EXPECT_GT(lines, 200);
    EXPECT_LT(lines, surface / 3);
    Run("polyCube; move 8 0 0 pCube2; select -r pCube2 pCube1");
    QImage image = Draw();
    EXPECT_GT(CountNear(image, lead_, OF_LINES), 200);
    EXPECT_GT(CountNear(image, selected_, OF_LINES), 20);
    options_.selectionHighlighting = false;
    image = Draw();
    EXPECT_EQ(CountNear(image, lead_, OF_LINES) + CountNear(image, selected_, OF_LINES), 0);
    options_.selectionHighlighting = true;
    // A hidden parent hides; so do a hidden level of detail, an override and an intermediate object.
    for (const char* hidden : {"pCube1.v 0", "pCube1.lodv 0", "pCubeShape1.io 1", "pCubeShape1.v 0"}) {
        Run("undoInfo -ock");
        Run(std::string("select -r pCube1; delete pCube2; setAttr ") + hidden);
        Run("undoInfo -cck");
        EXPECT_EQ(CountNear(Draw(), QColor(10, 20, 30)), WIDTH * HEIGHT) << hidden;
        Run("undo");
    }
    Run("setAttr pCube1.ove 1; setAttr pCube1.ovv 0; delete pCube2");
    EXPECT_EQ(CountNear(Draw(), QColor(10, 20, 30)), WIDTH * HEIGHT);
    Run("setAttr pCube1.ovv 1; setAttr pCube1.ovdt 1; select -cl");
    options_.shading = DisplayOptions::Shading::Smooth;
    EXPECT_GT(CountNear(Draw(), QColor(122, 122, 128), OF_LINES), 100) << "a template is lines only";
    EXPECT_LT(WIDTH * HEIGHT - CountNear(Draw(), QColor(10, 20, 30)), surface / 3);
}

/// What did not change is not brought to the card again.
TEST_F(SceneRendererTest, MeshesAreUploadedWhenTheyChange) {
    Run("polySphere -sx 40 -sy 40; polyCube; move 3 0 0");
    Draw();
    EXPECT_EQ(renderer_.UploadCount(), 2U);
    Run("move 0 1 0 pSphere1; setAttr persp.tx 20; select -r pCube1; currentTime 5");
    Draw();
    Draw("topShape");
    EXPECT_EQ(renderer_.UploadCount(), 2U);
    Run("setAttr polyCube1.w 3");
    Draw();
    Draw();
    EXPECT_EQ(renderer_.UploadCount(), 3U);
    Run("setAttr \"pSphereShape1.pnts[5]\" -type \"float3\" 0 1 0");
    Draw();
    Draw();
    EXPECT_EQ(renderer_.UploadCount(), 4U);
}

TEST_F(SceneRendererTest, GridAndIconShowInTheirPlaces) {
    options_.grid = true;
    QImage image = Draw();
    EXPECT_FALSE(IsBackground(image.pixelColor(At({5.0, 0.0, 0.0}))));
    // In a parallel view the grid stands across it.
    Run("setAttr frontShape.orthographicWidth 30");
    image = Draw("frontShape");
    EXPECT_FALSE(IsBackground(image.pixelColor(At({5.01, 3.5, 0.0}))));
    options_.grid = false;
    EXPECT_EQ(CountNear(Draw(), QColor(10, 20, 30)), WIDTH * HEIGHT);
    options_.axisIcon = true;
    image = Draw();
    const QImage corner = image.copy(0, HEIGHT - 100, 100, 100);
    EXPECT_GT(100 * 100 - CountNear(corner, QColor(10, 20, 30)), 60);
    EXPECT_EQ(CountNear(image.copy(120, 0, 200, HEIGHT), QColor(10, 20, 30)), 200 * HEIGHT);
}
