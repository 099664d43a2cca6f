#include "openmaya/ViewDrawing.h"

#include "FakeWindow.h"
#include "app/LightboxHost.h"
#include "app/PluginManager.h"
#include "mel/Interpreter.h"
#include "openmaya/ApiBridge.h"
#include "openmaya/Texture.h"
#include "scene/CameraView.h"
#include "scene/UndoQueue.h"

#include <maya/MColor.h>
#include <maya/MDrawRegistry.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MFnPlugin.h>
#include <maya/MFrameContext.h>
#include <maya/MPxDrawOverride.h>
#include <maya/MPxLocatorNode.h>
#include <maya/MTextureManager.h>
#include <maya/MUIDrawManager.h>

#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace lightbox;
using MHWRender::MTexture;
using MHWRender::MTextureDescription;
using MHWRender::MTextureManager;

namespace {

constexpr unsigned SIDE = 64;

int g_overrides = 0;
int g_data = 0;
std::vector<std::string> g_legacy;
QImage g_picture;

QImage Picture() {
    QImage picture(SIDE, SIDE, QImage::Format_RGBA8888);
    picture.fill(QColor(10, 20, 30, 40));
    return picture;
}

MTextureManager& Textures() {
    return *MHWRender::MRenderer::theRenderer()->getTextureManager();
}

MTextureDescription Describe(unsigned side = SIDE) {
    MTextureDescription description;
    description.fWidth = description.fHeight = side;
    return description;
}

class StickerNode : public MPxLocatorNode {
public:
    static void* Create() { return new StickerNode; }
    bool drawLast() const override { return std::string(name().asChar()) == "last"; }
    void draw(M3dView& view, const MDagPath& path, M3dView::DisplayStyle,
              M3dView::DisplayStatus status) override {
        g_legacy.push_back(std::string(path.partialPathName().asChar()) + " " +
                           std::to_string(view.portWidth()) + (status == M3dView::kActive ? " active" : ""));
    }
};

struct StickerData : MUserData {
    StickerData()
        : MUserData(false) {
        ++g_data;
    }
    ~StickerData() override { --g_data; }
    int preparations = 0;
};

/// Draws a textured square, and over it, by priority, a line that was added before.
class StickerOverride : public MHWRender::MPxDrawOverride {
public:
    static MPxDrawOverride* Create(const MObject& object) { return new StickerOverride(object); }
    explicit StickerOverride(const MObject& object)
        : MPxDrawOverride(object, nullptr) {
        ++g_overrides;
    }
    ~StickerOverride() override {
        --g_overrides;
        Textures().releaseTexture(texture_);
    }
    MUserData* prepareForDraw(const MDagPath&, const MDagPath&, const MHWRender::MFrameContext&,
                              MUserData* oldData) override {
        auto* data = oldData ? static_cast<StickerData*>(oldData) : new StickerData;
        ++data->preparations;
        return data;
    }
    bool hasUIDrawables() const override { return true; }
    void addUIDrawables(const MDagPath& path, MHWRender::MUIDrawManager& manager,
                        const MHWRender::MFrameContext& context, const MUserData* data) override {
        if (!texture_) {
            texture_ = Textures().acquireTexture("", Describe(), g_picture.constBits());
        }
        texture_->update(g_picture.constBits(), true);
        manager.beginDrawable();
        manager.setDepthPriority(7);
        manager.line2d(MPoint(), MPoint(1, static_cast<const StickerData*>(data)->preparations));
        manager.endDrawable();
        manager.beginDrawable();
        manager.setTexture(texture_);
        manager.setColor(MColor(1, 1, 1, 0.5f));
        manager.rect2d(MPoint(10, 20), MVector(0, 3, 0), 5, 6, true);
        manager.setTexture(nullptr);
        MString panel;
        context.renderingDestination(panel);
        manager.text2d(MPoint(1, 2), panel + " " + path.partialPathName(), MHWRender::MUIDrawManager::kRight);
        manager.endDrawable();
    }

private:
    MTexture* texture_ = nullptr;
};

const char* const CLASSIFICATION = "drawdb/geometry/sticker";

// NOLINTBEGIN(performance-unnecessary-value-param): the host looks for this signature
MStatus LoadSticker(MObject object) {
    const MString classification = MString("other:") + CLASSIFICATION;
    CHECK_MSTATUS_AND_RETURN_IT(MFnPlugin(object).registerNode(
        "sticker", MTypeId(0x10100), StickerNode::Create, nullptr, MPxNode::kLocatorNode, &classification));
    return MHWRender::MDrawRegistry::registerDrawOverrideCreator(CLASSIFICATION, "stickerPlugin",
                                                                 StickerOverride::Create);
}
MStatus UnloadSticker(MObject object) {
    // The host takes the override out, since the plug-in has forgotten to.
    return MFnPlugin(object).deregisterNode(MTypeId(0x10100));
}
// NOLINTEND(performance-unnecessary-value-param)

class ViewDrawingTest : public ::testing::Test {
protected:
    ViewDrawingTest()
        : host_(Host::Options{false, prefs_.path().toStdString()})
        , window_(FakeWindow::Open(host_))
        , view_("modelPanel4", "perspShape", QSize(400, 300)) {
        g_picture = Picture();
        g_legacy.clear();
        window_.views = {&view_};
        host_.plugins().LoadBuiltin("sticker", LoadSticker, UnloadSticker);
    }
    ~ViewDrawingTest() override {
        window_.views.clear();
        ViewDrawing::Forget(view_);
    }

    void Run(const std::string& mel) { host_.interpreter().Execute(mel); }
    DrawList Collect(FakeView& view) {
        return ViewDrawing::Collect(host_.scene(), view,
                                    CameraView(*view.Camera(), view.Width(), view.Height()));
    }
    DrawList Collect() { return Collect(view_); }

    QTemporaryDir prefs_;
    LightboxHost host_;
    FakeWindow& window_;
    FakeView view_;
};

} // namespace

TEST_F(ViewDrawingTest, OverridesDrawVisibleNodesInOrder) {
    Run("createNode transform -name a; createNode sticker -parent a -name aShape;"
        "createNode transform -name b; createNode sticker -parent b -name bShape");
    DrawList list = Collect();
    ASSERT_EQ(list.size(), 6U);
    const DrawItem& square = list[0];
    EXPECT_EQ(square.kind, DrawItem::Kind::Rectangle);
    EXPECT_EQ(square.position, QPointF(10, 20));
    EXPECT_EQ(square.up, QPointF(0, 1));
    EXPECT_EQ(square.halfWidth, 5.0);
    EXPECT_NEAR(square.color.alphaF(), 0.5, 1e-3);
    ASSERT_TRUE(square.texture);
    EXPECT_EQ(square.texture->image, g_picture);
    EXPECT_TRUE(square.texture->hasMipmaps);
    EXPECT_EQ(list[1].text, "modelPanel4 aShape");
    EXPECT_EQ(list[1].alignment, Qt::AlignRight);
    EXPECT_FALSE(list[1].texture);
    EXPECT_EQ(list[3].text, "modelPanel4 bShape");
    EXPECT_NE(list[2].texture, square.texture);
    EXPECT_EQ(list[4].kind, DrawItem::Kind::Line) << "the higher priority comes last";
    EXPECT_EQ(list[4].end, QPointF(1, 1));
    EXPECT_EQ(Collect()[4].end, QPointF(1, 2)) << "data stays from one drawing to the next";
    Run("setAttr a.visibility 0");
    EXPECT_EQ(Collect().size(), 3U);
}

TEST_F(ViewDrawingTest, TexturesAreUpdatedWhenTheirPixelsChange) {
    Run("createNode sticker");
    const std::shared_ptr<Texture> texture = Collect()[0].texture;
    const std::uint64_t revision = texture->revision;
    Collect();
    EXPECT_EQ(texture->revision, revision);
    const QImage before = texture->image;
    g_picture.setPixelColor(SIDE - 1, SIDE - 1, QColor(11, 20, 30, 40));
    EXPECT_EQ(Collect()[0].texture, texture);
    EXPECT_EQ(texture->revision, revision + 1);
    EXPECT_EQ(texture->image, g_picture);
    EXPECT_NE(before, g_picture) << "what somebody holds does not change";
}

TEST_F(ViewDrawingTest, OverridesGoWithTheirNodeTheirViewAndTheirPlugin) {
    Run("createNode sticker -name one; createNode sticker -name two");
    Collect();
    EXPECT_EQ(g_overrides, 2);
    {
        FakeView second("modelPanel1", "topShape", QSize(100, 100));
        Collect(second);
        EXPECT_EQ(g_overrides, 4) << "a view has its own";
        ViewDrawing::Forget(second);
        EXPECT_EQ(g_overrides, 2);
    }
    Run("delete one");
    Collect();
    EXPECT_EQ(g_overrides, 1);
    EXPECT_EQ(g_data, 1);
    Run("undo");
    EXPECT_EQ(Collect().size(), 6U);
    Run("file -force -new");
    EXPECT_TRUE(Collect().empty());
    EXPECT_EQ(g_overrides, 0);

    Run("createNode sticker");
    Collect();
    EXPECT_FALSE(MHWRender::MDrawRegistry::registerDrawOverrideCreator(CLASSIFICATION, "another",
                                                                       StickerOverride::Create));
    EXPECT_FALSE(MHWRender::MDrawRegistry::deregisterDrawOverrideCreator(CLASSIFICATION, "another"));
    host_.plugins().Unload("sticker", true);
    EXPECT_EQ(g_overrides, 0);
    EXPECT_EQ(g_data, 0);
    EXPECT_TRUE(Collect().empty());
}

TEST_F(ViewDrawingTest, LegacyLocatorsDrawThemselves) {
    Run("createNode transform -name a; createNode sticker -parent a -name last;"
        "createNode transform -name b; createNode sticker -parent b -name first;"
        "createNode transform -name c; createNode sticker -parent c -name hidden;"
        "setAttr hidden.visibility 0; select b");
    ViewDrawing::DrawLegacy(host_.scene(), view_);
    EXPECT_EQ(g_legacy, (std::vector<std::string>{"first 400 active", "last 400"}));
}

TEST_F(ViewDrawingTest, TexturesAreKeptByName) {
    const QImage picture = Picture();
    MTexture* texture = Textures().acquireTexture("wall", Describe(), picture.constBits());
    ASSERT_NE(texture, nullptr);
    EXPECT_EQ(Textures().acquireTexture("wall", Describe(), picture.constBits()), texture);
    EXPECT_EQ(Textures().findTexture("wall"), texture);
    EXPECT_EQ(Textures().findTexture("floor"), nullptr);
    for (int users = 3; users > 0; --users) {
        EXPECT_EQ(texture->name(), "wall");
        Textures().releaseTexture(texture);
    }
    EXPECT_EQ(Textures().findTexture("wall"), nullptr);

    // Rows may have a gap between them, and those that are too short are refused.
    QImage wide(SIDE + 8, SIDE, QImage::Format_RGBA8888);
    wide.fill(Qt::red);
    texture = Textures().acquireTexture("", Describe(), picture.constBits());
    ASSERT_TRUE(texture->update(wide.constBits(), false, static_cast<unsigned>(wide.bytesPerLine())));
    EXPECT_EQ(ApiBridge::TextureOf(*texture)->image.pixelColor(SIDE - 1, SIDE - 1), QColor(Qt::red));
    EXPECT_TRUE(texture->update(wide.constBits(), false, SIDE).error());
    EXPECT_TRUE(texture->update(nullptr, false).error());
    Textures().releaseTexture(texture);

    MTextureDescription wrong[] = {Describe(0), Describe(100000), Describe(), Describe(), Describe()};
    wrong[2].fFormat = MHWRender::kR32_FLOAT;
    wrong[3].fTextureType = MHWRender::kCubeMap;
    wrong[4].fBytesPerRow = SIDE;
    for (const MTextureDescription& description : wrong) {
        EXPECT_EQ(Textures().acquireTexture("wrong", description, picture.constBits()), nullptr);
    }
    EXPECT_EQ(Textures().acquireTexture("wrong", Describe(), nullptr), nullptr);
}
