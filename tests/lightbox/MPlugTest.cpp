#include "MelFixture.h"

#include <maya/MFnDependencyNode.h>
#include <maya/MPlug.h>
#include <maya/MTime.h>

#include <cmath>
#include <limits>

namespace {

class MPlugTest : public MelFixture {
protected:
    MPlug PlugOf(const char* node, const char* attribute) {
        MStatus status;
        MPlug plug = MFnDependencyNode(NodeOf(node)).findPlug(attribute, true, &status);
        EXPECT_TRUE(status) << node << '.' << attribute;
        return plug;
    }
};

constexpr double INF = std::numeric_limits<double>::infinity();

TEST_F(MPlugTest, NumbersAreStoredAsTheAttributeHoldsThem) {
    Run("createNode transform -n a;"
        "addAttr -ln flag -at bool a; addAttr -ln tiny -at byte a; addAttr -ln small -at short a;"
        "addAttr -ln whole -at long a; addAttr -ln real -at double a; addAttr -ln single -at \"float\" a;"
        "addAttr -ln choice -at \"enum\" -en \"one:two:three\" a;"
        "addAttr -ln bounded -at double -min -1 -max 2 a;");
    const struct {
        const char* attribute;
        double set;
        double get;
    } rows[] = {
        {"flag", 0.4, 1},
        {"flag", 0, 0},
        {"small", 2.9, 2},
        {"small", -2.9, -2},
        {"small", 1e9, 32767},
        {"small", -1e9, -32768},
        {"whole", 1e12, 2147483647},
        {"whole", -1e300, -2147483648.0},
        {"real", 1e300, 1e300},
        {"single", 0.1, static_cast<double>(0.1F)},
        {"choice", 2.7, 2},
        {"bounded", 3, 2},
        {"bounded", -3, -1},
        {"bounded", 0.5, 0.5},
    };
    for (const auto& row : rows) {
        MPlug plug = PlugOf("a", row.attribute);
        EXPECT_TRUE(plug.setDouble(row.set)) << row.attribute << ' ' << row.set;
        EXPECT_EQ(plug.asDouble(), row.get) << row.attribute << ' ' << row.set;
    }
    for (const char* attribute : {"flag", "small", "whole", "real", "single", "choice", "bounded"}) {
        MPlug plug = PlugOf("a", attribute);
        ASSERT_TRUE(plug.setInt(1));
        for (const double number : {INF, -INF, std::nan("")}) {
            EXPECT_TRUE(plug.setDouble(number).error()) << attribute << ' ' << number;
        }
        EXPECT_TRUE(plug.setString("2").error()) << attribute;
        EXPECT_EQ(plug.asInt(), 1) << attribute;
    }
}

TEST_F(MPlugTest, EveryReadingOfANumberFitsItsType) {
    Run("createNode transform -n a; addAttr -ln real -at double a;");
    MPlug plug = PlugOf("a", "real");
    const struct {
        double number;
        int asInt;
        short asShort;
        bool asBool;
        float asFloat;
    } rows[] = {
        {0, 0, 0, false, 0},
        {-0.5, 0, 0, true, -0.5F},
        {40000.9, 40000, 32767, true, 40000.9F},
        {-1e10, -2147483647 - 1, -32768, true, -1e10F},
        {1e300, 2147483647, 32767, true, std::numeric_limits<float>::max()},
        {-1e300, -2147483647 - 1, -32768, true, std::numeric_limits<float>::lowest()},
    };
    for (const auto& row : rows) {
        ASSERT_TRUE(plug.setValue(row.number));
        int whole = 0;
        short small = 0;
        bool flag = false;
        float single = 0;
        double real = 0;
        EXPECT_TRUE(plug.getValue(whole) && plug.getValue(small) && plug.getValue(flag) &&
                    plug.getValue(single) && plug.getValue(real));
        EXPECT_EQ(whole, row.asInt) << row.number;
        EXPECT_EQ(small, row.asShort) << row.number;
        EXPECT_EQ(flag, row.asBool) << row.number;
        EXPECT_EQ(single, row.asFloat) << row.number;
        EXPECT_EQ(real, row.number);
    }
    ASSERT_TRUE(plug.setValue(true));
    EXPECT_EQ(plug.asDouble(), 1.0);
    ASSERT_TRUE(plug.setValue(static_cast<short>(-3)));
    EXPECT_EQ(plug.asDouble(), -3.0);
}

TEST_F(MPlugTest, AnglesAreRadiansAndTimesFollowTheUnit) {
    Run("createNode transform -n a; setAttr a.rx 180; addAttr -ln when -at time a;");
    MPlug angle = PlugOf("a", "rotateX");
    EXPECT_NEAR(angle.asDouble(), M_PI, 1e-12);
    ASSERT_TRUE(angle.setDouble(M_PI / 2));
    EXPECT_EQ(Typed("getAttr a.rx"), "float 90");
    MPlug when = PlugOf("a", "when");
    ASSERT_TRUE(when.setMTime(MTime(2, MTime::kSeconds)));
    EXPECT_EQ(when.asMTime().as(MTime::kFilm), 48.0);
    MTime time(7, MTime::kFilm);
    EXPECT_TRUE(PlugOf("a", "message").getValue(time).error());
    EXPECT_EQ(time.value(), 7.0);
}

TEST_F(MPlugTest, TextsAreTakenOnlyByTexts) {
    Run("createNode transform -n a; addAttr -ln note -dt \"string\" a; addAttr -ln kind -at double a;");
    MPlug note = PlugOf("a", "note");
    EXPECT_EQ(note.asString(), "");
    for (const char* text : {"", "say \"hi\" \\ \n", "\xE7\xAD\x86"}) {
        EXPECT_TRUE(note.setValue(text));
        EXPECT_EQ(note.asString(), text);
    }
    EXPECT_TRUE(note.setDouble(1).error());
    EXPECT_TRUE(note.setBool(true).error());
    EXPECT_TRUE(note.setMObject(MObject::kNullObj).error());
    EXPECT_TRUE(note.setMObject(NodeOf("a")).error());
    EXPECT_EQ(note.asString(), "\xE7\xAD\x86");
    MStatus status;
    EXPECT_EQ(note.asInt(&status), 0);
    EXPECT_EQ(status, MS::kFailure);
    EXPECT_EQ(PlugOf("a", "kind").asString(&status), "");
    EXPECT_EQ(status, MS::kFailure);
    EXPECT_TRUE(note.asMObject(&status).isNull());
    EXPECT_TRUE(status.error());
}

TEST_F(MPlugTest, LockedAndDrivenPlugsRefuse) {
    Run("createNode transform -n a; createNode transform -n b; connectAttr a.tx b.ty;");
    MPlug driven = PlugOf("b", "translateY");
    EXPECT_TRUE(driven.isDestination());
    EXPECT_FALSE(driven.isSource());
    EXPECT_TRUE(driven.isConnected());
    EXPECT_EQ(driven.source().name(), "a.translateX");
    EXPECT_TRUE(PlugOf("a", "tx").isSource());
    EXPECT_FALSE(PlugOf("b", "tx").isConnected());
    EXPECT_TRUE(driven.setDouble(4).error());
    EXPECT_TRUE(PlugOf("a", "tx").setDouble(3));
    EXPECT_EQ(driven.asDouble(), 3.0);

    MPlug whole = PlugOf("a", "translate");
    ASSERT_TRUE(whole.setLocked(true));
    EXPECT_TRUE(PlugOf("a", "tz").isLocked()) << "a part of what is locked";
    EXPECT_TRUE(PlugOf("a", "tz").setDouble(1).error());
    EXPECT_TRUE(PlugOf("a", "rz").setDouble(1));
    ASSERT_TRUE(whole.setLocked(false));
    ASSERT_TRUE(PlugOf("a", "tz").setLocked(true));
    EXPECT_FALSE(whole.isLocked());
    EXPECT_EQ(Typed("getAttr -lock a.tz"), "int 1");
    EXPECT_NE(ErrorOf("setAttr a.t 1 2 3"), "none");
    EXPECT_EQ(PlugOf("a", "tx").asDouble(), 3.0);
    ASSERT_TRUE(PlugOf("a", "tz").setLocked(false));
    EXPECT_TRUE(PlugOf("a", "tz").setDouble(5));
}

TEST_F(MPlugTest, FlagsBelongToThePlugAndShowInMel) {
    Run("createNode transform -n a; createNode transform -n b;");
    MPlug plug = PlugOf("a", "tx");
    EXPECT_TRUE(plug.isKeyable());
    EXPECT_FALSE(plug.isChannelBoxFlagSet());
    ASSERT_TRUE(plug.setKeyable(false));
    ASSERT_TRUE(plug.setChannelBox(true));
    EXPECT_FALSE(plug.isKeyable());
    EXPECT_TRUE(plug.isChannelBoxFlagSet());
    EXPECT_TRUE(PlugOf("b", "tx").isKeyable());
    EXPECT_EQ(Typed("getAttr -keyable a.tx"), "int 0");
    EXPECT_EQ(Typed("getAttr -channelBox a.tx"), "int 1");
    EXPECT_EQ(Typed("listAttr -keyable \"b.tx\""), "string[] translateX");
}

TEST_F(MPlugTest, NamesAndPartsOfCompoundsAndArrays) {
    Run("createNode transform -n a; createNode transform -n b -p a; createNode transform -n c;"
        "createNode transform -n b -p c;");
    MPlug whole = PlugOf("a", "t");
    EXPECT_TRUE(whole.isCompound());
    ASSERT_EQ(whole.numChildren(), 3u);
    MPlug part = whole.child(1);
    EXPECT_EQ(part.name(), "a.translateY");
    EXPECT_EQ(part.partialName(), "ty");
    EXPECT_EQ(part.partialName(true, false, false, false, true, true), "a.translate.translateY");
    EXPECT_TRUE(part.parent() == whole);
    MStatus status;
    EXPECT_TRUE(whole.child(3, &status).isNull());
    EXPECT_EQ(status, MS::kInvalidParameter);
    EXPECT_TRUE(whole.parent(&status).isNull());
    EXPECT_TRUE(status.error());
    EXPECT_EQ(PlugOf("c|b", "tx").name(), "c|b.translateX") << "a name that two nodes have";

    Run("addAttr -ln list -at double -m a;");
    MPlug list = PlugOf("a", "list");
    EXPECT_TRUE(list.isArray());
    EXPECT_EQ(list.numElements(), 0u);
    EXPECT_TRUE(list.setDouble(1).error());
    MPlug element = list.elementByLogicalIndex(7);
    EXPECT_TRUE(element.isElement());
    EXPECT_FALSE(element.isArray());
    EXPECT_EQ(element.logicalIndex(), 7u);
    ASSERT_TRUE(element.setDouble(2.5));
    EXPECT_EQ(list.numElements(), 1u);
    EXPECT_EQ(element.name(), "a.list[7]");
    EXPECT_EQ(Typed("getAttr a.list[7]"), "float 2.5");
    EXPECT_FALSE(element == list);
    EXPECT_TRUE(list.elementByLogicalIndex(4000000000u, &status).isNull());
    EXPECT_TRUE(status.error());
    EXPECT_TRUE(part.elementByLogicalIndex(0, &status).isNull());
    EXPECT_TRUE(status.error());
    list.logicalIndex(&status);
    EXPECT_TRUE(status.error());
}

TEST_F(MPlugTest, ANullPlugAnswersAndRefuses) {
    MPlug plug;
    const MPlug halfNull(NodeOf("persp"), MObject::kNullObj);
    EXPECT_TRUE(plug.isNull() && halfNull.isNull());
    MStatus status;
    EXPECT_EQ(plug.name(&status), "");
    EXPECT_TRUE(status.error());
    EXPECT_EQ(plug.asDouble(&status), 0.0);
    EXPECT_TRUE(status.error());
    EXPECT_FALSE(plug.isConnected(&status));
    EXPECT_TRUE(status.error());
    EXPECT_TRUE(plug.source(&status).isNull());
    EXPECT_TRUE(plug.asMObject().isNull());
    for (const MStatus& refusal : {plug.setDouble(1), plug.setString("x"), plug.setMObject(MObject::kNullObj),
                                   plug.setMPxData(nullptr), plug.setLocked(true), plug.setKeyable(true),
                                   plug.setChannelBox(true), plug.setMTime(MTime(1))}) {
        EXPECT_TRUE(refusal.error());
    }
    // A plug of an attribute that another node has is none.
    Run("createNode transform -n a; addAttr -ln own -at double a;");
    const MObject own = MFnDependencyNode(NodeOf("a")).attribute("own");
    MFnDependencyNode(NodeOf("persp")).findPlug(own, true, &status);
    EXPECT_TRUE(status.error());
}

} // namespace
