#include "core/Layer.h"
#include "node/BaseNode.h"
#include "plugin/PluginTest.h"
#include "plugin/commands/ChangeCounter.h"

#include <gmock/gmock.h>

namespace vellix {

namespace {

using ::testing::Contains;
using ::testing::IsEmpty;

class NodeCommandTest : public PluginTest {
protected:
    std::string Selected() { return Ask("stringArrayToString(`ls -selection`, \" \")"); }
};

} // namespace

TEST_F(NodeCommandTest, CreatesTheNodesUndoesAndRedoesThem) {
    Run("select top side");
    ASSERT_TRUE(Run("qmVellixNode"));
    EXPECT_EQ(Ask("nodeType vellix"), "transform");
    EXPECT_EQ(Ask("nodeType vellixShape"), "qmVellix");
    EXPECT_EQ(Ask("stringArrayToString(`listRelatives -parent vellixShape`, \" \")"), "vellix");
    for (const char* attribute : {"translateX", "rotateY", "scaleZ"}) {
        EXPECT_EQ(Ask(std::string("getAttr -lock vellix.") + attribute), "1");
        EXPECT_EQ(Ask(std::string("getAttr -keyable vellix.") + attribute), "0");
    }
    EXPECT_EQ(Selected(), "");

    ASSERT_TRUE(Run("undo"));
    EXPECT_EQ(Ask("objExists vellix"), "0");
    EXPECT_EQ(Ask("objExists vellixShape"), "0");
    EXPECT_EQ(Ask("qmVellixNode -exists"), "0");
    EXPECT_EQ(Selected(), "top side");

    ASSERT_TRUE(Run("redo"));
    EXPECT_EQ(Ask("qmVellixNode -ex"), "1");
    EXPECT_EQ(Selected(), "");
    EXPECT_THAT(Messages(), IsEmpty());

    EXPECT_FALSE(Run("qmVellixNode"));
    EXPECT_THAT(Messages(), Contains("Node already exists"));
}

TEST_F(NodeCommandTest, AddsAFirstLayerWithFrames) {
    Run("timeControl -e -rangeArray 1 24 $gPlayBackSlider");
    ASSERT_TRUE(Run("qmVellixNode -layer -frame -camera persp -layerName \"Rough \\\"1\\\"\" -layerState 1"));
    BaseNode* node = BaseNode::GetMaster();
    ASSERT_EQ(node->LayerCount(PERSP), 1);
    EXPECT_EQ(node->GetLayerName(PERSP, 0), QStringLiteral("Rough \"1\""));
    EXPECT_EQ(node->GetLayerState(PERSP, 0), LayerState::Static);
    QList<int> times;
    node->GetFrameTimes(PERSP, times);
    ASSERT_EQ(times.size(), 23);
    EXPECT_EQ(times.first(), 1);
    EXPECT_EQ(times.last(), 23);
    EXPECT_EQ(Ask("qmVellixNode -q -c"), "persp");

    Run("undo; redo");
    node = BaseNode::GetMaster();
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->LayerCount(PERSP), 1);
    node->GetFrameTimes(PERSP, times);
    EXPECT_EQ(times.size(), 23);
    EXPECT_THAT(Messages(), IsEmpty());
}

// A refresh walks the scene and all frames.
TEST_F(NodeCommandTest, ManyFramesRefreshOnce) {
    Run("timeControl -e -rangeArray 1 501 $gPlayBackSlider");
    ChangeCounter counter;
    ASSERT_TRUE(Run("qmVellixNode -layer -frame -camera persp"));
    EXPECT_EQ(BaseNode::GetMaster()->GetActiveLayer(PERSP)->FrameCount(), 500);
    EXPECT_EQ(counter.Take(), 1);
}

TEST_F(NodeCommandTest, StatesAboveTwoBecomeAnimated) {
    ASSERT_TRUE(Run("qmVellixNode -l -c persp -ls 5"));
    EXPECT_EQ(BaseNode::GetMaster()->GetLayerState(PERSP, 0), LayerState::Animated);
    EXPECT_EQ(BaseNode::GetMaster()->GetLayerName(PERSP, 0), QStringLiteral("Layer"));
    // Nothing is keyed without -f, and a layer's name alone asks for no layer.
    EXPECT_EQ(BaseNode::GetMaster()->GetActiveLayer(PERSP)->FrameCount(), 0);
    Run("file -force -new; qmVellixNode -c persp -ln \"Ink\" -f");
    EXPECT_EQ(BaseNode::GetMaster()->TotalLayerCount(), 0);
}

TEST_F(NodeCommandTest, Misuse) {
    struct Case {
        const char* line;
        const char* message; ///< empty: the failure says it all
    };
    const Case cases[] = {
        {"qmVellixNode -e -exists", "Invalid edit parameter"},
        {"qmVellixNode -q -exists", "Invalid query parameter"},
        {"qmVellixNode -q -c", ""},
        {"qmVellixNode -r", ""},
        {"qmVellixNode -rg", ""},
        {"qmVellixNode -nonsense", ""},
        {"qmVellixNode -l -ls many", ""},
        {"timeControl -e -rangeArray 0 1000000000 $gPlayBackSlider; qmVellixNode -l -c persp -f",
         "Cannot insert more than 100000 frames"},
    };
    for (const Case& test : cases) {
        Messages();
        EXPECT_FALSE(Run(test.line)) << test.line;
        if (*test.message != 0) {
            EXPECT_THAT(Messages(), Contains(test.message)) << test.line;
        }
        EXPECT_EQ(Ask("qmVellixNode -exists"), "0") << test.line;
    }
}

TEST_F(NodeCommandTest, OnlyACreationIsOnTheUndoQueue) {
    Run("qmVellixNode -l -c persp; createNode transform -n \"last\"");
    EXPECT_TRUE(Run("qmVellixNode -exists; qmVellixNode -r; qmVellixNode -rg; qmVellixNode -q -c"));
    Run("undo");
    EXPECT_EQ(Ask("objExists last"), "0");
}

} // namespace vellix
