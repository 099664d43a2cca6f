// move, rotate, scale, xform and camera.

#include "SceneCommandFixture.h"

#include <cmath>

namespace {

class TransformCommandsTest : public SceneCommandFixture {
protected:
    /// Numbers of an answer that are close to those expected.
    void ExpectNear(const std::string& command, const std::vector<double>& expected) {
        const auto numbers = Run(command).Floats();
        ASSERT_EQ(numbers.size(), expected.size()) << command;
        for (std::size_t i = 0; i < expected.size(); ++i) {
            EXPECT_NEAR(numbers[i], expected[i], 1e-9) << command << " number " << i;
        }
    }
    /// How far two answers of sixteen numbers or so are apart.
    double Distance(const std::string& left, const std::string& right) {
        const auto a = Run(left).Floats();
        const auto b = Run(right).Floats();
        double sum = std::abs(static_cast<double>(a.size()) - static_cast<double>(b.size()));
        for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
            sum += std::abs(a[i] - b[i]);
        }
        return sum;
    }
};

/// A parent that is moved and turned, with a child.
const char* const PAIR = "createNode transform -n p; setAttr p.t 10 0 0; setAttr p.ry 90;"
                         "createNode transform -n a -p p; select a;";

TEST_F(TransformCommandsTest, MoveInEverySpace) {
    const Question steps[] = {
        {"move 10 0 -4; getAttr a.tx", "float 4"},
        {"move -a 10 5 0 a; getAttr a.ty", "float 5"},
        {"move -absolute -worldSpace 10 5 0; getAttr a.ty", "float 5"},
        {"move -ls 1 2 3 a; getAttr a.t", "float[] 1 2 3"},
        {"move -r -ls 1 2 3 a; move -r -ls 1 2 3 a; getAttr a.t", "float[] 2 4 6"},
        {"setAttr a.rz 180; move -r -os 0 3 0 a; getAttr a.ty", "float -3"},
        {"setAttr a.s 2 2 2; setAttr a.rz 180; move -r -os 0 3 0 a; getAttr a.ty", "float -6"},
        {"setAttr p.s 2 2 2; setAttr a.s 2 2 2; setAttr a.rz 180; move -r -os -wd 0 3 0 a; getAttr a.ty",
         "float -1.5"},
        {"setAttr a.s 0 0 0; move -r -os -wd 0 3 0 a; getAttr a.ty", "float 0"},
        {"move -r 0 0 -2 a; getAttr a.tx", "float 2"},
        {"move -y 7 p; getAttr p.t", "float[] 10 7 0"},
        {"move -moveXY 1 2 p; getAttr p.t", "float[] 1 2 0"},
        {"move -moveYZ 1 2 p; getAttr p.t", "float[] 10 1 2"},
        {"move -moveXYZ 1 2 3 p; getAttr p.t", "float[] 1 2 3"},
        {"move -r -z 2 p p; getAttr p.tz", "float 4"},
        {"setAttr p.rp 0 4 0; move -a -rpr 1 2 3 p; getAttr p.ty", "float -2"},
        {"setAttr p.sp 0 0 5; move -a -spr -y 2 p; getAttr p.ty", "float 2"},
        {"createNode camera; move 1 2 3; getAttr camera1.t", "float[] 1 2 3"},
    };
    ExpectSteps(PAIR, steps);
}

TEST_F(TransformCommandsTest, RotateTurnsToOrBy) {
    const Question steps[] = {
        {"rotate 0 45 0 p; getAttr p.r", "float[] 0 45 0"},
        {"setAttr p.rx 30; rotate -r 0 0 15 p; rotate -a 1 2 3 p; getAttr p.r", "float[] 1 2 3"},
        {"rotate -r 0 300 0 p; getAttr p.ry", "float 390"},
        {"rotate -r -x 20 a; getAttr a.r", "float[] 20 0 0"},
        {"rotate -rotateX 20 a; getAttr a.r", "float[] 20 0 0"},
        {"rotate -rotateXZ 20 30 p; getAttr p.r", "float[] 20 90 30"},
        {"setAttr a.r 10 20 30; rotate -r -eu 1 2 3 a; getAttr a.r", "float[] 11 22 33"},
        {"rotate 1 2 3 perspShape; getAttr persp.r", "float[] 1 2 3"},
    };
    ExpectSteps(PAIR, steps);
    // About the world's z axis, which is the child's x axis turned the other way.
    Begin(PAIR);
    Run("rotate -r -ws 0 0 30 a");
    ExpectNear("getAttr a.r", {-30, 0, 0});
    Run("rotate -a -ws 0 90 0 a");
    ExpectNear("getAttr a.r", {0, 0, 0});
    Run("rotate -ws 5 15 25 a");
    ExpectNear("xform -q -ws -ro a", {5, 15, 25});
    Run("rotate -ws -rotateZ 35 a");
    ExpectNear("xform -q -ws -ro a", {5, 15, 35});
}

TEST_F(TransformCommandsTest, ATurnAboutOwnAxesIsThatOfAChild) {
    struct Row {
        const char* orders;
        const char* turn;
        const char* childOrder;
    };
    const Row rows[] = {{"", "rotate -r -os 40 50 60 a", "0"},
                        {"setAttr a.ro 2; setAttr outer.ro 2;", "rotate -r 40 50 60 a", "2"},
                        {"setAttr a.ro 4; setAttr outer.ro 4;", "rotate -r -fo 40 50 60 a", "0"},
                        {"setAttr a.ra 7 8 9; setAttr outer.ra 7 8 9;", "xform -r -ro 40 50 60 a", "0"}};
    for (const Row& row : rows) {
        Begin("createNode transform -n a; createNode transform -n outer; createNode transform -n inner -p "
              "outer");
        Run(std::string(row.orders) + "setAttr a.r 10 20 30; setAttr outer.r 10 20 30; setAttr inner.ro " +
            row.childOrder + "; setAttr inner.r 40 50 60;" + row.turn);
        EXPECT_LT(Distance("xform -q -m a", "xform -q -ws -m inner"), 1e-9) << row.turn;
    }
}

TEST_F(TransformCommandsTest, ScaleMultipliesUnlessAbsolute) {
    const Question steps[] = {
        {"scale 2 2 2 a; scale 2 1 1 a; getAttr a.s", "float[] 4 2 2"},
        {"scale -a -y 3 a; getAttr a.s", "float[] 1 3 1"},
        {"scale -scaleX 3; getAttr a.s", "float[] 3 1 1"},
        {"scale -r -scaleYZ 3 4; getAttr a.s", "float[] 1 3 4"},
    };
    ExpectSteps(PAIR, steps);
}

TEST_F(TransformCommandsTest, XformSetsWhatItAnswers) {
    const Question steps[] = {
        {"xform -t 1 2 3 a; xform -q -t a", "float[] 1 2 3"},
        {"xform -t 1 2 3; xform -r -t 1 2 3; xform -q -t", "float[] 2 4 6"},
        {"xform -q -ws -t a", "float[] 10 0 0"},
        {"xform -m 1 0 0 0 0 1 0 0 0 0 1 0 4 5 6 1 a; getAttr a.t", "float[] 4 5 6"},
        {"xform a -m 1 0 0 0 0 1 0 0 0 0 1 0 4 5 6 1; getAttr a.t", "float[] 4 5 6"},
        {"float $m[] = `xform -q -ws -m p`; xform -ws -m $m a; getAttr a.t", "float[] 0 0 0"},
        {"xform -q -ws -m top; size(`xform -q -m a`)", "int 16"},
        {"xform -ro 0 45 0 -s 1 2 1 a; xform -q -ro a", "float[] 0 45 0"},
        {"setAttr a.r 10 20 30; xform -r -eu -ro 1 1 1 a; xform -q -ro a", "float[] 11 21 31"},
        {"xform -s 1 2 3 a; xform -r -s 2 2 2 a; xform -q -r -s a", "float[] 2 4 6"},
        {"setAttr p.s 2 2 2; xform -ws -s 2 4 6 a; getAttr a.s", "float[] 1 2 3"},
        {"xform -roo zyx a; xform -q -roo a", "string zyx"},
        {"xform -ra 1 2 3 -sh 4 5 6 a; getAttr a.ra", "float[] 1 2 3"},
        {"xform -sh 4 5 6 a; xform -q -sh a", "float[] 4 5 6"},
        {"xform -piv 1 2 3 a; xform -q -piv a", "float[] 1 2 3 1 2 3"},
        {"xform -rp 1 2 3 a; xform -q -sp a", "float[] 0 0 0"},
        {"xform -rp 1 2 3 p; xform -r -rp 1 2 3 p; xform -q -rp p", "float[] 2 4 6"},
        {"xform -rt 1 2 3 -st 4 5 6 a; getAttr a.spt", "float[] 4 5 6"},
    };
    ExpectSteps(PAIR, steps);
}

TEST_F(TransformCommandsTest, XformInTheWorld) {
    const char* const setups[] = {"", "setAttr p.s 2 3 4;", "setAttr a.ro 3;", "setAttr a.ra 10 20 30;",
                                  "setAttr p.s -1 1 1;"};
    for (const char* setup : setups) {
        SCOPED_TRACE(setup);
        Begin(PAIR);
        Run(std::string(setup) + "setAttr a.t 1 2 3; setAttr a.r 5 6 7;");
        Run("xform -ws -ro 10 20 30 a");
        ExpectNear("xform -q -ws -ro a", {10, 20, 30});
        Run("xform -ws -t 3 2 1 a");
        ExpectNear("xform -q -ws -t a", {3, 2, 1});
        Run("xform -ws -rp 4 5 6 a");
        ExpectNear("xform -q -ws -rp a", {4, 5, 6});
        // What is asked in the world and set again changes nothing.
        Run("float $before[] = `xform -q -ws -m a`; float $r[] = `xform -q -ws -ro a`;"
            "xform -ws -ro $r[0] $r[1] $r[2] a");
        EXPECT_LT(Distance("$before = $before", "xform -q -ws -m a"), 1e-9);
    }
    // The way a node looks stays with its rotate order and when its pivots go.
    Begin(PAIR);
    Run("setAttr a.r 10 20 30; setAttr a.rp 1 2 3; setAttr a.s 2 2 2; setAttr a.sp 3 2 1;"
        "float $before[] = `xform -q -m a`; xform -p on -roo yzx a; xform -ztp a");
    EXPECT_LT(Distance("$before = $before", "xform -q -m a"), 1e-9);
    EXPECT_EQ(Answer("xform -q -piv a"), "float[] 0 0 0 0 0 0");
}

TEST_F(TransformCommandsTest, WhatCannotBeMovedStays) {
    const Refusal refusals[] = {
        {PAIR, "move 1 2", "A number is missing."},
        {PAIR, "move a 1 2 3", "A number is missing."},
        {PAIR, "move 1 2 3 nosuch", "No object matches name: nosuch"},
        {PAIR, "move 1 2 3 time1", "The object 'time1' cannot be moved."},
        {"", "move 1 2 3", "No object was specified."},
        {"", "xform -q -t", "No object was specified."},
        {PAIR, "xform -q a", "Nothing was asked for."},
        {PAIR, "scale -ws 1 2 3 a", "Invalid flag '-ws'"},
        {PAIR, "rotate -moveX 3 a", "Invalid flag '-moveX'"},
        {PAIR, "xform -roo xxx a", "Unknown rotate order: xxx"},
        {PAIR, "xform -m 1 0 0 0 a",
         "-matrix takes 16 numbers, and without it there must be none; 4 were given."},
        {PAIR, "xform -t 1 2 3 4 a",
         "-matrix takes 16 numbers, and without it there must be none; 1 were given."},
        {PAIR, "xform -m 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 a",
         "The matrix flattens space and cannot be taken apart."},
        {PAIR, "xform -r -m 1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1 a", "A matrix cannot be set with -relative."},
        // The first node, and the first axes, are not left moved either.
        {"createNode transform -n a; createNode transform -n b; setAttr -l on b.ty", "move 1 2 3 a b",
         "The attribute 'b.translateY' is locked or connected and cannot be modified."},
        {"createNode transform -n a; setAttr -l on a.s", "xform -t 1 2 3 -s 2 2 2 a",
         "The attribute 'a.scaleX' is locked or connected and cannot be modified."},
    };
    ExpectRefusals(refusals);
    // A locked axis that keeps its value is in nobody's way.
    Begin("createNode transform -n a; setAttr -l on a.ty");
    EXPECT_EQ(Answer("move 1 0 3 a; getAttr a.t"), "float[] 1 0 3");
    // A parent that flattens space gives some place, and no crash.
    Begin(PAIR);
    EXPECT_EQ(Answer("setAttr p.s 0 0 0; move 1 2 3 a; xform -ws -ro 1 2 3 a; size(`xform -q -ws -ro a`)"),
              "int 3");
}

TEST_F(TransformCommandsTest, CamerasAreNamedAsInMaya) {
    const Question steps[] = {
        {"camera", "string[] camera1 cameraShape1"},
        {"camera; camera", "string[] camera2 cameraShape2"},
        {"camera -n shot", "string[] shot1 shotShape1"},
        {"camera -n shot; camera -n shot", "string[] shot2 shotShape2"},
        {"camera; ls -sl", "string[] camera1"},
        {"string $c[] = `camera -fl 50 -p 1 2 3 -ff \"overscan\" -o 1`; camera -q -fl $c[0]", "float 50"},
        {"camera -fl 50 -p 1 2 3 -ff \"overscan\"; camera -q -ff camera1", "string overscan"},
        {"camera -p 1 2 3; camera -q -p cameraShape1", "float[] 1 2 3"},
        {"camera; camera -e -hfa 2 -n \"eye\" camera1; camera -q -hfa eyeShape", "float 2"},
        {"camera -q -hfa persp", "float 1.41732"},
    };
    ExpectSteps("", steps);
}

TEST_F(TransformCommandsTest, CamerasAreEditedWholeOrNotAtAll) {
    const char* const camera = "camera; setAttr -l on camera1.rx";
    const Question steps[] = {
        {"camera -e -vfa 2 camera1; camera -e -ar 1.5 camera1; camera -q -hfa camera1", "float 3"},
        {"camera -vfa 1 -ar 2; camera -q -ar camera2", "float 2"},
        {"camera -e -ff \"vertical\" camera1; camera -q -ff camera1", "string vertical"},
        {"camera -e -o on -ow 12 camera1; camera -q -o cameraShape1", "int 1"},
        {"camera -e -pze 1 -hpn .5 -vpn -.5 -zom 2 camera1; camera -q -vpn", "float -0.5"},
        {"camera -e -dfg on -dsa 1 -coi 3 camera1; camera -q -dfg", "int 1"},
        {"camera -e -startupCamera on camera1; catch(`delete camera1`); camera -q -sc camera1", "int 1"},
        {"camera -q -sc persp", "int 1"},
        {"select -cl; camera -e -fl 20 camera1; camera -q -fl cameraShape1", "float 20"},
    };
    ExpectSteps(camera, steps);
    const Refusal refusals[] = {
        {camera, "camera -e -fl 50 -p 1 2 3 -ff bad camera1", "Unknown film fit: bad"},
        {camera, "camera -e -n lens -fl 50 -ar 0 camera1", "An aspect ratio must be greater than 0."},
        {camera, "camera -e -fl 50 -rot 4 5 6 camera1",
         "The attribute 'camera1.rotate' is locked or connected and cannot be modified."},
        {camera, "camera -ff sideways", "Unknown film fit: sideways"},
        {camera, "camera -e -fl 2 time1", "The object 'time1' is not in the DAG."},
        {"createNode transform -n a", "camera -q -fl a", "The object 'a' is not a camera."},
        {"select -cl", "camera -e -fl 2", "No camera was specified."},
        {camera, "camera -q camera1", "Nothing was asked for."},
        {camera, "camera -e -fl wide camera1", "Flag '-fl' must be passed a numeric argument"},
        {camera, "camera -e -wci 1 2 3 camera1", "Invalid flag '-wci'"},
    };
    ExpectRefusals(refusals);
}

} // namespace
