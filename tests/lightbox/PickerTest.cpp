#include "scene/Picker.h"

#include "MelFixture.h"
#include "scene/CameraView.h"
#include "scene/DagNode.h"
#include "scene/Scene.h"

using namespace lightbox;
using Imath::V3d;

/// A view of 600 by 400 pixels through the front camera: 50 pixels for each unit, the origin in the middle.
class PickerTest : public MelFixture {
protected:
    PickerTest() {
        Run("setAttr frontShape.overscan 1; setAttr frontShape.filmFit 1;"
            "setAttr frontShape.orthographicWidth 12;"
            "polyCube; move -3 0 0; polyCube; polyCube; move 0 0 -4; spaceLocator; move 3 0 0; select -cl;");
    }
    std::string NameOf(const DagNode* shape) const { return shape ? shape->Parent()->Name() : "nothing"; }
    Picker Pick(const char* camera = "frontShape") {
        auto& shape = static_cast<DagNode&>(*host_.scene().Find(camera));
        filter_.lookThrough = &shape;
        return Picker(host_.scene(), CameraView(shape, 600, 400), filter_);
    }
    std::string Inside(const QRectF& rectangle) {
        std::string names;
        for (const DagNode* shape : Pick().Inside(rectangle)) {
            names += NameOf(shape) + " ";
        }
        return names;
    }

    Picker::Filter filter_;
};

TEST_F(PickerTest, AClickFindsTheNearestThingThere) {
    struct Row {
        double x;
        double y;
        const char* shaded;
        const char* wireframe;
    };
    const Row rows[] = {{150, 200, "pCube1", "nothing"},    {128, 200, "pCube1", "pCube1"},
                        {300, 200, "pCube2", "nothing"},    {325, 200, "pCube2", "pCube2"},
                        {450, 230, "locator1", "locator1"}, {450, 260, "nothing", "nothing"},
                        {20, 20, "nothing", "nothing"}};
    for (const Row& row : rows) {
        filter_.surfaces = true;
        EXPECT_EQ(NameOf(Pick().At(row.x, row.y, 4)), row.shaded) << row.x << " " << row.y;
        filter_.surfaces = false;
        EXPECT_EQ(NameOf(Pick().At(row.x, row.y, 4)), row.wireframe) << row.x << " " << row.y;
    }
    filter_.surfaces = true;
    Run("setAttr pCube2.v 0");
    EXPECT_EQ(NameOf(Pick().At(300, 200, 4)), "pCube3") << "what was behind it";
    Run("setAttr pCube3.template 1");
    EXPECT_EQ(NameOf(Pick().At(300, 200, 4)), "nothing");
    filter_.locators = false;
    EXPECT_EQ(NameOf(Pick().At(450, 230, 4)), "nothing");
    filter_.meshes = false;
    EXPECT_EQ(NameOf(Pick().At(150, 200, 4)), "nothing");
}

TEST_F(PickerTest, ARectangleFindsAllThatItTouches) {
    EXPECT_EQ(Inside({100, 150, 100, 100}), "pCube1 ");
    EXPECT_EQ(Inside({320, 190, 20, 5}), "pCube2 pCube3 ") << "also what is hidden";
    EXPECT_EQ(Inside({145, 195, 5, 5}), "pCube1 ") << "inside of a face";
    EXPECT_EQ(Inside({0, 0, 600, 400}), "pCube1 pCube2 pCube3 locator1 ");
    EXPECT_EQ(Inside({0, 0, 600, 100}), "");
    filter_.surfaces = false;
    EXPECT_EQ(Inside({145, 195, 5, 5}), "");
}

TEST_F(PickerTest, PerspectiveCutsOffWhatIsBehindTheEye) {
    Run("setAttr persp.t 0 0.1 0; setAttr persp.r 0 0 0; select -r pCube1 pCube2 pCube3; delete;"
        "polyPlane -w 100 -h 100 -sx 1 -sy 1;");
    EXPECT_EQ(NameOf(Pick("perspShape").At(300, 100, 4)), "pPlane1") << "the ground before the feet";
    EXPECT_EQ(NameOf(Pick("perspShape").At(300, 300, 4)), "nothing") << "the sky";
    Run("move 0 0 100 pPlane1");
    EXPECT_EQ(NameOf(Pick("perspShape").At(300, 100, 4)), "nothing") << "it lies behind";
    EXPECT_TRUE(Pick("perspShape").Inside({0, 0, 600, 400}).empty() ||
                NameOf(Pick("perspShape").Inside({0, 0, 600, 400}).front()) == "locator1");
}

TEST_F(PickerTest, ViewFitShowsWhatIsWantedWhole) {
    Run("group -n far pCube1; move 40 10 -20 far; rotate 10 20 30 far; select -r far;");
    for (const char* camera : {"persp", "front", "top"}) {
        for (const bool all : {false, true}) {
            Run(std::string("viewFit ") + (all ? "-all " : "") + camera);
            auto& shape = static_cast<DagNode&>(*host_.scene().Find(std::string(camera) + "Shape"));
            const CameraView view(shape, 1600, 900);
            Imath::Box3d pixels;
            for (const VisibleShape& visible : FindVisibleShapes(host_.scene())) {
                if (all || visible.IsSelected()) {
                    const Imath::Box3d box = BoundsOf(*visible.shape);
                    for (int i = 0; i < 8; ++i) {
                        const V3d corner(i & 1 ? box.min.x : box.max.x, i & 2 ? box.min.y : box.max.y,
                                         i & 4 ? box.min.z : box.max.z);
                        pixels.extendBy(view.WorldToView(corner * visible.world));
                    }
                }
            }
            EXPECT_GT(pixels.min.x, 0.0) << camera << all;
            EXPECT_GT(pixels.min.y, 0.0) << camera << all;
            EXPECT_LT(pixels.max.x, 1600.0) << camera << all;
            EXPECT_LT(pixels.max.y, 900.0) << camera << all;
            EXPECT_GT(std::max(pixels.size().x, pixels.size().y), 300.0) << camera << all;
            EXPECT_TRUE(pixels.min.z > 0.0 && pixels.max.z < 1.0) << camera << all;
        }
    }
}
