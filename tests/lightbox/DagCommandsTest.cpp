// Nodes, their names and places in the DAG, listing and selecting them, namespaces.

#include "SceneCommandFixture.h"

namespace {

class DagCommandsTest : public SceneCommandFixture {};

/// |top1|mid|leaf, |other|leaf, |cam1|camShape1 and a script node.
const char* const TREE = "createNode transform -n top1; createNode transform -n mid -p top1;"
                         "createNode transform -n leaf -p mid; createNode transform -n other;"
                         "createNode transform -n leaf -p other; camera -n cam; createNode script -n note;"
                         "select -cl";

TEST_F(DagCommandsTest, NodesAreCreatedDeletedAndRenamed) {
    const Edit edits[] = {
        {"", "createNode transform", "string transform1", "ls -sl", "string[] transform1"},
        {"", "createNode transform -n \"arm\" -ss", "string arm", "ls -sl", "string[] "},
        {"createNode transform -n arm", "createNode transform -n arm", "string arm1", "ls \"arm*\"",
         "string[] arm arm1"},
        {"createNode transform -n arm", "createNode transform -n arm -p arm", "string arm|arm",
         "ls -l \"arm\"", "string[] |arm |arm|arm"},
        {"", "createNode camera", "string cameraShape1", "listRelatives -p cameraShape1", "string[] camera1"},
        {"", "createNode -n \"ns:a\" transform", "string ns:a", "namespace -ex ns", "int 1"},
        {"", "createNode -s -n \"lights\" transform", "string lights", "ls lights", "string[] lights"},
        {"", "createNode -n \"hand#\" transform", "string hand1", "objExists hand1", "int 1"},
        {TREE, "delete top1", "void", "ls -tr \"top?\" \"mid*\" leaf", "string[] leaf"},
        {TREE, "delete top1 mid |top1|mid|leaf", "void", "ls leaf", "string[] leaf"},
        {TREE, "delete camShape1", "void", "listRelatives cam1", "string[] "},
        {TREE, "delete \"*leaf\"", "void", "ls \"*leaf\"", "string[] "},
        {TREE, "delete -all", "void", "ls -as", "string[] front persp side top"},
        {"createNode transform -n a; createNode transform -n b -p a; lockNode b; createNode transform -n c "
         "-p a; select -cl",
         "delete -all", "void", "ls a b c", "string[] a b"},
        {"createNode transform -n a; createNode transform -n b; connectAttr a.tx b.tx; select b", "delete",
         "void", "listConnections a", "string[] "},
        {"createNode transform -n a; createNode transform -n b; connectAttr a.tx b.tx; select b", "delete a",
         "void", "ls -sl", "string[] b"},
        {TREE, "rename mid waist", "string waist", "ls -l \"leaf\"", "string[] |top1|waist|leaf |other|leaf"},
        {TREE, "rename cam1 lens5", "string lens5", "listRelatives lens5", "string[] lensShape5"},
        {TREE, "rename -is cam1 lens5", "string lens5", "listRelatives lens5", "string[] camShape1"},
        {TREE, "rename mid other", "string top1|other", "ls -l other", "string[] |other |top1|other"},
        {TREE, "rename \"top1|mid\" \"joint#\"", "string joint1", "objExists mid", "int 0"},
        {TREE, "rename other \"ns:other\"", "string ns:other", "namespace -ex ns", "int 1"},
        {"createNode transform -n a", "rename \"b c\"", "string b_c", "ls -sl", "string[] b_c"},
        {TREE, "rename |other|leaf mid", "string other|mid", "ls -l \"|other|*\"", "string[] |other|mid"},
        {"createNode transform -n a", "rename -uid a \"12345678-1234-1234-1234-123456789ABC\"",
         "string 12345678-1234-1234-1234-123456789ABC", "ls -uid a",
         "string[] 12345678-1234-1234-1234-123456789ABC"},
        {TREE, "duplicate top1", "string[] top2", "ls -dag top2", "string[] top2 top2|mid top2|mid|leaf"},
        {"camera -n cam; setAttr -l on cam1.tx 5; addAttr -ln mark -dt \"string\" cam1;"
         "setAttr cam1.mark -type \"string\" \"x\"",
         "duplicate cam1 -n lens", "string[] lens", "getAttr lens.mark", "string x"},
        {TREE, "lockNode mid", "void", "lockNode -q mid", "int[] 1"},
        {"createNode transform -n a; lockNode -l on a", "lockNode -l off a", "void", "lockNode -q -l a",
         "int[] 0"},
    };
    ExpectEdits(edits);
}

TEST_F(DagCommandsTest, ImpossibleNodesAreRefused) {
    const Refusal refusals[] = {
        {"", "createNode nosuch", "Unknown object type: nosuch"},
        {"", "createNode transform -p nosuch", "No object matches name: nosuch"},
        {"", "createNode transform -p time1", "The object 'time1' is not in the DAG."},
        {"", "createNode transform -p perspShape", "Cannot parent a node below the shape 'perspShape'."},
        {"", "createNode script -p persp", "A node of type 'script' cannot have a parent."},
        {TREE, "createNode transform -p leaf", "More than one object matches name: leaf"},
        {"", "delete", "No object was specified."},
        {"", "delete nosuch", "No object matches name: nosuch"},
        {"", "delete \"nosuch*\"", "No object matches name: nosuch*"},
        {TREE, "delete mid time1", "Cannot delete the default node 'time1'."},
        {TREE, "delete mid persp", "Cannot delete the default node 'persp'."},
        {"createNode transform -n a; lockNode a", "delete a", "Cannot delete locked node 'a'."},
        {"createNode transform -n a; createNode transform -p a -n b; lockNode b", "delete a",
         "Cannot delete locked node 'b'."},
        {"createNode transform -n a", "rename a \"\"", "Cannot rename a node to an empty name."},
        {"", "rename time1 clock", "Cannot rename a read only node."},
        {"createNode transform -n a; lockNode a", "rename a b", "Cannot rename a read only node."},
        {"", "rename nosuch b", "No object matches name: nosuch"},
        {"", "rename b", "No object was specified."},
        {TREE, "rename leaf b", "More than one object matches name: leaf"},
        {TREE, "duplicate nosuch", "No object matches name: nosuch"},
        {TREE, "lockNode nosuch", "No object matches name: nosuch"},
        {"createNode transform -n a; createNode transform -n b; lockNode b", "parent b a",
         "Cannot parent the locked node 'b'."},
        {"createNode transform -n a; lockNode a", "addAttr -ln x -at long a",
         "Cannot add attributes to the locked node 'a'."},
        {"createNode transform -n a; addAttr -ln x -at long a; lockNode a", "deleteAttr a.x",
         "Cannot delete the attribute 'x' from 'a'."},
    };
    ExpectRefusals(refusals);
}

TEST_F(DagCommandsTest, HierarchiesAreRearranged) {
    const Edit edits[] = {
        {TREE, "parent other top1", "string[] other", "listRelatives -f top1",
         "string[] |top1|mid |top1|other"},
        {TREE, "parent |other|leaf mid", "string[] leaf1", "ls -l \"leaf*\"",
         "string[] |top1|mid|leaf |top1|mid|leaf1"},
        {TREE, "parent -w mid", "string[] mid", "listRelatives -p mid", "string[] "},
        {"createNode transform -n a; createNode transform -n b; select b a", "parent", "string[] b",
         "listRelatives a", "string[] b"},
        {"createNode transform -n a; createNode transform -n b; select b", "parent a", "string[] b",
         "listRelatives a", "string[] b"},
        {"createNode transform -n a; move 1 2 3 a; createNode transform -n b", "parent b a", "string[] b",
         "getAttr b.t", "float[] -1 -2 -3"},
        {"createNode transform -n a; move 1 2 3 a; createNode transform -n b", "parent -r b a", "string[] b",
         "getAttr b.t", "float[] 0 0 0"},
        {"createNode transform -n a; createNode transform -n b; select b a", "group", "string group1",
         "listRelatives group1", "string[] b a"},
        {TREE, "group -n held |top1|mid|leaf", "string held", "ls -l held", "string[] |top1|mid|held"},
        {TREE, "group -n held -w |top1|mid|leaf", "string held", "ls -l held", "string[] |held"},
        {TREE, "group -n held mid other", "string held", "listRelatives held", "string[] mid other"},
        {"", "group -em", "string null1", "ls -sl", "string[] null1"},
        {TREE, "group -em -p mid -n x", "string x", "ls -l x", "string[] |top1|mid|x"},
    };
    ExpectEdits(edits);
    const Refusal refusals[] = {
        {TREE, "parent top1 mid", "Cannot parent an object to itself or to one of its children."},
        {TREE, "parent mid mid", "Cannot parent an object to itself or to one of its children."},
        {TREE, "parent other mid |top1|mid|leaf",
         "Cannot parent an object to itself or to one of its children."},
        {TREE, "parent mid note", "The object 'note' is not in the DAG."},
        {TREE, "parent other note mid", "The object 'note' is not in the DAG."},
        {TREE, "parent mid camShape1", "Cannot parent a node below the shape 'camShape1'."},
        {TREE, "parent -w camShape1", "A shape cannot be without a transform."},
        {TREE, "parent mid", "There is nothing to put below 'mid'."},
        {TREE, "parent", "No object was specified."},
        {TREE, "group", "No object was specified."},
        {TREE, "group mid note", "The object 'note' is not in the DAG."},
        {TREE, "group -n g nosuch", "No object matches name: nosuch"},
        {TREE, "group -p camShape1 mid", "Cannot parent a node below the shape 'camShape1'."},
        {TREE, "group -p mid top1", "Cannot parent an object to itself or to one of its children."},
    };
    ExpectRefusals(refusals);
}

TEST_F(DagCommandsTest, RelativesAreListed) {
    const Question questions[] = {
        {"listRelatives top1", "string[] mid"},
        {"listRelatives -c top1 other", "string[] mid leaf"},
        {"listRelatives -ad top1", "string[] leaf mid"},
        {"listRelatives -ad -f top1", "string[] |top1|mid|leaf |top1|mid"},
        {"listRelatives -pa other", "string[] other|leaf"},
        {"listRelatives -p |other|leaf", "string[] other"},
        {"listRelatives -p -f mid", "string[] |top1"},
        {"listRelatives -ap camShape1", "string[] cam1"},
        {"listRelatives -p top1", "string[] "},
        {"listRelatives -s cam1", "string[] camShape1"},
        {"listRelatives -s top1", "string[] "},
        {"listRelatives -ad -type camera cam1 top1", "string[] camShape1"},
        {"listRelatives -type transform cam1", "string[] "},
        {"listRelatives note", "string[] "},
        {"listRelatives leaf", "string[] "},
        {"listRelatives nosuch", "error: No object matches name: nosuch"},
    };
    ExpectAnswers(TREE, questions);
}

TEST_F(DagCommandsTest, NodesAreListed) {
    const Question questions[] = {
        {"ls nosuch", "string[] "},
        {"ls leaf", "string[] mid|leaf other|leaf"},
        {"ls -l leaf", "string[] |top1|mid|leaf |other|leaf"},
        {"ls mid other mid", "string[] mid other"},
        {"ls \"|o*\"", "string[] other"},
        {"ls -ca", "string[] camShape1 frontShape perspShape sideShape topShape"},
        {"ls -type camera \"cam*\"", "string[] camShape1"},
        {"ls -exactType transform -type camera \"cam*\"", "string[] cam1 camShape1"},
        {"ls -type shape \"cam*\"", "string[] camShape1"},
        {"ls -tr -ext transform", "string[] "},
        {"ls -s -ca \"c*\"", "string[] camShape1"},
        {"ls -st note", "string[] note script"},
        {"ls -dag top1", "string[] top1 mid mid|leaf"},
        {"ls -dag -lf top1 cam1", "string[] mid|leaf camShape1"},
        {"ls -dag -l -type camera cam1", "string[] |cam1|camShape1"},
        {"ls -hd 2 -tr", "string[] cam1 front"},
        {"ls -tl 1 -type camera", "string[] topShape"},
        {"ls -hd -1 -tr", "string[] "},
        {"ls -sl", "string[] "},
        {"ls mid.nosuch", "string[] "},
        {"ls \"top*\" -as", "string[] top top1"},
        {"ls \"ns:*\"", "string[] "},
        {"size(`ls -nt`) > 5", "int 1"},
        {"objExists leaf", "int 1"},
        {"objExists \"l?af\"", "int 1"},
        {"objExists nosuch", "int 0"},
        {"objExists mid.tx", "int 1"},
        {"objExists mid.nosuch", "int 0"},
        {"objExists leaf.tx", "int 0"},
        {"objExists \"\"", "int 0"},
        {"nodeType mid", "string transform"},
        {"nodeType nosuch", "error: No object matches name: nosuch"},
        {"objectType camShape1", "string camera"},
        {"objectType -i transform mid", "int 1"},
        {"objectType -isa dagNode mid", "int 1"},
        {"objectType -isa camera mid", "int 0"},
    };
    ExpectAnswers(TREE, questions);
    const Question namespaced[] = {
        {"ls a", "string[] a"},
        {"ls \"*:a\"", "string[] n:a"},
        {"ls -r true a", "string[] a n:a n:m:a"},
        {"ls -r false a", "string[] a"},
        {"ls -r 1 -l \"a\" -type transform", "string[] |a |n:a |n:m:a"},
    };
    ExpectAnswers("createNode transform -n a; createNode transform -n \"n:a\";"
                  "createNode transform -n \"n:m:a\"",
                  namespaced);
    const Question selected[] = {
        {"ls -sl", "string[] c a"},
        {"ls -sl a b", "string[] a"},
        {"ls -os -tl 1", "string[] a"},
        {"ls -sl -type camera", "string[] "},
    };
    ExpectAnswers(
        "createNode transform -n a; createNode transform -n b; createNode transform -n c; select c a",
        selected);
}

TEST_F(DagCommandsTest, NodesAreSelected) {
    const char* const three =
        "createNode transform -n a; createNode transform -n b; createNode transform -n c;"
        "createNode transform -n d -p c; select b";
    const Edit edits[] = {
        {three, "select a c", "void", "ls -sl", "string[] a c"},
        {three, "select -r c a a", "void", "ls -sl", "string[] c a"},
        {three, "select -add a", "void", "ls -sl", "string[] b a"},
        {three, "select -af a", "void", "ls -sl", "string[] a b"},
        {three, "select -tgl a b", "void", "ls -sl", "string[] a"},
        {three, "select -d b", "void", "ls -sl", "string[] "},
        {three, "select -cl", "void", "ls -sl", "string[] "},
        {three, "select -hi c", "void", "ls -sl", "string[] c d"},
        {three, "select -all", "void", "ls -sl", "string[] a b c"},
        {three, "select \"?\"", "void", "ls -sl", "string[] a b c d"},
        {three, "select -ado", "void", "ls -sl", "string[] a b c"},
        {three, "select time1", "void", "ls -sl", "string[] time1"},
    };
    ExpectEdits(edits);
    // a, b, c with d, e (with shapes s, t) and f below it
    const char* const tree =
        "createNode transform -n a; createNode transform -n b; createNode transform -n c;"
        "createNode transform -n d -p c; createNode transform -n e -p c; createNode transform -n f -p c;"
        "createNode locator -n s -p e; createNode locator -n t -p e; select d";
    const Edit walks[] = {
        {tree, "pickWalk", "string[] e", "ls -sl", "string[] e"},
        {tree, "pickWalk -d left", "string[] f", "ls -sl", "string[] f"},
        {tree, "pickWalk -direction up", "string[] c", "ls -sl", "string[] c"},
        {tree, "pickWalk -d down e", "string[] s", "ls -sl", "string[] s"},
        {tree, "pickWalk -d right s", "string[] t", "ls -sl", "string[] t"},
        {tree, "pickWalk -d left s", "string[] t", "ls -sl", "string[] t"},
        {tree, "pickWalk -d up s t d time1", "string[] e c time1", "ls -sl", "string[] e c time1"},
        {tree, "pickWalk -d up c a", "string[] c a", "ls -sl", "string[] c a"},
    };
    ExpectEdits(walks);
    const Question ends[] = {
        {"pickWalk -d down", "string[] d"},
        {"pickWalk -d down c", "string[] d"},
        {"pickWalk -type instances", "string[] d"},
    };
    ExpectAnswers(tree, ends);
    const Question nothing[] = {{"pickWalk -d up", "string[] "}};
    ExpectAnswers("select -cl", nothing);
    const Refusal refusals[] = {
        {tree, "pickWalk -d sideways",
         "-direction takes \"up\", \"down\", \"left\" or \"right\", not \"sideways\"."},
        {tree, "pickWalk -type edgeloop",
         "pickWalk walks from node to node; the type \"edgeloop\" is not supported."},
        {tree, "pickWalk nosuch", "No object matches name: nosuch"},
        {three, "select a nosuch", "No object matches name: nosuch"},
        {three, "select -add nosuch", "No object matches name: nosuch"},
        {"select -cl", "select -r", "No object was specified."},
    };
    ExpectRefusals(refusals);
}

TEST_F(DagCommandsTest, NamespacesAreManaged) {
    const Edit edits[] = {
        {"", "namespace -add n", "string n", "namespace -ex n", "int 1"},
        {"", "namespace -add m -p n", "string n:m", "namespaceInfo -lon -r", "string[] n n:m"},
        {"namespace -add n", "namespace -set n", "string n", "namespaceInfo -cur", "string n"},
        {"namespace -add n; namespace -set n", "namespace -add m", "string n:m", "namespace -ex \":n:m\"",
         "int 1"},
        {"namespace -add n; namespace -set n", "namespace -set \":\"", "string ", "namespaceInfo -cur",
         "string :"},
        {"namespace -add n; namespace -set n", "createNode transform -n a", "string n:a",
         "namespaceInfo -lod \":n\"", "string[] n:a"},
        {"namespace -add n", "namespace -rm n", "string n", "namespace -ex n", "int 0"},
        {"namespace -add n; namespace -set n", "namespace -rm \":n\"", "string n", "namespaceInfo -cur",
         "string :"},
    };
    ExpectEdits(edits);
    const Refusal refusals[] = {
        {"namespace -add n", "namespace -add n", "The namespace 'n' exists already."},
        {"", "namespace -add \"\"", "The name '' is not valid for a namespace."},
        {"", "namespace -add \"1shot\"", "The name '1shot' is not valid for a namespace."},
        {"", "namespace -add \"a:2b\"", "The name 'a:2b' is not valid for a namespace."},
        {"", "namespace -add \"a::b\"", "The name 'a::b' is not valid for a namespace."},
        {"", "namespaceInfo -ls nosuch", "The namespace 'nosuch' does not exist."},
        {"", "namespace -set n", "The namespace 'n' does not exist."},
        {"", "namespace -rm n", "The namespace 'n' does not exist or is not empty."},
        {"createNode transform -n \"n:a\"", "namespace -rm n",
         "The namespace 'n' does not exist or is not empty."},
        {"createNode transform -n \"n:a\"; namespace -set n", "namespace -rm \":n\"",
         "The namespace 'n' does not exist or is not empty."},
        {"namespace -add n; namespace -add m -p n", "namespace -rm n",
         "The namespace 'n' does not exist or is not empty."},
        {"", "namespace -add \"1 b\"", "The name '1 b' is not valid for a namespace."},
        {"", "namespace", "One of -add, -set, -rm and -exists has to be given."},
    };
    ExpectRefusals(refusals);
    const Question questions[] = {
        {"namespace -ex \":\"", "int 1"},
        {"namespace -ex nosuch", "int 0"},
        {"namespaceInfo -cur", "string :"},
        {"namespaceInfo -lon", "string[] n"},
        {"namespaceInfo -ls n", "string[] n:m n:a"},
        {"namespaceInfo -ls -r n", "string[] n:m n:a n:m:b"},
        {"namespaceInfo -lod -an n", "string[] :n:a"},
        {"namespaceInfo -lod \":n:m\"", "string[] n:m:b"},
    };
    ExpectAnswers("createNode transform -n \"n:a\"; createNode transform -n \"n:m:b\"", questions);
}

TEST_F(DagCommandsTest, NodesInSteps) {
    const Question steps[] = {
        {"createNode transform", "string transform1"},
        {"createNode transform -n a; createNode transform -n a", "string a2"},
        {"createNode camera", "string cameraShape1"},
        {"createNode camera; ls -sl -l", "string[] |camera1|cameraShape1"},
        {"createNode camera -n eye; listRelatives -p eye", "string[] camera1"},
        {"createNode -ss transform -n a; ls -sl", "string[] "},
        {"createNode transform -n a; createNode transform -n b -p a; ls -l b", "string[] |a|b"},
        {"createNode nothing", "error: Unknown object type: nothing"},
        {"createNode transform -p nobody", "error: No object matches name: nobody"},
        {"rename a c", "string c"},
        {"select b; rename \"d|x\"", "string d_x"},
        {"rename nobody x", "error: No object matches name: nobody"},
        {"rename persp view; ls -ca view", "string[] "},
        {"camera -n shot; rename shot1 take2; ls \"take*\"", "string[] take2 takeShape2"},
        {"delete a; ls \"[ab]\" b", "string[] "},
        {"delete persp", "error: Cannot delete the default node 'persp'."},
        {"delete nobody", "error: No object matches name: nobody"},
        {"delete -all; ls -tr", "string[] front persp side top"},
        {"objExists a", "int 1"},
        {"objExists \"a.tx\"", "int 1"},
        {"objExists \"a.nothing\"", "int 0"},
        {"objExists nobody", "int 0"},
        {"nodeType perspShape", "string camera"},
        {"nodeType nobody", "error: No object matches name: nobody"},
        {"objectType -isType transform a", "int 1"},
        {"objectType -isAType dagNode a", "int 1"},
        {"objectType time1", "string time"},
        {"lockNode a; catch(`delete a`); objExists a", "int 1"},
        {"setAttr a.t 1 2 3; setAttr b.ty 7; addAttr -ln x -at long a; setAttr a.x 4; duplicate a",
         "string[] a1"},
        {"setAttr b.ty 7; duplicate -n c a; getAttr \"c|b.ty\"", "float 7"},
        {"addAttr -ln x -at long a; setAttr a.x 4; duplicate a; setAttr a.x 5; getAttr a1.x", "int 4"},
    };
    ExpectSteps("createNode transform -n a; createNode transform -n b -p a; select -cl;", steps);
}

TEST_F(DagCommandsTest, ListsAndSelectionsInSteps) {
    const Question steps[] = {
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
        {"select -cl; select nobody", "error: No object matches name: nobody"},
        {"select b; size(`ls -sl`)", "int 2"},
        {"listRelatives -c a", "string[] b"},
        {"listRelatives -ad -f a", "string[] |a|b|s |a|b"},
        {"listRelatives -s -f \"|a|b\"", "string[] |a|b|s"},
        {"listRelatives -p -f s", "string[] |a|b"},
        {"listRelatives -p a", "string[] "},
        {"listRelatives -ad -type locator a", "string[] s"},
        {"parent -w \"|a|b\"; ls -l s", "string[] |b1|s"},
        {"parent \"|b\" a", "string[] b1"},
        {"parent a \"|a|b\"", "error: Cannot parent an object to itself or to one of its children."},
        {"setAttr a.tx 5; parent -w \"|a|b\"; getAttr b1.tx", "float 5"},
        {"setAttr a.tx 5; parent -w -r \"|a|b\"; getAttr b1.tx", "float 0"},
        {"group -n g \"|b\" a; ls -l \"*a\"", "string[] |g|a"},
        {"group -em -n g; listRelatives g", "string[] "},
    };
    ExpectSteps("createNode transform -n a; createNode transform -n b -p a; createNode transform -n b;"
                "createNode locator -n s -p \"|a|b\"; setAttr \"|b.v\" 0; select -cl;",
                steps);
}

TEST_F(DagCommandsTest, AttributesAreListed) {
    const Question questions[] = {
        {"ls a.tx", "string[] a.translateX"},
        {"ls -l a.translateX", "string[] |a.translateX"},
        {"ls -sn \"a.translate?\"", "string[] a.tx a.ty a.tz"},
        {"ls \"*.marks*\"", "string[] a.marks"},
        {"ls \"a.marks[3]\" a.marks", "string[] a.marks[3] a.marks"},
        {"ls -o a.tx \"a.t*\" b.ty", "string[] a b"},
        {"ls -o a.nothing", "string[] "},
        {"ls a.nothing \"a.\" \"a.t[\" nosuch.tx", "string[] "},
        {"ls -st a.t a.v", "string[] a.translate double3 a.visibility bool"},
        {"ls -type camera a.tx persp.tx perspShape.fl", "string[] perspShape.focalLength"},
        {"ls -sl \"*.tx\"", "string[] b.translateX"},
    };
    ExpectAnswers("createNode transform -n a; createNode transform -n b; addAttr -m -ln marks -at long a;"
                  "setAttr \"a.marks[3]\" 1",
                  questions);
    EXPECT_EQ(Answer("ls -o"), Answer("ls"));
}

TEST_F(DagCommandsTest, NamespacesInSteps) {
    const Question steps[] = {
        {"namespace -add n; namespace -ex n", "int 1"},
        {"namespace -add n; namespace -add \"m\" -p \"n\"; namespaceInfo -lon n", "string[] n:m"},
        {"namespace -add n; namespace -set n; createNode transform -n a", "string n:a"},
        {"namespace -add n; namespace -set n; createNode transform -n a; namespace -set \":\"; namespaceInfo "
         "-lod n",
         "string[] n:a"},
        {"namespace -add n; namespace -set n; namespaceInfo -cur", "string n"},
        {"namespaceInfo -cur", "string :"},
        {"namespace -add n; namespace -rm n; namespace -ex n", "int 0"},
        {"namespace -set nowhere", "error: The namespace 'nowhere' does not exist."},
        {"createNode transform -n \"n:a\"; namespace -rm n",
         "error: The namespace 'n' does not exist or is not empty."},
    };
    ExpectSteps("", steps);
}

} // namespace
