#include "HostFixture.h"
#include "SceneDump.h"
#include "scene/Edit.h"
#include "scene/EventBus.h"
#include "scene/Scene.h"
#include "scene/UndoQueue.h"

#include <maya/MDagModifier.h>
#include <maya/MFnDagNode.h>
#include <maya/MGlobal.h>
#include <maya/MItDag.h>
#include <maya/MItDependencyNodes.h>
#include <maya/MSelectionList.h>
#include <maya/MStringArray.h>

using namespace lightbox;

class ModifierTest : public HostFixture {};

TEST_F(ModifierTest, UndoAndRedoGiveTheSameNodesAlsoAfterOtherEdits) {
    const std::string empty = DumpScene(host_);
    MDagModifier modifier;
    const MObject transform = modifier.createNode("transform");
    modifier.renameNode(transform, "vellix");
    const MObject shape = modifier.createNode("locator", transform);
    modifier.renameNode(shape, "vellixShape");
    EXPECT_EQ(DumpScene(host_), empty) << "nothing before doIt";

    ASSERT_EQ(modifier.doIt(), MS::kSuccess);
    EXPECT_EQ(MFnDagNode(shape).fullPathName(), "|vellix|vellixShape");
    const std::string made = DumpScene(host_);
    edit::CreateNode(host_, "transform", "other", static_cast<DagNode*>(host_.scene().Find("vellix").get()));
    edit::Rename(host_, *host_.scene().Find("vellix"), "renamed");
    while (host_.undo().Undo()) {
    }
    EXPECT_EQ(DumpScene(host_), made);

    for (int round = 0; round < 3; ++round) {
        ASSERT_EQ(modifier.undoIt(), MS::kSuccess);
        EXPECT_EQ(DumpScene(host_), empty);
        EXPECT_FALSE(MDagPath().isValid());
        ASSERT_EQ(modifier.doIt(), MS::kSuccess);
        EXPECT_EQ(DumpScene(host_), made);
        MSelectionList found;
        MObject node;
        ASSERT_EQ(found.add("vellixShape"), MS::kSuccess);
        found.getDependNode(0, node);
        EXPECT_EQ(node, shape);
    }
}

TEST_F(ModifierTest, LaterEditsAreDoneByTheNextDoItAndAllAreUndone) {
    MDagModifier modifier;
    const MObject a = modifier.createNode("transform");
    ASSERT_TRUE(modifier.doIt());
    const MFnDependencyNode fn(a);
    modifier.newPlugValueDouble(fn.findPlug("translateX"), 4.5);
    modifier.connect(fn.findPlug("translateX"), fn.findPlug("translateY"));
    EXPECT_EQ(fn.findPlug("translateY").asDouble(), 0.0);
    ASSERT_TRUE(modifier.doIt());
    EXPECT_EQ(fn.findPlug("translateY").asDouble(), 4.5);
    ASSERT_TRUE(modifier.undoIt());
    EXPECT_EQ(fn.findPlug("translateX").asDouble(), 0.0);
    EXPECT_EQ(host_.scene().Find("transform1"), nullptr);
}

TEST_F(ModifierTest, AFailingDoItLeavesNothingBehind) {
    MDagModifier modifier;
    const MObject transform = modifier.createNode("transform");
    modifier.renameNode(transform, "half");
    modifier.newPlugValueString(MFnDependencyNode(transform).findPlug("translateX"), "no number");
    const std::string before = DumpScene(host_);
    EXPECT_EQ(modifier.doIt(), MS::kFailure);
    EXPECT_EQ(DumpScene(host_), before);

    MStatus status;
    EXPECT_TRUE(modifier.createNode("nosuch", MObject::kNullObj, &status).isNull());
    EXPECT_EQ(status, MS::kInvalidParameter);
    EXPECT_TRUE(modifier.createNode(MTypeId(0x123456), MObject::kNullObj, &status).isNull());
    EXPECT_EQ(status, MS::kInvalidParameter);
    EXPECT_EQ(MDGModifier().deleteNode(transform), MS::kInvalidParameter) << "it is not in the scene";
}

TEST_F(ModifierTest, AShapeWithoutParentGetsATransform) {
    MDagModifier modifier;
    const MObject transform = modifier.createNode("camera");
    ASSERT_TRUE(modifier.doIt());
    EXPECT_EQ(transform.apiType(), MFn::kTransform);
    EXPECT_EQ(MFnDagNode(transform).child(0).apiType(), MFn::kCamera);
    ASSERT_TRUE(modifier.reparentNode(transform, MFnDagNode(transform).child(0)).error())
        << "not below its own child";
}

TEST_F(ModifierTest, IteratorsGoInDagOrderAndInOrderOfCreation) {
    const auto group = std::static_pointer_cast<DagNode>(edit::CreateNode(host_, "transform", "group"));
    edit::CreateNode(host_, "locator", "late", group.get());
    edit::Reparent(host_, static_cast<DagNode&>(*host_.scene().Find("front")), group.get());
    const auto names = [](MItDag::TraversalType type, MFn::Type filter) {
        std::string text;
        for (MItDag it(type, filter); !it.isDone(); it.next()) {
            text += std::string(it.partialPathName().asChar()) + " ";
        }
        return text;
    };
    EXPECT_EQ(names(MItDag::kDepthFirst, MFn::kShape), "perspShape topShape sideShape late frontShape ");
    EXPECT_EQ(names(MItDag::kBreadthFirst, MFn::kTransform), "persp top side group front ");
    EXPECT_EQ(names(MItDag::kDepthFirst, MFn::kPluginLocatorNode), "");
    std::string cameras;
    for (MItDependencyNodes it(MFn::kCamera); !it.isDone(); it.next()) {
        MDagPath path;
        MDagPath::getAPathTo(it.thisNode(), path);
        cameras += std::string(MFnDagNode(path.transform()).name().asChar()) + " ";
    }
    EXPECT_EQ(cameras, "persp top front side ");

    MItDag pruned;
    int visited = 0;
    for (; !pruned.isDone(); pruned.next()) {
        if (pruned.depth() == 1) {
            pruned.prune();
        }
        ++visited;
    }
    EXPECT_EQ(visited, 5) << "the world, and the top level";
}

TEST_F(ModifierTest, TheActiveSelectionIsAListOfItsOwn) {
    int changes = 0;
    host_.events().AddCallback("SelectionChanged", [&] { ++changes; });
    MSelectionList saved;
    MSelectionList list;
    ASSERT_TRUE(list.add("top"));
    ASSERT_TRUE(list.add("p*p"));
    EXPECT_TRUE(list.add("nosuch").error());
    MGlobal::setActiveSelectionList(list);
    MGlobal::getActiveSelectionList(saved);
    MGlobal::clearSelectionList();
    MGlobal::clearSelectionList();
    EXPECT_EQ(changes, 2);
    MGlobal::setActiveSelectionList(saved);
    EXPECT_EQ(changes, 3);
    MGlobal::setActiveSelectionList(saved);
    EXPECT_EQ(changes, 3) << "the same selection again is no change";
    MStringArray names;
    saved.getSelectionStrings(names);
    ASSERT_EQ(names.length(), 2U);
    EXPECT_EQ(names[0], "top");
    EXPECT_EQ(names[1], "persp");

    MGlobal::selectByName("side", MGlobal::kAddToHeadOfList);
    MGlobal::selectByName("top", MGlobal::kRemoveFromList);
    MGlobal::selectByName("persp", MGlobal::kXORWithList);
    MGlobal::getActiveSelectionList(saved);
    saved.getSelectionStrings(names);
    ASSERT_EQ(names.length(), 1U);
    EXPECT_EQ(names[0], "side");
}
