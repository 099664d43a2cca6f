#include "MelFixture.h"
#include "scene/Timeline.h"

#include <maya/MAnimControl.h>
#include <maya/MDagPath.h>
#include <maya/MFnDagNode.h>
#include <maya/MFnNumericAttribute.h>
#include <maya/MFnTypedAttribute.h>
#include <maya/MItDag.h>
#include <maya/MItDependencyNodes.h>
#include <maya/MSelectionList.h>
#include <maya/MStringArray.h>

#include <limits>
#include <sstream>

namespace {

class SceneClassesTest : public MelFixture {
protected:
    MDagPath PathOf(const char* name) {
        MDagPath path;
        EXPECT_TRUE(MDagPath::getAPathTo(NodeOf(name), path)) << name;
        return path;
    }
    static std::string Names(const MSelectionList& list) {
        MStringArray names;
        list.getSelectionStrings(names);
        std::ostringstream text;
        text << names;
        return text.str();
    }
    /// The partial names that an iteration visits.
    static std::string Visited(MItDag& it) {
        std::string names;
        for (; !it.isDone(); it.next()) {
            names += std::string(it.partialPathName().asChar()) + std::to_string(it.depth()) + ' ';
        }
        return names;
    }
};

TEST_F(SceneClassesTest, ARemovedAttributeTakesItsValueAndConnectionsAlong) {
    Run("createNode transform -n a;");
    MFnDependencyNode fn(NodeOf("a"));
    MFnNumericAttribute numeric;
    // The next attribute may well be made where the last one was.
    for (int round = 0; round < 20; ++round) {
        MObject attribute = numeric.create("extra", "ex", MFnNumericData::k2Double);
        ASSERT_TRUE(fn.addAttribute(attribute));
        MPlug plug = fn.findPlug("extra0");
        EXPECT_EQ(plug.asDouble(), 0.0) << round;
        EXPECT_FALSE(plug.isLocked() || plug.isConnected()) << round;
        Run("connectAttr a.extra1 a.tx");
        ASSERT_TRUE(plug.setDouble(5) && plug.setLocked(true));
        plug = MPlug();
        ASSERT_TRUE(fn.removeAttribute(attribute));
        EXPECT_FALSE(fn.findPlug("tx").isDestination());
        EXPECT_TRUE(fn.removeAttribute(attribute).error());
    }
    // What MEL removes comes back with undo, and is gone for good without it.
    Run("addAttr -ln extra -at double a; setAttr a.extra 4; setAttr -lock 1 a.extra;");
    Run("deleteAttr a.extra");
    Run("undo");
    EXPECT_EQ(Typed("getAttr a.extra"), "float 4");
    EXPECT_EQ(Typed("getAttr -lock a.extra"), "int 1");
    for (int round = 0; round < 20; ++round) {
        Run("deleteAttr a.extra; flushUndo;");
        Run("addAttr -ln extra -at double a;");
        EXPECT_EQ(Typed("getAttr a.extra"), "float 0") << round;
        Run("setAttr a.extra 4;");
    }
}

TEST_F(SceneClassesTest, AttributesAreAddedUnderFreeNamesOnly) {
    Run("createNode transform -n a;");
    MFnDependencyNode fn(NodeOf("a"));
    MFnNumericAttribute numeric;
    for (const auto& names : {std::make_pair("translate", "x1"), std::make_pair("x1", "tx")}) {
        EXPECT_TRUE(fn.addAttribute(numeric.create(names.first, names.second, MFnNumericData::kInt)).error());
    }
    EXPECT_TRUE(fn.addAttribute(MObject::kNullObj).error());
    EXPECT_TRUE(fn.removeAttribute(fn.attribute("translate")).error());
    const unsigned int count = fn.attributeCount();
    ASSERT_TRUE(fn.addAttribute(numeric.create("mine", "", MFnNumericData::kInt, 3)));
    EXPECT_EQ(fn.attributeCount(), count + 1);
    EXPECT_EQ(MFnAttribute(fn.attribute(count)).name(), "mine");
    EXPECT_TRUE(MFnAttribute(fn.attribute("mine")).isDynamic());
    EXPECT_EQ(fn.findPlug("mine").asInt(), 3);
    MStatus status;
    EXPECT_TRUE(fn.attribute(count + 1, &status).isNull());
    EXPECT_TRUE(status.error());
    ASSERT_TRUE(fn.setLocked(true));
    EXPECT_TRUE(fn.removeAttribute(fn.attribute("mine")).error());
    EXPECT_TRUE(fn.addAttribute(numeric.create("more", "mo", MFnNumericData::kInt)).error());
}

TEST_F(SceneClassesTest, NodesAreRenamedWhereTheyMay) {
    Run("createNode transform -n a; createNode transform -n b; createNode transform -n fixed; lockNode "
        "fixed;");
    const struct {
        const char* node;
        const char* wanted;
        bool createNamespace;
        const char* got;
    } rows[] = {
        {"a", "a", false, "a"},         {"a", "b", false, "b1"},      {"b1", "two words", false, "two_words"},
        {"b", "ns:b", false, ""},       {"b", "ns:b", true, "ns:b"},  {"ns:b", "ns:c", false, "ns:c"},
        {"ns:c", "", false, ""},        {"fixed", "free", false, ""}, {"time1", "clock", false, ""},
        {"persp", "eye", false, "eye"},
    };
    for (const auto& row : rows) {
        MStatus status;
        EXPECT_EQ(MFnDependencyNode(NodeOf(row.node)).setName(row.wanted, row.createNamespace, &status),
                  row.got)
            << row.node << " to " << row.wanted;
        EXPECT_EQ(status == MS::kSuccess, *row.got != 0) << row.wanted;
    }
    MItDag world;
    EXPECT_EQ(world.currentItem().apiType(), MFn::kWorld);
    MStatus status;
    MFnDependencyNode(world.currentItem()).setName("earth", false, &status);
    EXPECT_TRUE(status.error());
    for (const char* type : {"world", "dagNode", "nosuch", ""}) {
        EXPECT_TRUE(MFnDependencyNode().create(type, &status).isNull()) << type;
        EXPECT_TRUE(status.error()) << type;
    }
    MFnDependencyNode none;
    EXPECT_EQ(none.name(&status), "");
    EXPECT_TRUE(status.error());
    EXPECT_TRUE(none.findPlug("tx", &status).isNull());
    EXPECT_TRUE(status.error());
    const MFnDagNode refused(NodeOf("time1"), &status);
    EXPECT_TRUE(status.error());
}

TEST_F(SceneClassesTest, PathsGoUpAndDown) {
    Run("createNode transform -n a; createNode transform -n b -p a; createNode locator -n s -p b;"
        "createNode transform -n c;");
    MDagPath path = PathOf("s");
    EXPECT_EQ(path.fullPathName(), "|a|b|s");
    EXPECT_EQ(path.length(), 3u);
    EXPECT_TRUE(path.transform() == NodeOf("b"));
    ASSERT_TRUE(path.extendToShape());
    ASSERT_TRUE(path.pop(2));
    EXPECT_EQ(path.fullPathName(), "|a");
    EXPECT_TRUE(path.extendToShape().error());
    EXPECT_TRUE(path.push(NodeOf("c")).error());
    EXPECT_EQ(path.fullPathName(), "|a");
    ASSERT_TRUE(path.push(NodeOf("b")));
    EXPECT_TRUE(path.extendToShapeDirectlyBelow(1).error());
    ASSERT_TRUE(path.extendToShape());
    EXPECT_TRUE(path.hasFn(MFn::kLocator) && path.hasFn(MFn::kShape) && !path.hasFn(MFn::kTransform));
    EXPECT_TRUE(path.pop(9).error());
    EXPECT_EQ(path.length(), 3u) << "a refused step leaves the path alone";
    EXPECT_TRUE(path.isVisible());
    Run("setAttr a.v 0");
    EXPECT_FALSE(path.isVisible());
    Run("delete a");
    EXPECT_FALSE(path.isValid());
    Run("undo");
    EXPECT_TRUE(path.isValid());
    MDagPath empty;
    EXPECT_FALSE(empty.isValid());
    MFnDagNode top(NodeOf("a"));
    EXPECT_TRUE(empty.push(MFnDagNode(top.parent(0)).object()).error());
    EXPECT_TRUE(MDagPath::getAPathTo(NodeOf("time1"), path).error());
    EXPECT_EQ(top.parentCount(), 1u);
    EXPECT_TRUE(top.hasChild(NodeOf("b")) && !top.hasChild(NodeOf("s")));
    EXPECT_TRUE(top.child(1).isNull());
}

TEST_F(SceneClassesTest, DagIterationsHaveAnOrderAFilterAndARoot) {
    Run("createNode transform -n a; createNode transform -n b -p a; createNode transform -n c -p b;"
        "createNode transform -n d -p a; createNode locator -n s -p d;");
    MItDag it;
    ASSERT_TRUE(it.reset(NodeOf("a")));
    EXPECT_EQ(Visited(it), "a0 b1 c2 d1 s2 ");
    EXPECT_TRUE(it.next().error());
    MStatus status;
    EXPECT_TRUE(it.currentItem(&status).isNull());
    EXPECT_TRUE(status.error());
    it.reset(NodeOf("a"), MItDag::kBreadthFirst);
    EXPECT_EQ(Visited(it), "a0 b1 d1 c2 s2 ");
    it.reset(NodeOf("a"), MItDag::kDepthFirst, MFn::kLocator);
    EXPECT_EQ(Visited(it), "s2 ");
    it.reset(NodeOf("a"));
    it.next();
    ASSERT_TRUE(it.prune());
    EXPECT_EQ(Visited(it), "b1 d1 s2 ");
    EXPECT_TRUE(it.reset(MObject::kNullObj).error());

    MItDag wide(MItDag::kBreadthFirst, MFn::kTransform);
    const std::string first = Visited(wide);
    EXPECT_EQ(first, "persp1 top1 front1 side1 a1 b2 d2 c3 ");
    wide.reset();
    EXPECT_EQ(Visited(wide), first);
}

TEST_F(SceneClassesTest, NodesAreIteratedInTheOrderTheyWereMade) {
    Run("createNode transform -n z; createNode locator -n s -p z; createNode transform -n a;");
    std::string names;
    MItDependencyNodes it(MFn::kTransform);
    for (; !it.isDone(); it.next()) {
        names += std::string(MFnDependencyNode(it.thisNode()).name().asChar()) + ' ';
    }
    EXPECT_EQ(names, "persp top front side z a ");
    EXPECT_TRUE(it.next().error());
    EXPECT_TRUE(it.thisNode().isNull());
    it.reset(MFn::kLocator);
    Run("delete z");
    EXPECT_FALSE(it.isDone()) << "the scene may change meanwhile";
    EXPECT_EQ(MFnDependencyNode(it.thisNode()).name(), "s");
}

TEST_F(SceneClassesTest, SelectionListsMergeAndMatch) {
    Run("createNode transform -n a1; createNode transform -n a2; createNode transform -n b;"
        "namespace -add ns; createNode transform -n ns:a3;");
    MSelectionList list;
    ASSERT_TRUE(list.add("a*"));
    EXPECT_EQ(Names(list), "[a1, a2]");
    ASSERT_TRUE(list.add("a*", true));
    EXPECT_EQ(Names(list), "[a1, a2, ns:a3]");
    EXPECT_TRUE(list.add("nosuch").error());
    EXPECT_TRUE(list.add(MObject::kNullObj).error());
    ASSERT_TRUE(list.add(NodeOf("a1"), true));
    EXPECT_EQ(list.length(), 3u);
    ASSERT_TRUE(list.add(NodeOf("a1")));
    EXPECT_EQ(Names(list), "[a1, a2, ns:a3, a1]");

    MSelectionList other;
    other.add("a1");
    other.add("b");
    MSelectionList merged = list;
    merged.merge(other);
    EXPECT_EQ(Names(merged), "[a1, a2, ns:a3, a1, b]");
    merged.merge(other, MSelectionList::kRemoveFromList);
    EXPECT_EQ(Names(merged), "[a2, ns:a3]");
    merged.merge(other, MSelectionList::kXORWithList);
    EXPECT_EQ(Names(merged), "[a2, ns:a3, a1, b]");
    merged.merge(merged, MSelectionList::kXORWithList);
    EXPECT_TRUE(merged.isEmpty());

    MObject node = NodeOf("b");
    EXPECT_TRUE(list.getDependNode(4, node).error());
    EXPECT_TRUE(node == NodeOf("b"));
    EXPECT_TRUE(list.remove(4).error());
    EXPECT_TRUE(list.replace(0, NodeOf("time1")));
    MDagPath path;
    EXPECT_TRUE(list.getDagPath(0, path).error());
    EXPECT_FALSE(path.isValid());
}

TEST_F(SceneClassesTest, NumericAttributesKeepTheirTypeAndLimits) {
    for (int type = MFnNumericData::kInvalid; type <= MFnNumericData::kLast; ++type) {
        const auto kind = static_cast<MFnNumericData::Type>(type);
        MStatus status;
        MFnNumericAttribute fn;
        const bool isKnown = !fn.create("value", "v", kind, 1, &status).isNull();
        EXPECT_EQ(isKnown, kind > MFnNumericData::kInvalid && kind < MFnNumericData::kAddr) << type;
        EXPECT_EQ(status == MS::kSuccess, isKnown) << type;
        EXPECT_EQ(fn.unitType(), isKnown ? kind : MFnNumericData::kInvalid) << type;
    }
    MFnNumericAttribute fn;
    double number = 7;
    EXPECT_TRUE(fn.setMin(0).error());
    fn.create("value", "v", MFnNumericData::kDouble, 0.5);
    EXPECT_TRUE(fn.getMin(number).error() && fn.getMax(number).error());
    EXPECT_EQ(number, 7.0);
    ASSERT_TRUE(fn.setMin(0) && fn.setMax(1) && fn.setDefault(0.25));
    EXPECT_TRUE(fn.hasMin() && fn.hasMax());
    EXPECT_TRUE(fn.getDefault(number));
    EXPECT_EQ(number, 0.25);
    MStatus status;
    EXPECT_TRUE(fn.create("", "v", MFnNumericData::kInt, 0, &status).isNull());
    EXPECT_TRUE(status.error());

    MFnTypedAttribute typed;
    for (const MFnData::Type type : {MFnData::kString, MFnData::kMatrix, MFnData::kIntArray}) {
        EXPECT_FALSE(typed.create("text", "t", type).isNull());
        EXPECT_EQ(typed.attrType(), type);
    }
    EXPECT_TRUE(typed.create("text", "t", MFnData::kPlugin, MObject::kNullObj, &status).isNull());
    EXPECT_TRUE(status.error());
    EXPECT_TRUE(typed.create("text", "t", MTypeId(0x7777), MObject::kNullObj, &status).isNull());
    EXPECT_TRUE(status.error());
}

TEST_F(SceneClassesTest, TheTimelineTakesWhatIsATime) {
    ASSERT_TRUE(MAnimControl::setCurrentTime(MTime(1, MTime::kSeconds)));
    EXPECT_EQ(MAnimControl::currentTime().value(), 24.0);
    for (const double number :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
        EXPECT_TRUE(MAnimControl::setCurrentTime(MTime(number, MTime::kFilm)).error());
        EXPECT_TRUE(MAnimControl::setMinTime(MTime(number, MTime::kFilm)).error());
    }
    EXPECT_EQ(MAnimControl::currentTime().value(), 24.0);
    ASSERT_TRUE(MAnimControl::setMinMaxTime(MTime(10, MTime::kFilm), MTime(300, MTime::kFilm)));
    EXPECT_EQ(MAnimControl::animationEndTime().value(), 300.0) << "the animation holds the playback range";
    EXPECT_TRUE(MAnimControl::setMaxTime(MTime(9, MTime::kFilm)).error());
    EXPECT_EQ(MAnimControl::maxTime().value(), 300.0);
    MAnimControl::playBackward();
    EXPECT_TRUE(MAnimControl::isPlaying());
    MAnimControl::stop();
    EXPECT_FALSE(MAnimControl::isPlaying());
}

} // namespace
