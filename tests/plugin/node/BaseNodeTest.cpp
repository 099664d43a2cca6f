#include "node/BaseNode.h"

#include "core/Frame.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "host/panels/DialogManager.h"
#include "paint/Stroke.h"
#include "plugin/PluginTest.h"
#include "plugin/node/LayerDataText.h"
#include "plugin/paint/PngBytes.h"

#include <maya/MSelectionList.h>

#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace vellix {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

class BaseNodeTest : public PluginTest {
protected:
    std::string Path(const char* name) const { return folder_.path().toStdString() + "/" + name; }
    BaseNode* MakeDrawing() {
        Run("qmVellixNode -c persp");
        BaseNode* node = BaseNode::GetMaster();
        FillDrawing(*node->GetLayerManager());
        return node;
    }
    bool Save(const std::string& path) {
        return Run("file -rename \"" + path + "\"; file -save -type \"mayaAscii\"");
    }

    QTemporaryDir folder_;
};

} // namespace

TEST_F(BaseNodeTest, TheFirstNodeIsMaster) {
    EXPECT_EQ(BaseNode::GetMaster(), nullptr);
    Run("createNode qmVellix -name \"one\"");
    BaseNode* first = BaseNode::GetMaster();
    ASSERT_NE(first, nullptr);
    Run("createNode qmVellix -name \"two\"");
    EXPECT_EQ(BaseNode::GetAll().size(), 2);
    EXPECT_EQ(BaseNode::GetMaster(), first);
    EXPECT_FALSE(BaseNode::GetAll().last()->IsMaster());
    EXPECT_EQ(Ask("getAttr -lock one.localPositionX"), "1");
    EXPECT_EQ(Ask("getAttr -keyable one.localScaleZ"), "0");
    EXPECT_EQ(Ask("getAttr one.opacity"), "1");
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(BaseNodeTest, ASceneBringsItsDrawingBack) {
    const std::string drawn = Describe(*MakeDrawing()->GetLayerManager());
    ASSERT_TRUE(Save(Path("a.ma")));
    ASSERT_TRUE(Run("file -force -open \"" + Path("a.ma") + "\""));
    ASSERT_NE(BaseNode::GetMaster(), nullptr);
    EXPECT_EQ(Describe(*BaseNode::GetMaster()->GetLayerManager()), drawn);
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(BaseNodeTest, NamesOfEveryKindSurviveASceneFile) {
    BaseNode* node = MakeDrawing();
    for (const char* name : {"say \"hi\"", "back\\slash\\n", "two\nlines\r\n", "{};$x`ls`; // |",
                             "\xE7\xAD\x86 \xF0\x9F\x96\x8C", "a\tb"}) {
        node->InsertLayer(PERSP, -1, QString::fromUtf8(name));
    }
    const std::string drawn = Describe(*node->GetLayerManager());
    ASSERT_TRUE(Save(Path("names.ma")));
    ASSERT_TRUE(Run("file -force -open \"" + Path("names.ma") + "\""));
    EXPECT_EQ(Describe(*BaseNode::GetMaster()->GetLayerManager()), drawn);
}

TEST_F(BaseNodeTest, AReferencedDrawingIsNeverMaster) {
    MakeDrawing();
    ASSERT_TRUE(Save(Path("a.ma")));
    Run("file -force -new");
    ASSERT_TRUE(Run("file -reference -namespace \"ref\" \"" + Path("a.ma") + "\""));
    ASSERT_EQ(BaseNode::GetAll().size(), 1);
    EXPECT_EQ(BaseNode::GetMaster(), nullptr);
    EXPECT_EQ(BaseNode::GetAll().first()->LayerCount(PERSP), 3);
    // The scene's own drawing becomes master beside it.
    ASSERT_TRUE(Run("qmVellixNode"));
    ASSERT_NE(BaseNode::GetMaster(), nullptr);
    EXPECT_EQ(BaseNode::GetMaster()->LayerCount(PERSP), 0);

    Run("file -force -new");
    ASSERT_TRUE(Run("file -import \"" + Path("a.ma") + "\""));
    ASSERT_NE(BaseNode::GetMaster(), nullptr);
    EXPECT_EQ(BaseNode::GetMaster()->LayerCount(PERSP), 3);
}

TEST_F(BaseNodeTest, TheSelectedNodeIsFoundThroughItsTransform) {
    MakeDrawing();
    struct Case {
        const char* selection;
        bool found;
    };
    const Case cases[] = {{"vellix", true}, {"vellixShape", true}, {"persp", false}, {"vellix persp", false}};
    for (const Case& test : cases) {
        Run(std::string("select ") + test.selection);
        EXPECT_EQ(BaseNode::GetSelected() == BaseNode::GetMaster(), test.found) << test.selection;
    }
    Run("select -clear");
    EXPECT_EQ(BaseNode::GetSelected(), nullptr);
}

TEST_F(BaseNodeTest, PrepareForDrawTellsWhyNot) {
    Run("qmVellixNode");
    BaseNode* node = BaseNode::GetMaster();
    MayaUtil::SetPlaybackTime(10);
    int layer = -1;
    bool frameAdded = false;
    const auto prepare = [&] {
        layer = -1;
        frameAdded = false;
        return node->PrepareForDraw(PERSP, layer, frameAdded);
    };
    EXPECT_FALSE(node->PrepareForDraw(QString(), layer, frameAdded));

    Settings::automaticallyAddFirstLayer = false;
    EXPECT_FALSE(prepare());
    EXPECT_THAT(Messages(), ElementsAre("A layer does not exist for the current camera"));
    Settings::automaticallyAddFirstLayer = true;

    Settings::alwaysDisplayNewLayerDialog = true;
    int dialogs = 0;
    DialogManager::RegisterDialog(DialogManager::Dialog::NewLayer, [&](QWidget*) { ++dialogs; });
    EXPECT_FALSE(prepare());
    EXPECT_EQ(dialogs, 1);
    EXPECT_EQ(node->LayerCount(PERSP), 0);
    DialogManager::RegisterDialog(DialogManager::Dialog::NewLayer, nullptr);
    Settings::alwaysDisplayNewLayerDialog = false;

    EXPECT_TRUE(prepare());
    EXPECT_EQ(layer, 0);
    EXPECT_TRUE(frameAdded);
    EXPECT_EQ(node->GetActiveLayer(PERSP)->GetFrame(0)->GetTimeValue(), 10);
    EXPECT_TRUE(prepare());
    EXPECT_EQ(layer, -1);
    EXPECT_FALSE(frameAdded);
    EXPECT_THAT(Messages(), IsEmpty());

    node->SetLayerVisible(PERSP, 0, false);
    EXPECT_FALSE(prepare());
    EXPECT_THAT(Messages(), ElementsAre("Active layer is not visible."));
    node->SetLayerVisible(PERSP, 0, true);

    node->SetLayerState(PERSP, 0, LayerState::Locked);
    MayaUtil::SetPlaybackTime(20);
    EXPECT_FALSE(prepare());
    EXPECT_THAT(Messages(), ElementsAre("Active layer is locked."));
    EXPECT_EQ(node->GetActiveLayer(PERSP)->FrameCount(), 1);

    node->SetActiveLayer(PERSP, -1, false);
    EXPECT_FALSE(prepare());
    EXPECT_THAT(Messages(), ElementsAre("An active layer does not exist."));
}

TEST_F(BaseNodeTest, AStaticLayerGetsItsFrameAtTheDefaultTime) {
    Run("qmVellixNode");
    BaseNode* node = BaseNode::GetMaster();
    node->InsertLayer(PERSP, -1, QStringLiteral("Set"));
    node->SetLayerState(PERSP, 0, LayerState::Static);
    MayaUtil::SetPlaybackTime(10);
    int layer = -1;
    bool frameAdded = false;
    struct Refusal {
        bool insert;
        int time;
    };
    for (const Refusal& refusal : {Refusal{false, -999}, Refusal{true, 11}}) {
        Settings::insertDefaultStaticFrame = refusal.insert;
        Settings::defaultStaticFrameTime = refusal.time;
        EXPECT_FALSE(node->PrepareForDraw(PERSP, layer, frameAdded));
        EXPECT_THAT(Messages(),
                    ElementsAre("Static layer: A frame is required at or before the current time."));
        EXPECT_EQ(node->GetActiveLayer(PERSP)->FrameCount(), 0);
    }
    Settings::insertDefaultStaticFrame = true;
    Settings::defaultStaticFrameTime = -999;
    EXPECT_TRUE(node->PrepareForDraw(PERSP, layer, frameAdded));
    EXPECT_TRUE(frameAdded);
    EXPECT_EQ(node->GetActiveLayer(PERSP)->GetFrame(0)->GetTimeValue(), -999);
}

TEST_F(BaseNodeTest, APictureThatDoesNotDecodeIsReportedOnceAndNotDrawnOn) {
    Run("qmVellixNode");
    BaseNode* node = BaseNode::GetMaster();
    node->InsertLayer(PERSP, -1, QStringLiteral("Ink"));
    Layer* ink = node->GetActiveLayer(PERSP);
    const QByteArray png = png_bytes::NotInflating();
    auto frame = std::make_unique<Frame>(MTime(5, MTime::uiUnit()));
    frame->SetPackedImage(png);
    ink->InsertFrame(frame.release());
    MayaUtil::SetPlaybackTime(5);
    node->GetFinalImage(PERSP);
    EXPECT_THAT(Messages(),
                ElementsAre(StartsWith("The picture of layer Ink at frame 5 cannot be decoded.")));
    ink->ForceCacheUpdate();
    node->GetFinalImage(PERSP);
    EXPECT_THAT(Messages(), IsEmpty());

    int layer = -1;
    bool frameAdded = false;
    EXPECT_FALSE(node->PrepareForDraw(PERSP, layer, frameAdded));
    EXPECT_FALSE(node->MayChangeActivePicture(PERSP));
    EXPECT_THAT(Messages(),
                ::testing::Each(StartsWith("The picture of layer Ink at frame 5 cannot be decoded, ")));
    EXPECT_FALSE(frameAdded);
    // A script that draws all the same changes nothing.
    node->GetActiveStroke(PERSP, true)->tool = ToolType::Rectangle;
    QByteArray undo;
    EXPECT_FALSE(node->CommitActiveStroke(PERSP, undo));
    node->CancelActiveStroke();
    EXPECT_EQ(ink->GetFrame(0)->GetPackedImage(), png);

    MayaUtil::SetPlaybackTime(6);
    EXPECT_TRUE(node->PrepareForDraw(PERSP, layer, frameAdded)) << "a new key holds no damaged picture";
    EXPECT_EQ(ink->FrameCount(), 2);
}

TEST_F(BaseNodeTest, TheClipboardTakesTheRangeWithoutItsEnd) {
    BaseNode* node = MakeDrawing();
    node->SetActiveLayer(PERSP, 0, true); // keys at 1, 5, 12
    struct Case {
        const char* range;
        QList<int> times;
    };
    const Case cases[] = {{"5 12", {0}}, {"1 13", {0, 4, 11}}, {"0 2", {1}}, {"6 12", {}}};
    for (const Case& test : cases) {
        node->ClearClipboard();
        Run(std::string("timeControl -e -rangeArray ") + test.range + " $gPlayBackSlider");
        node->CopyFramesToClipboard(PERSP);
        QList<int> times;
        for (const Frame* frame : node->GetClipboardFrames()) {
            times.append(frame->GetTimeValue());
            EXPECT_FALSE(frame->IsUnpacked());
        }
        EXPECT_EQ(times, test.times) << test.range;
    }
    EXPECT_EQ(node->GetActiveLayer(PERSP)->GetFrame(1)->GetTimeValue(), 5);
}

TEST_F(BaseNodeTest, EveryNodeFollowsTheTime) {
    BaseNode* node = MakeDrawing();
    Layer* layer = node->GetLayer(PERSP, 0); // keys at 1, 5, 12
    struct Case {
        const char* line;
        int index;
    };
    for (const Case& test :
         {Case{"currentTime 5", 1}, Case{"currentTime 0", -1}, Case{"currentTime 99", 2}}) {
        Run(test.line);
        EXPECT_EQ(layer->GetCurrentFrameIndex(), test.index) << test.line;
    }
}

} // namespace vellix
