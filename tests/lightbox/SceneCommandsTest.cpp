// The commands that work on the scene, as a script sees them.

#include "MelFixture.h"
#include "SceneDump.h"
#include "scene/UndoQueue.h"

#include <gmock/gmock.h>

using ::testing::HasSubstr;

namespace {

struct Case {
    const char* mel;
    const char* result; ///< of the last statement, with its type
};

class SceneCommandsTest : public MelFixture {
protected:
    void Check(std::initializer_list<Case> cases, const char* before = "") {
        for (const Case& c : cases) {
            Run(std::string("file -f -new;") + before);
            std::string result = ErrorOf(c.mel);
            if (result == "none") {
                Run(std::string("file -f -new;") + before);
                result = Typed(c.mel);
            }
            EXPECT_EQ(result, c.result) << c.mel;
        }
    }
};

} // namespace

TEST_F(SceneCommandsTest, NodesAndTheirNames) {
    Check(
        {
            {"createNode transform", "string transform1"},
            {"createNode transform -n a; createNode transform -n a", "string a2"},
            {"createNode camera", "string cameraShape1"},
            {"createNode camera; ls -sl -l", "string[] |camera1|cameraShape1"},
            {"createNode camera -n eye; listRelatives -p eye", "string[] camera1"},
            {"createNode -ss transform -n a; ls -sl", "string[] "},
            {"createNode transform -n a; createNode transform -n b -p a; ls -l b", "string[] |a|b"},
            {"createNode nothing", "line 1.1: Unknown object type: nothing"},
            {"createNode transform -p nobody", "line 1.1: No object matches name: nobody"},
            {"rename a c", "string c"},
            {"select b; rename \"d|x\"", "string d_x"},
            {"rename nobody x", "line 1.1: No object matches name: nobody"},
            {"rename persp view; ls -ca view", "string[] "},
            {"camera -n shot; rename shot1 take2; ls \"take*\"", "string[] take2 takeShape2"},
            {"delete a; ls \"[ab]\" b", "string[] "},
            {"delete persp", "line 1.1: Cannot delete the default node 'persp'."},
            {"delete nobody", "line 1.1: No object matches name: nobody"},
            {"delete -all; ls -tr", "string[] front persp side top"},
            {"objExists a", "int 1"},
            {"objExists \"a.tx\"", "int 1"},
            {"objExists \"a.nothing\"", "int 0"},
            {"objExists nobody", "int 0"},
            {"nodeType perspShape", "string camera"},
            {"nodeType nobody", "line 1.1: No object matches name: nobody"},
            {"objectType -isType transform a", "int 1"},
            {"objectType -isAType dagNode a", "int 1"},
            {"objectType time1", "string time"},
            {"lockNode a; catch(`delete a`); objExists a", "int 1"},
            {"setAttr a.t 1 2 3; setAttr b.ty 7; addAttr -ln x -at long a; setAttr a.x 4; duplicate a",
             "string[] a1"},
            {"setAttr b.ty 7; duplicate -n c a; getAttr \"c|b.ty\"", "float 7"},
            {"addAttr -ln x -at long a; setAttr a.x 4; duplicate a; setAttr a.x 5; getAttr a1.x", "int 4"},
        },
        "createNode transform -n a; createNode transform -n b -p a; select -cl;");
}

TEST_F(SceneCommandsTest, CamerasAreNamedAsInMaya) {
    Check({
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
        {"camera -e -fl 2 time1", "line 1.1: The object 'time1' is not in the DAG."},
        {"camera -ff \"sideways\"", "line 1.1: Unknown film fit: sideways"},
    });
}

TEST_F(SceneCommandsTest, ListingAndSelecting) {
    const char* scene =
        "createNode transform -n a; createNode transform -n b -p a; createNode transform -n b;"
        "createNode locator -n s -p \"|a|b\"; setAttr \"|b.v\" 0; select -cl;";
    Check(
        {
            {"ls -cameras", "string[] frontShape perspShape sideShape topShape"},
            {"ls -type camera -l \"p*\"", "string[] |persp|perspShape"},
            {"ls -type locator -type time", "string[] s time1"},
            {"ls -et transform \"b\"", "string[] a|b |b"},
            {"ls -dag a", "string[] a a|b s"},
            {"ls -dag -s a", "string[] s"},
            {"ls -l \"*b\"", "string[] |a|b |b"},
            {"ls -as -v a \"|b\"", "string[] a |b"},
            {"ls -st s", "string[] s locator"},
            {"ls -hd 2 -tr", "string[] a a|b"},
            {"ls -ext camera -s", "string[] s"},
            {"ls nobody", "string[] "},
            {"select a s; ls -sl", "string[] a s"},
            {"select s a; ls -sl -type transform", "string[] a"},
            {"select a; select -add s; select -tgl a; ls -sl", "string[] s"},
            {"select a s; select -d a; ls -sl", "string[] s"},
            {"select s; select -af a; ls -sl", "string[] a s"},
            {"select -all; ls -sl", "string[] a |b"},
            {"select -hi a; ls -sl", "string[] a a|b s"},
            {"select -cl; select nobody", "line 1.13: No object matches name: nobody"},
            {"select b; size(`ls -sl`)", "int 2"},
            {"listRelatives -c a", "string[] b"},
            {"listRelatives -ad -f a", "string[] |a|b|s |a|b"},
            {"listRelatives -s -f \"|a|b\"", "string[] |a|b|s"},
            {"listRelatives -p -f s", "string[] |a|b"},
            {"listRelatives -p a", "string[] "},
            {"listRelatives -ad -type locator a", "string[] s"},
            {"parent -w \"|a|b\"; ls -l s", "string[] |b1|s"},
            {"parent \"|b\" a", "string[] b1"},
            {"parent a \"|a|b\"", "line 1.1: Cannot parent an object to itself or to one of its children."},
            {"setAttr a.tx 5; parent -w \"|a|b\"; getAttr b1.tx", "float 5"},
            {"setAttr a.tx 5; parent -w -r \"|a|b\"; getAttr b1.tx", "float 0"},
            {"group -n g \"|b\" a; ls -l \"*a\"", "string[] |g|a"},
            {"group -em -n g; listRelatives g", "string[] "},
        },
        scene);
}

TEST_F(SceneCommandsTest, Attributes) {
    const char* scene = "createNode transform -n a; createNode locator -n l; select a;";
    Check(
        {
            {"setAttr a.tx 5; getAttr a.tx", "float 5"},
            {"setAttr .tx 5; getAttr a.tx", "float 5"},
            {"setAttr a.t 1 -2 3; getAttr a.translate", "float[] 1 -2 3"},
            {"setAttr a.t -type double3 1 -2 3; getAttr a.ty", "float -2"},
            {"setAttr a.v off; getAttr a.v", "int 0"},
            {"setAttr a.ro 2; getAttr -as a.ro", "string zxy"},
            {"setAttr -l on a.tx; getAttr -l a.tx", "int 1"},
            {"setAttr -l on a.tx; setAttr a.tx 4",
             "line 1.21: The attribute 'a.translateX' is locked or connected and cannot be modified."},
            {"setAttr -l on a.t; setAttr a.tx 4",
             "line 1.20: The attribute 'a.translateX' is locked or connected and cannot be modified."},
            {"setAttr -l on a.tx; setAttr -l off a.tx 4; getAttr a.tx", "float 4"},
            {"setAttr -k 0 a.tx; getAttr -k a.tx", "int 0"},
            {"setAttr -k 0 -cb 1 a.tx; getAttr -cb a.tx", "int 1"},
            {"setAttr a.tx \"far\"", "line 1.1: A number was expected for 'a.tx', not \"far\"."},
            {"setAttr a.t 1 2", "line 1.1: The attribute 'a.translate' takes 3 values; 2 were given."},
            {"setAttr a.nothing 1", "line 1.1: No object matches name: a.nothing"},
            {"setAttr nobody.tx 1", "line 1.1: No object matches name: nobody.tx"},
            {"setAttr perspShape.imageName \"x\" -type \"string\"; getAttr perspShape.imn", "string x"},
            {"setAttr -type \"string\" perspShape.imn \"-x\" -l on; getAttr -l perspShape.imn", "int 1"},
            {"float $v[] = {4, 5, 6}; setAttr a.t $v[0] $v[1] $v[2]; getAttr a.tz", "float 6"},
            {"getAttr -type a.t", "string double3"},
            {"getAttr a.message", "line 1.1: Message attributes have no data values."},
            {"size(`getAttr a.worldMatrix[0]`)", "int 16"},
            {"addAttr -ln p -at float -min 0 -max 1 -dv 0.5 a; getAttr a.p", "float 0.5"},
            {"addAttr -ln p -at float -max 1 a; setAttr a.p 3",
             "line 1.35: Cannot set the attribute 'a.p' past its maximum value of 1."},
            {"addAttr -ln tx -at float a", "line 1.1: Found an attribute of the name 'tx' already."},
            {"addAttr -ln p -at \"spaghetti\" a",
             "line 1.1: Type specified for new attribute is unknown: spaghetti"},
            {"addAttr -at float a",
             "line 1.1: New attribute needs either a long (-ln) or short (-sn) attribute name."},
            {"addAttr -ln c -at compound -nc 2 a; addAttr -ln c1 -at long -p c a; objExists a.c", "int 0"},
            {"addAttr -ln c -at compound -nc 2 a; addAttr -ln c1 -at long -p c a;"
             "addAttr -ln c2 -dt \"string\" -p c a; attributeQuery -n a -lc c",
             "string[] c1 c2"},
            {"addAttr -ln oo -at compound -nc 2 a; addAttr -ln vv -at double2 -p oo a; addAttr -ln vX -at "
             "double -p vv a;"
             "addAttr -ln vY -at double -p vv a; addAttr -ln ww -at long -p oo a; setAttr a.oo.vv 1 2; "
             "getAttr "
             "a.vY",
             "float 2"},
            {"addAttr -ln e -at \"enum\" -en \"low=3:high\" a; setAttr a.e 4; getAttr -as a.e",
             "string high"},
            {"addAttr -ln p -at long a; deleteAttr a.p; objExists a.p", "int 0"},
            {"deleteAttr a.tx", "line 1.1: Cannot delete the attribute 'translateX' from 'a'."},
            {"addAttr -ln mm -at long -m a; setAttr \"a.mm[4]\" 7; getAttr -mi a.mm", "int[] 4"},
            {"attributeQuery -n a -ex nothing", "int 0"},
            {"attributeQuery -typ camera -ld focalLength", "float[] 35"},
            {"attributeQuery -n perspShape -nn focalLength", "string Focal Length"},
            {"attributeQuery -n a -lp translateX", "string[] translate"},
            {"listAttr -k a", "string[] visibility translateX translateY translateZ rotateX rotateY rotateZ "
                              "scaleX scaleY scaleZ"},
            {"addAttr -ln p -at long a; listAttr -ud a", "string[] p"},
            {"setAttr -l on a.tx; listAttr -l a", "string[] translateX"},
            {"listAttr -sn -st translateX a", "string[] tx"},
        },
        scene);
}

TEST_F(SceneCommandsTest, Connections) {
    const char* scene = "createNode transform -n a; createNode transform -n b; createNode locator -n s -p b;";
    Check(
        {
            {"connectAttr a.tx b.ty; setAttr a.tx 4; getAttr b.ty", "float 4"},
            {"connectAttr a.t b.t; setAttr a.ty 3; getAttr b.ty", "float 3"},
            {"connectAttr a.tx b.ty; setAttr b.ty 1",
             "line 1.24: The attribute 'b.translateY' is locked or connected and cannot be modified."},
            {"connectAttr a.tx b.tx; isConnected a.tx b.tx", "int 1"},
            {"connectAttr a.tx b.tx; connectAttr -f a.ty b.tx; isConnected a.ty b.tx", "int 1"},
            {"connectAttr a.tx b.tx; disconnectAttr a.tx b.tx; isConnected a.tx b.tx", "int 0"},
            {"connectAttr a.tx b.tx; listConnections a", "string[] b"},
            {"connectAttr a.tx b.tx; listConnections -s 0 -p 1 a", "string[] b.translateX"},
            {"connectAttr a.tx b.tx; listConnections -d 0 a", "string[] "},
            {"connectAttr a.tx b.tx; listConnections -c 1 -p 1 b.t", "string[] b.translateX a.translateX"},
            {"connectAttr a.tx s.lpx; listConnections a", "string[] b"},
            {"connectAttr a.tx s.lpx; listConnections -sh 1 a", "string[] s"},
            {"connectAttr a.tx s.lpx; listConnections -t locator a", "string[] b"},
            {"connectAttr a.tx b.tx; connectionInfo -sfd b.tx", "string a.translateX"},
            {"connectAttr a.tx b.tx; connectionInfo -dfs a.tx", "string[] b.translateX"},
            {"connectionInfo -id b.tx", "int 0"},
            {"addAttr -ln mm -at double -m b; connectAttr -na a.tx b.mm; connectAttr -na a.ty b.mm;"
             "isConnected a.ty \"b.mm[1]\"",
             "int 1"},
        },
        scene);
    Check({{"connectAttr a.tx b.nothing", "line 1.1: No object matches name: b.nothing"},
           {"disconnectAttr a.tx b.tx",
            "line 1.1: There is no connection from 'a.translateX' to 'b.translateX' to disconnect."}},
          scene);
    Run("connectAttr a.tx b.tx");
    EXPECT_NE(ErrorOf("connectAttr a.ty b.tx"), "none");
}

TEST_F(SceneCommandsTest, Transforms) {
    const char* scene = "createNode transform -n p; setAttr p.t 10 0 0; setAttr p.ry 90;"
                        "createNode transform -n a -p p; select a;";
    Check(
        {
            {"move 10 0 -4; getAttr a.tx", "float 4"},
            {"move -a 10 5 0 a; getAttr a.ty", "float 5"},
            {"move -ls 1 2 3 a; getAttr a.t", "float[] 1 2 3"},
            {"move -r -ls 1 2 3 a; move -r -ls 1 2 3 a; getAttr a.t", "float[] 2 4 6"},
            {"move -r 0 0 -2 a; getAttr a.tx", "float 2"},
            {"move -y 7 p; getAttr p.t", "float[] 10 7 0"},
            {"move 1 2", "line 1.1: A number is missing."},
            {"setAttr p.rx 30; rotate -r 0 0 15 p; rotate -a 1 2 3 p; getAttr p.r", "float[] 1 2 3"},
            {"rotate -r 0 300 0 p; getAttr p.ry", "float 390"},
            {"rotate -r -x 20 a; getAttr a.r", "float[] 20 0 0"},
            {"scale 2 2 2 a; scale 2 1 1 a; getAttr a.s", "float[] 4 2 2"},
            {"scale -a -y 3 a; getAttr a.s", "float[] 1 3 1"},
            {"xform -t 1 2 3 a; xform -q -t a", "float[] 1 2 3"},
            {"xform -q -ws -t a", "float[] 10 0 0"},
            {"xform -m 1 0 0 0 0 1 0 0 0 0 1 0 4 5 6 1 a; getAttr a.t", "float[] 4 5 6"},
            {"size(`xform -q -m a`)", "int 16"},
            {"xform -ro 0 45 0 -s 1 2 1 a; xform -q -ro a", "float[] 0 45 0"},
            {"select -cl; move 1 2 3", "line 1.13: No object was specified."},
        },
        scene);
    Run("file -f -new; createNode transform -n a; setAttr a.r 10 20 30; rotate -r -os 40 0 0 a; float $m[] = "
        "`xform -q -m a`;"
        "createNode transform -n outer; setAttr outer.r 10 20 30; createNode transform -n inner -p outer;"
        "setAttr inner.rx 40; float $n[] = `xform -q -ws -m inner`; int $i; float $d;"
        "for ($i = 0; $i < 16; $i++) $d += abs($m[$i] - $n[$i]);");
    EXPECT_LT(Run("$d = $d").AsFloat(), 1e-9) << "a turn about the node's own axes";
}

TEST_F(SceneCommandsTest, TimeAndItsSlider) {
    Check({
        {"currentTime 5", "float 5"},
        {"currentTime -e 5.5; currentTime -q", "float 5.5"},
        {"currentTime \"soon\"", "line 1.1: A time was expected, not \"soon\"."},
        {"playbackOptions -min 5 -max 40; playbackOptions -q -min", "float 5"},
        {"playbackOptions -min 300 -max 400; playbackOptions -q -aet", "float 400"},
        {"playbackOptions -ast 5 -aet 40; playbackOptions -q -max", "float 40"},
        {"catch(`playbackOptions -min 50 -max 40`); playbackOptions -q -max", "float 120"},
        {"playbackOptions -q -fps", "float 24"},
        {"currentUnit -t pal; currentUnit -q -t", "string pal"},
        {"currentUnit -t \"2 a week\"", "line 1.1: Unknown time unit: 2 a week"},
        {"currentUnit -l m", "line 1.1: Lengths are in centimeters; the unit 'm' is not supported."},
        {"currentUnit -q -l -f", "string centimeter"},
        {"play; play -q -st", "int 1"},
        {"play; play -st off; play -q -st", "int 0"},
        {"play -f 0; play -q -f", "int 0"},
        {"timeControl -q -rangeArray $gPlayBackSlider", "float[] 1 2"},
        {"currentTime 9; timeControl -q -rangeArray $gPlayBackSlider", "float[] 9 10"},
        {"timeControl -e -rangeArray 3 8 $gPlayBackSlider; timeControl -q -rangeArray $gPlayBackSlider",
         "float[] 3 8"},
        {"timeControl -e -rangeArray 3 8 $gPlayBackSlider; timeControl -q -range $gPlayBackSlider",
         "string \"3:8\""},
        {"timeControl -e -hlr 3 8 $gPlayBackSlider; timeControl -e -rv 0; timeControl -q -rangeVisible",
         "int 0"},
        {"timeControl -e -rangeArray 8 3 $gPlayBackSlider",
         "line 1.1: The end of a highlighted range must lie behind its start."},
    });
}

TEST_F(SceneCommandsTest, Namespaces) {
    Check({
        {"namespace -add n; namespace -ex n", "int 1"},
        {"namespace -add n; namespace -add \"m\" -p \"n\"; namespaceInfo -lon n", "string[] n:m"},
        {"namespace -add n; namespace -set n; createNode transform -n a", "string n:a"},
        {"namespace -add n; namespace -set n; createNode transform -n a; namespace -set \":\"; namespaceInfo "
         "-lod n",
         "string[] n:a"},
        {"namespace -add n; namespace -set n; namespaceInfo -cur", "string n"},
        {"namespaceInfo -cur", "string :"},
        {"namespace -add n; namespace -rm n; namespace -ex n", "int 0"},
        {"namespace -set nowhere", "line 1.1: The namespace 'nowhere' does not exist."},
        {"createNode transform -n \"n:a\"; namespace -rm n",
         "line 1.32: The namespace 'n' does not exist or is not empty."},
    });
}

TEST_F(SceneCommandsTest, EveryEditCanBeUndoneAndRedone) {
    const char* scene =
        "createNode transform -n a; createNode transform -n b -p a; createNode transform -n c;"
        "setAttr a.t 1 2 3; addAttr -ln x -at long a; connectAttr a.tx c.tx; select c;";
    for (const char* mel : {"createNode camera",
                            "camera -fl 50",
                            "delete a",
                            "delete b c",
                            "rename a z",
                            "parent c b",
                            "parent -w b",
                            "group -n g a c",
                            "duplicate a",
                            "lockNode a",
                            "select a b",
                            "select -cl",
                            "setAttr a.t 7 8 9",
                            "setAttr -l on -k off a.ty 3",
                            "addAttr -ln y -dt \"string\" a",
                            "deleteAttr a.x",
                            "connectAttr -f a.ty c.tx",
                            "disconnectAttr a.tx c.tx",
                            "move 4 5 6 b",
                            "rotate -r 1 2 3 a",
                            "scale 2 3 4 a",
                            "xform -ws -t 1 1 1 b",
                            "currentTime 8",
                            "playbackOptions -min 3 -max 9 -aet 12",
                            "currentUnit -t pal",
                            "namespace -add n",
                            "namespace -add n; namespace -set n; createNode transform"}) {
        Run(std::string("file -f -new;") + scene);
        const std::string before = DumpScene(host_);
        host_.undo().OpenChunk(mel);
        EXPECT_EQ(ErrorOf(mel), "none");
        host_.undo().CloseChunk();
        const std::string after = DumpScene(host_);
        EXPECT_NE(after, before) << mel;
        Run("undo");
        EXPECT_EQ(DumpScene(host_), before) << mel;
        Run("redo");
        EXPECT_EQ(DumpScene(host_), after) << mel;
    }
}

TEST_F(SceneCommandsTest, UndoInfo) {
    Check({
        {"setAttr persp.tx 1; undoInfo -q -un", "string setAttr"},
        {"setAttr persp.tx 1; undo; undoInfo -q -rn", "string setAttr"},
        {"undoInfo -ock -cn \"two\"; setAttr persp.tx 1; setAttr persp.ty 1; undoInfo -cck; undo; getAttr "
         "persp.tx",
         "float 28"},
        {"undoInfo -st 0; setAttr persp.tx 1; undoInfo -q -st", "int 0"},
        {"undoInfo -st 1; setAttr persp.tx 1; flushUndo; undoInfo -q -uqe", "int 1"},
        {"undoInfo -in 0 -l 1; setAttr persp.tx 1; setAttr persp.ty 1; undo; undo; getAttr persp.tx",
         "float 1"},
    });
    Run("undoInfo -in 1");
}
