#include "SceneCommandFixture.h"
#include "SceneFileFixture.h"
#include "scene/EventBus.h"
#include "scene/Scene.h"
#include "scene/Timeline.h"

#include <cmath>
#include <gmock/gmock.h>

using ::testing::HasSubstr;

namespace {

class AnimationCommandsTest : public SceneCommandFixture {};
class AnimationFileTest : public SceneFileFixture {};

/// tx goes from 0 at frame 1 to 10 at frame 11, straight.
constexpr const char* STRAIGHT =
    "createNode transform -n a; createNode transform -n b; keyTangent -g -itt linear -ott linear;"
    "setKeyframe -t 1 -v 0 a.tx; setKeyframe -t 11 -v 10 a.tx; keyTangent -g -itt auto -ott auto; select a";

} // namespace

TEST_F(AnimationCommandsTest, EditsAndTheirUndo) {
    const Edit rows[] = {
        {"createNode transform -n a", "setKeyframe a.tx", "int 1", "nodeType a_translateX",
         "string animCurveTL"},
        {"createNode transform -n a", "setKeyframe -t 1 -t 5 -at rotateY a", "int 2", "nodeType a_rotateY",
         "string animCurveTA"},
        {"createNode transform -n a; select a; setAttr -l 1 a.s", "setKeyframe", "int 7",
         "keyframe -q -kc a.r", "int 3"},
        {"createNode transform -n a", "setKeyframe -t 3 a.v", "int 1", "keyTangent -q -ott a.v",
         "string[] step"},
        {STRAIGHT, "setAttr a.tx 40", "void", "getAttr a.tx", "float 40"},
        {STRAIGHT, "setKeyframe -t 6 -v 9 a.tx", "int 1", "keyframe -q -vc a.tx", "float[] 0 9 10"},
        {STRAIGHT, "setKeyframe -i 1 -t 4 -t 20 a.tx", "int 1", "keyframe -q -tc a.tx", "float[] 1 4 11"},
        {STRAIGHT, "setKeyframe -breakdown 1 -t 6 a.tx", "int 1", "keyframe -q -bd a.tx", "float[] 6"},
        {STRAIGHT, "keyframe -e -r -tc 4 -t 11 a.tx", "int 1", "keyframe -q -tc a.tx", "float[] 1 15"},
        {STRAIGHT, "keyframe -e -vc 3 -in 0 a.tx", "int 1", "keyframe -q -vc a.tx", "float[] 3 10"},
        {STRAIGHT, "keyframe -e -r -o insert -tc 5 -t 1 a", "int 1", "keyframe -q -tc a.tx", "float[] 6 16"},
        {STRAIGHT, "cutKey -cl -t \"2:\" a", "int 1", "keyframe -q -tc a.tx", "float[] 1"},
        {STRAIGHT, "cutKey a.tx", "int 1", "objExists a_translateX", "int 0"},
        {STRAIGHT, "keyTangent -e -itt flat -ott flat a.tx", "int 1", "keyframe -q -ev -t 3.5 a.tx",
         "float[] 1.5625"},
        {STRAIGHT, "keyTangent -e -l 0 -t 1 a.tx", "int 1", "keyTangent -q -l a.tx", "int[] 0 1"},
        {STRAIGHT, "keyTangent -e -wt 1 a.tx", "int 1", "keyTangent -q -wt a.tx", "int[] 1"},
        {STRAIGHT, "setInfinity -poi cycleRelative a.tx", "int 1", "keyframe -q -ev -t 21 a.tx",
         "float[] 20"},
    };
    ExpectEdits(rows);
}

TEST_F(AnimationCommandsTest, OptionsOfPlayback) {
    Run("playbackOptions -by 2 -loop oscillate -view all -mps 1 -ps 0 -min \"1sec\"");
    EXPECT_EQ(Answer("playbackOptions -q -loop"), "string oscillate");
    EXPECT_EQ(Answer("playbackOptions -q -view"), "string all");
    EXPECT_EQ(Answer("playbackOptions -q -mps"), "float 1");
    EXPECT_EQ(Answer("playbackOptions -q -min"), "float 24");
    Run("undo");
    EXPECT_EQ(Answer("playbackOptions -q -by"), "float 1") << "the step and the ranges are undone";
    EXPECT_EQ(Answer("playbackOptions -q -min"), "float 1");
    EXPECT_EQ(Answer("playbackOptions -q -loop"), "string oscillate") << "the manner of playing is not";
}

TEST_F(AnimationCommandsTest, Questions) {
    const Question rows[] = {
        {"keyframe -q -kc a", "int 2"},
        {"keyframe -q -tc -t \"5:20\" a", "float[] 11"},
        {"keyframe -q -tc -t \"1:11\" -iub 0 a", "float[] 1"},
        {"keyframe -q -tc -t \":\" a", "float[] 1 11"},
        {"keyframe -q -tc -t \"0.5sec\" a", "float[] "},
        {"keyframe -q -iv -in \"1:\" a", "int[] 1"},
        {"keyframe -q -n a", "string[] a_translateX"},
        {"keyframe -q -vc b", "float[] "},
        {"keyframe -q -sl -kc a", "int 0"},
        {"keyframe -q -ev -t 6 -t 3.5 a.tx", "float[] 5 2.5"},
        {"keyTangent -q -itt -ott a.tx", "string[] linear linear linear linear"},
        {"keyTangent -q -oa -t 1 a.tx", "float[] 45"},
        {"keyTangent -q -ow -t 1 a.tx", "float[] 1"},
        {"keyTangent -q -ox -oy -t 1 a.tx", "float[] 0.4166666667 10"},
        {"keyTangent -q -g -itt", "string[] auto"},
        {"setInfinity -q -pri a.tx", "string[] constant"},
        {"findKeyframe a", "float 11"},
        {"findKeyframe -t 11 a", "float 1"},
        {"findKeyframe -w previous -t 11 a", "float 1"},
        {"findKeyframe -w last a", "float 11"},
        {"findKeyframe -t 4 b", "float 4"},
        {"findKeyframe -c a", "string[] a_translateX"},
        {"playbackOptions -q -loop", "string continuous"},
    };
    ExpectAnswers(STRAIGHT, rows);
}

TEST_F(AnimationCommandsTest, Refusals) {
    const Refusal rows[] = {
        {STRAIGHT, "setKeyframe a.nothing", "No object matches name: a.nothing"},
        {STRAIGHT, "setKeyframe -itt wobbly a.ty", "Unknown tangent type: \"wobbly\"."},
        {STRAIGHT, "setKeyframe -itt step a.ty", "Only out tangents can be stepped."},
        {STRAIGHT, "setKeyframe -t \":4\" a.ty", "A time was expected, not a range without a start."},
        {STRAIGHT, "setKeyframe -t \"soon\" a.ty", "A time was expected, not \"soon\"."},
        {STRAIGHT, "select -cl; setKeyframe", "Nothing to set keys on was specified or selected."},
        {STRAIGHT, "connectAttr a.ty b.tx; setKeyframe b.tx",
         "The attribute 'b.translateX' is locked or connected and cannot be modified."},
        {STRAIGHT, "keyframe -e -o sideways -tc 3 a",
         "-option takes \"over\", \"move\" or \"insert\", not \"sideways\"."},
        {STRAIGHT, "findKeyframe -w nearest a",
         "-which takes \"next\", \"previous\", \"first\" or \"last\", not \"nearest\"."},
        {STRAIGHT, "playbackOptions -loop forever",
         "-loop takes \"once\", \"continuous\" or \"oscillate\", not \"forever\"."},
        {STRAIGHT, "playbackOptions -by 0", "Playback must go by more than 0 frames."},
    };
    for (const Refusal& row : rows) {
        SCOPED_TRACE(row.command);
        Begin(row.setup);
        EXPECT_THAT(Answer(row.command), HasSubstr(row.message));
    }
}

TEST_F(AnimationCommandsTest, KeysDoNotRunIntoEachOther) {
    Begin(STRAIGHT);
    Run("setKeyframe -t 6 -v 9 a.tx; keyframe -e -r -tc 5 -t 1 a.tx");
    EXPECT_EQ(Answer("keyframe -q -tc a.tx"), "float[] 1 6 11") << "there is a key at 6";
    Run("keyframe -e -r -tc 6 -t 1 a.tx");
    EXPECT_EQ(Answer("keyframe -q -vc a.tx"), "float[] 9 0 10") << "over the key at 6 to 7";
    Run("keyframe -e -r -o move -tc -3 -t 7 a.tx");
    EXPECT_EQ(Answer("keyframe -q -tc a.tx"), "float[] 6 7 11") << "not past the key at 6";
    Run("keyframe -e -r -tc 5 -t \"6:\" a.tx");
    EXPECT_EQ(Answer("keyframe -q -tc a.tx"), "float[] 11 12 16") << "together they may";
}

TEST_F(AnimationCommandsTest, TheSceneFollowsTheTime) {
    Begin(STRAIGHT);
    int changes = 0;
    host_.events().AddCallback("timeChanged", [&changes] { ++changes; });
    Run("createNode transform -n child -p a; currentTime 6");
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(Answer("getAttr a.tx"), "float 5");
    EXPECT_EQ(Answer("xform -q -ws -t child"), "float[] 5 0 0");
    Run("connectAttr a.tx b.ry; currentTime 3.5");
    EXPECT_EQ(Answer("getAttr b.ry"), "float 2.5") << "through a connection";
    Run("undo");
    EXPECT_EQ(Answer("getAttr a.tx"), "float 5");
}

TEST_F(AnimationCommandsTest, WhatIsSetWaitsToBeKeyed) {
    Begin(STRAIGHT);
    Run("currentTime 6; setAttr a.tx 40; setAttr a.tx 41");
    EXPECT_EQ(Answer("getAttr a.tx"), "float 41");
    Run("undo; undo");
    EXPECT_EQ(Answer("getAttr a.tx"), "float 5");
    Run("redo; redo; undo");
    EXPECT_EQ(Answer("getAttr a.tx"), "float 40");
    Run("setKeyframe a.tx");
    EXPECT_EQ(Answer("keyframe -q -vc a.tx"), "float[] 0 40 10");
    Run("undo");
    EXPECT_EQ(Answer("getAttr a.tx"), "float 40") << "as before the key";
    Run("currentTime 5; currentTime 6");
    EXPECT_EQ(Answer("getAttr a.tx"), "float 5") << "another time lets go of it";
    Run("currentTime 11; currentTime -update 0 20; setKeyframe a.tx");
    EXPECT_EQ(Answer("keyframe -q -vc -t 20 a.tx"), "float[] 10") << "time that moved without the scene";
}

TEST_F(AnimationCommandsTest, ClipboardOfKeys) {
    Begin(STRAIGHT);
    EXPECT_EQ(Answer("pasteKey b"), "error: There are no keys on the clipboard.");
    Run("copyKey a; pasteKey -t 21 -vo 1 b");
    EXPECT_EQ(Answer("keyframe -q -tc b.tx"), "float[] 21 31");
    EXPECT_EQ(Answer("keyframe -q -vc b.tx"), "float[] 1 11");
    Run("pasteKey -t 6 -o merge a; pasteKey -t 6 -at ty a");
    EXPECT_EQ(Answer("keyframe -q -tc a.tx"), "float[] 1 6 11 16");
    EXPECT_EQ(Answer("keyframe -q -tc a.ty"), "float[] 6 16");
    Run("pasteKey -t 11 -o insert a.tx");
    EXPECT_EQ(Answer("keyframe -q -tc a.tx"), "float[] 1 6 11 21 26");
    Run("pasteKey -t 1 -o replaceCompletely a.tx");
    EXPECT_EQ(Answer("keyframe -q -tc a.tx"), "float[] 1 11");
}

namespace {

/// As Maya writes them: elements that have the curve's own tangent type are left out.
const char* const KEYED_SCENE = R"(//Maya ASCII 2018 scene
requires maya "2018";
currentUnit -l centimeter -a degree -t film;
createNode transform -n "ball";
createNode animCurveTL -n "ball_translateY";
	setAttr ".tan" 18;
	setAttr ".wgt" no;
	setAttr -s 3 ".ktv[0:2]"  1 0 13 10 25 0;
	setAttr -s 3 ".kit[2]"  1;
	setAttr -s 3 ".kot[0:2]"  2 18 1;
	setAttr -s 3 ".kix[2]"  0.5;
	setAttr -s 3 ".kiy[2]"  -3.1415926535897931;
	setAttr -s 3 ".kox[0:2]"  1 1 0.041666667908430099;
	setAttr -s 3 ".koy[0:2]"  0 0 -0.3;
	setAttr ".pst" 3;
createNode animCurveTA -n "ball_rotateZ";
	setAttr ".tan" 9;
	setAttr ".wgt" no;
	setAttr -s 2 ".ktv[0:1]"  1 0 25 90;
	setAttr -s 2 ".kit[1]"  1;
	setAttr -s 2 ".kix[1]"  1;
	setAttr -s 2 ".kiy[1]"  1.5707963267948966;
createNode animCurveTU -n "ball_visibility";
	setAttr ".tan" 9;
	setAttr ".wgt" no;
	setAttr -s 2 ".ktv[0:1]"  1 1 10 0;
	setAttr -s 2 ".kot[0:1]"  5 5;
connectAttr "ball_translateY.o" "ball.ty";
connectAttr "ball_rotateZ.o" "ball.rz";
connectAttr "ball_visibility.o" "ball.v";
// End of keyed.ma
)";

} // namespace

TEST_F(AnimationFileTest, ScenesOfMayaMove) {
    Write("keyed.ma", KEYED_SCENE);
    ASSERT_EQ(ErrorOfOpening("keyed.ma"), "none");
    EXPECT_EQ(Output(), "");
    const struct {
        double time;
        const char* plug;
        double value;
    } rows[] = {
        // From slope 10/12 to flat at the top: 5 + 12 * (10/12) / 8.
        {7, "ball.ty", 6.25},
        {13, "ball.ty", 10},
        {37, "ball.ty", 10}, // a cycle of 24 frames
        // Spline of two keys leaves straight: 90 in 24 frames; in at 90 degrees a second, the same slope.
        {13, "ball.rz", 45},
        {7, "ball.rz", 22.5},
        {9.9, "ball.v", 1},
        {10, "ball.v", 0},
    };
    for (const auto& row : rows) {
        host_.time().SetCurrentTime(row.time);
        EXPECT_NEAR(host_.scene().FindPlug(row.plug).Number(), row.value, 1e-6)
            << row.plug << " " << row.time;
    }
}

TEST_F(AnimationFileTest, NothingIsLostOnTheWay) {
    Write("keyed.ma", KEYED_SCENE);
    ASSERT_EQ(ErrorOfOpening("keyed.ma"), "none");
    const std::string text = SceneText();
    for (const char* line : {"\tsetAttr \".tan\" 18;\n", "\tsetAttr \".wgt\" no;\n",
                             "\tsetAttr -s 3 \".ktv[0:2]\" 1 0 13 10 25 0", "\tsetAttr \".kit[2]\" 1;\n",
                             "0.0416666679084301", "-3.141592653589793", "\tsetAttr \".pst\" 3;\n",
                             "connectAttr \"ball_translateY.o\" \"ball.ty\";\n"}) {
        EXPECT_THAT(text, HasSubstr(line));
    }
    Save("again.ma");
    ASSERT_EQ(ErrorOfOpening("again.ma"), "none");
    EXPECT_EQ(SceneText(), text);
    // An edit of one key leaves the numbers of the others as they were.
    Run("keyframe -e -vc 12 -t 13 ball.ty");
    EXPECT_THAT(SceneText(), HasSubstr("0.0416666679084301"));
    Run("undo");
    EXPECT_EQ(SceneText(), text);
    Save("binary.lbx");
    ASSERT_EQ(ErrorOfOpening("binary.lbx"), "none");
    EXPECT_EQ(SceneText(), text);
}

TEST_F(AnimationFileTest, DamagedCurvesDoNoHarm) {
    Write("damaged.ma", R"(//Maya ASCII 2018 scene
createNode transform -n "a";
createNode animCurveTL -n "c";
	setAttr ".tan" 250;
	setAttr ".pre" 99;
	setAttr -s 3 ".ktv[0:2]" 5 1 5 2 -1e300 3;
	setAttr ".ktv[7].kt" 9;
	setAttr ".kit[2000000000]" 3;
	setAttr ".kix[0]" -1e300;
	setAttr ".kot[0]" 1;
connectAttr "c.o" "a.tx";
connectAttr "a.tx" "c.i";
)");
    ErrorOfOpening("damaged.ma");
    for (const double time : {-1e300, 0.0, 5.0, 7.0, 1e300}) {
        host_.time().SetCurrentTime(time);
        EXPECT_TRUE(std::isfinite(host_.scene().FindPlug("a.tx").Number()));
        EXPECT_TRUE(std::isfinite(Run("float $v[] = `keyframe -q -ev -t " +
                                      std::to_string(static_cast<int>(time / 1e299)) + " c`; $v[0]")
                                      .AsFloat()));
    }
}
