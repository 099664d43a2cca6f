#include "HostFixture.h"
#include "SceneDump.h"
#include "openmaya/ApiBridge.h"
#include "scene/Edit.h"
#include "scene/Scene.h"
#include "scene/SceneError.h"
#include "scene/UndoQueue.h"

#include <maya/MDagModifier.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MFnNumericAttribute.h>
#include <maya/MFnPluginData.h>
#include <maya/MFnTypedAttribute.h>
#include <maya/MItDag.h>
#include <maya/MPxLocatorNode.h>

using namespace lightbox;

namespace {

int g_nodes = 0;
int g_values = 0;

class SharedData : public MPxData {
public:
    SharedData() { ++g_values; }
    ~SharedData() override { --g_values; }
    void copy(const MPxData& other) override {
        if (const auto* shared = dynamic_cast<const SharedData*>(&other)) {
            content = shared->content;
        }
    }
    MTypeId typeId() const override { return MTypeId(0x10001); }
    MString name() const override { return "sharedData"; }
    static void* Create() { return new SharedData; }

    std::shared_ptr<int> content;
};

class OtherData : public SharedData {
public:
    MTypeId typeId() const override { return MTypeId(0x10009); }
};

class PencilNode : public MPxLocatorNode {
public:
    PencilNode() { ++g_nodes; }
    ~PencilNode() override { --g_nodes; }
    void postConstructor() override {
        nameInPostConstructor = name();
        MPlug plug = MFnDependencyNode(thisMObject()).findPlug("localPositionX");
        plug.setKeyable(false);
        plug.setLocked(true);
    }
    static void* Create() { return new PencilNode; }
    static MStatus Initialize() {
        MFnTypedAttribute typed;
        MFnNumericAttribute numeric;
        const MObject data = typed.create("strokes", "st", MTypeId(0x10001));
        typed.setHidden(true);
        typed.setConnectable(false);
        const MObject opacity = numeric.create("opacity", "op", MFnNumericData::kFloat, 1.0);
        numeric.setKeyable(true);
        numeric.setMin(0.0);
        numeric.setMax(1.0);
        CHECK_MSTATUS_AND_RETURN_IT(addAttribute(data));
        return addAttribute(opacity);
    }

    MString nameInPostConstructor = "unset";
};

} // namespace

class PluginTypesTest : public HostFixture {
protected:
    PluginTypesTest() {
        plugin_.name = "pencil";
        handle_ = PluginHandle::MakeObject(plugin_);
        MFnPlugin fn(handle_, "Maker", "1.2", "Any");
        EXPECT_TRUE(fn.registerData("sharedData", MTypeId(0x10001), SharedData::Create));
        const MString classification("drawdb/geometry/pencil");
        EXPECT_TRUE(fn.registerNode("pencil", MTypeId(0x10002), PencilNode::Create, PencilNode::Initialize,
                                    MPxNode::kLocatorNode, &classification));
    }

    std::shared_ptr<Node> Make() { return edit::CreateNode(host_, "pencil", "drawing"); }

    Plugin plugin_;
    MObject handle_;
};

TEST_F(PluginTypesTest, NodesHaveTheirObjectAndAttributes) {
    const auto node = Make();
    auto* pencil = dynamic_cast<PencilNode*>(node->UserNode());
    ASSERT_TRUE(pencil);
    EXPECT_EQ(pencil->nameInPostConstructor, "");
    const MFnDependencyNode fn(pencil->thisMObject());
    EXPECT_EQ(fn.userNode(), pencil);
    EXPECT_EQ(fn.typeId(), MTypeId(0x10002));
    EXPECT_TRUE(fn.findPlug("localPositionX").isLocked());
    EXPECT_TRUE(fn.findPlug("localPositionX").setDouble(1).error());
    EXPECT_TRUE(fn.findPlug("nosuch").isNull());

    MPlug opacity = fn.findPlug("op");
    EXPECT_EQ(opacity.asFloat(), 1.0F);
    EXPECT_TRUE(opacity.setFloat(0.3F));
    EXPECT_EQ(opacity.asFloat(), 0.3F);
    EXPECT_TRUE(opacity.setFloat(7.0F));
    EXPECT_EQ(opacity.asFloat(), 1.0F);
    EXPECT_TRUE(opacity.setString("half").error());
    EXPECT_TRUE(opacity.setDouble(std::numeric_limits<double>::quiet_NaN()).error());
    MString text = "kept";
    EXPECT_TRUE(opacity.getValue(text).error());
    EXPECT_EQ(text, "kept");

    int count = 0;
    for (MItDag it(static_cast<MItDag::TraversalType>(1), static_cast<MFn::Type>(456)); !it.isDone();
         it.next()) {
        EXPECT_EQ(it.currentItem(), pencil->thisMObject());
        ++count;
    }
    EXPECT_EQ(count, 1);
}

TEST_F(PluginTypesTest, DataIsOwnedByThePlugAndSharedByCopies) {
    MPlug plug = MFnDependencyNode(Make()->UserNode()->thisMObject()).findPlug("strokes");
    MStatus status;
    EXPECT_TRUE(plug.asMObject(&status).isNull());
    EXPECT_EQ(status, MS::kFailure);
    auto* data = new SharedData;
    data->content = std::make_shared<int>(7);
    ASSERT_TRUE(plug.setMPxData(data));
    EXPECT_EQ(MFnPluginData(plug.asMObject()).data(), data);
    OtherData other;
    EXPECT_TRUE(plug.setMPxData(&other).error()) << "another type stays with the caller";
    EXPECT_TRUE(plug.setMPxData(nullptr).error());

    const auto copy = ApiBridge::GetData(plug.asMObject())->Copy();
    EXPECT_EQ(static_cast<SharedData&>(copy->Data()).content, data->content);

    const MObject kept = plug.asMObject();
    ASSERT_TRUE(plug.setMPxData(new SharedData));
    EXPECT_EQ(*static_cast<SharedData*>(MFnPluginData(kept).data())->content, 7);
    ASSERT_TRUE(plug.setMObject(kept));
    EXPECT_EQ(MFnPluginData(plug.asMObject()).data(), data);
}

TEST_F(PluginTypesTest, RegistrationRefusesWhatIsTaken) {
    MFnPlugin fn(handle_);
    EXPECT_TRUE(fn.registerData("sharedData", MTypeId(0x99), SharedData::Create).error());
    EXPECT_TRUE(fn.registerData("fresh", MTypeId(0x10001), SharedData::Create).error());
    EXPECT_TRUE(fn.registerNode("transform", MTypeId(0x99), PencilNode::Create, nullptr).error());
    EXPECT_TRUE(fn.registerNode("fresh", MTypeId(0x10002), PencilNode::Create, nullptr).error());
    EXPECT_TRUE(fn.registerNode("fresh", MTypeId(0x99), PencilNode::Create, [] {
                      return MStatus(MS::kFailure);
                  }).error());
    EXPECT_FALSE(host_.scene().types().FindNodeType("fresh"));
    EXPECT_EQ(MPxNode::addAttribute(MFnNumericAttribute().create("x", "x", MFnNumericData::kInt)),
              MS::kFailure);

    Plugin stranger;
    stranger.name = "stranger";
    MObject handle = PluginHandle::MakeObject(stranger);
    MFnPlugin other(handle);
    EXPECT_TRUE(other.deregisterNode(MTypeId(0x10002)).error());
    EXPECT_TRUE(other.deregisterData(MTypeId(0x10001)).error());
    MStatus status;
    MFnPlugin none(MObject::kNullObj, "Maker", "1", "Any", &status);
    EXPECT_TRUE(status.error());
    EXPECT_TRUE(none.deregisterNode(MTypeId(0x10002)).error());
}

TEST_F(PluginTypesTest, TypesLeaveOnlyWhenNothingOfThemIsLeft) {
    const int nodesBefore = g_nodes;
    {
        const auto node = Make();
        ASSERT_TRUE(
            MFnDependencyNode(node->UserNode()->thisMObject()).findPlug("st").setMPxData(new SharedData));
    }
    MFnPlugin fn(handle_);
    EXPECT_TRUE(fn.deregisterNode(MTypeId(0x10002)).error()) << "the node is in the scene";
    EXPECT_TRUE(fn.deregisterData(MTypeId(0x10001)).error());
    MObject held = ApiBridge::Wrap(host_.scene().Find("drawing"));
    edit::DeleteNodes(host_, {ApiBridge::GetNode(held)});
    EXPECT_TRUE(fn.deregisterNode(MTypeId(0x10002)).error()) << "somebody holds the deleted node";
    held = MObject();
    EXPECT_TRUE(fn.deregisterNode(MTypeId(0x10002)));
    EXPECT_TRUE(fn.deregisterData(MTypeId(0x10001)));
    EXPECT_EQ(g_nodes, nodesBefore);
    EXPECT_EQ(g_values, 0);
    EXPECT_THROW(edit::CreateNode(host_, "pencil"), SceneError);
}

TEST_F(PluginTypesTest, ModifiersUndoKeepsTheObjectAndItsData) {
    MDagModifier modifier;
    const MObject transform = modifier.createNode("transform");
    const MObject shape = modifier.createNode(MTypeId(0x10002), transform);
    ASSERT_TRUE(modifier.doIt());
    MPxNode* user = MFnDependencyNode(shape).userNode();
    ASSERT_TRUE(MFnDependencyNode(shape).findPlug("st").setMPxData(new SharedData));
    const std::string made = DumpScene(host_);
    ASSERT_TRUE(modifier.undoIt());
    ASSERT_TRUE(modifier.doIt());
    EXPECT_EQ(MFnDependencyNode(shape).userNode(), user);
    EXPECT_EQ(DumpScene(host_), made);
}
