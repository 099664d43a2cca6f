#include "SceneCommandFixture.h"

namespace {

class SceneEditsTest : public SceneCommandFixture {};

/// |top1|mid|leaf, |other|leaf, |cam1|camShape1 and a script node.
const char* const TREE = "createNode transform -n top1; createNode transform -n mid -p top1;"
                         "createNode transform -n leaf -p mid; createNode transform -n other;"
                         "createNode transform -n leaf -p other; camera -n cam; createNode script -n note;"
                         "select -cl";

TEST_F(SceneEditsTest, NodesAreCreatedDeletedAndRenamed) {
    const Edit EDITS[] = {
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
    ExpectEdits(EDITS);
}

TEST_F(SceneEditsTest, ImpossibleNodesAreRefused) {
    const Refusal REFUSALS[] = {
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
    ExpectRefusals(REFUSALS);
}

TEST_F(SceneEditsTest, HierarchiesAreRearranged) {
    const Edit EDITS[] = {
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
    ExpectEdits(EDITS);
    const Refusal REFUSALS[] = {
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
    ExpectRefusals(REFUSALS);
}

TEST_F(SceneEditsTest, RelativesAreListed) {
    const Question QUESTIONS[] = {
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
    ExpectAnswers(TREE, QUESTIONS);
}

TEST_F(SceneEditsTest, NodesAreListed) {
    const Question QUESTIONS[] = {
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
    ExpectAnswers(TREE, QUESTIONS);
    const Question NAMESPACED[] = {
        {"ls a", "string[] a"},
        {"ls \"*:a\"", "string[] n:a"},
        {"ls -r true a", "string[] a n:a n:m:a"},
        {"ls -r false a", "string[] a"},
        {"ls -r 1 -l \"a\" -type transform", "string[] |a |n:a |n:m:a"},
    };
    ExpectAnswers("createNode transform -n a; createNode transform -n \"n:a\";"
                  "createNode transform -n \"n:m:a\"",
                  NAMESPACED);
    const Question SELECTED[] = {
        {"ls -sl", "string[] c a"},
        {"ls -sl a b", "string[] a"},
        {"ls -os -tl 1", "string[] a"},
        {"ls -sl -type camera", "string[] "},
    };
    ExpectAnswers(
        "createNode transform -n a; createNode transform -n b; createNode transform -n c; select c a",
        SELECTED);
}

TEST_F(SceneEditsTest, NodesAreSelected) {
    const char* const THREE =
        "createNode transform -n a; createNode transform -n b; createNode transform -n c;"
        "createNode transform -n d -p c; select b";
    const Edit EDITS[] = {
        {THREE, "select a c", "void", "ls -sl", "string[] a c"},
        {THREE, "select -r c a a", "void", "ls -sl", "string[] c a"},
        {THREE, "select -add a", "void", "ls -sl", "string[] b a"},
        {THREE, "select -af a", "void", "ls -sl", "string[] a b"},
        {THREE, "select -tgl a b", "void", "ls -sl", "string[] a"},
        {THREE, "select -d b", "void", "ls -sl", "string[] "},
        {THREE, "select -cl", "void", "ls -sl", "string[] "},
        {THREE, "select -hi c", "void", "ls -sl", "string[] c d"},
        {THREE, "select -all", "void", "ls -sl", "string[] a b c"},
        {THREE, "select \"?\"", "void", "ls -sl", "string[] a b c d"},
        {THREE, "select -ado", "void", "ls -sl", "string[] a b c"},
        {THREE, "select time1", "void", "ls -sl", "string[] time1"},
    };
    ExpectEdits(EDITS);
    const Refusal REFUSALS[] = {
        {THREE, "select a nosuch", "No object matches name: nosuch"},
        {THREE, "select -add nosuch", "No object matches name: nosuch"},
        {"select -cl", "select -r", "No object was specified."},
    };
    ExpectRefusals(REFUSALS);
}

TEST_F(SceneEditsTest, PlugsAreConnected) {
    const char* const PAIR = "createNode transform -n a; createNode transform -n b;"
                             "createNode transform -n c; select -cl";
    const Edit EDITS[] = {
        {PAIR, "connectAttr a.tx b.ty", "string Connected a.translateX to b.translateY.",
         "listConnections -p on b", "string[] a.translateX"},
        {PAIR, "connectAttr -l on a.tx b.tx", "string Connected a.translateX to b.translateX.",
         "getAttr -l b.tx", "int 1"},
        {"createNode transform -n a; createNode transform -n b; createNode transform -n c;"
         "connectAttr a.tx b.tx",
         "connectAttr -f c.tx b.tx", "string Connected c.translateX to b.translateX.", "listConnections b",
         "string[] c"},
        {"createNode transform -n a; createNode transform -n b; connectAttr a.tx b.tx",
         "disconnectAttr a.tx b.tx", "string Disconnect a.translateX from b.translateX.",
         "isConnected a.tx b.tx", "int 0"},
    };
    ExpectEdits(EDITS);
    const Refusal REFUSALS[] = {
        {PAIR, "connectAttr a.tx a.tx", "Cannot connect 'a.translateX' to itself."},
        {"createNode transform -n a; createNode transform -n b; setAttr -l on b.tx", "connectAttr a.tx b.tx",
         "The destination attribute 'b.translateX' is locked."},
        {PAIR, "disconnectAttr a.tx b.tx",
         "There is no connection from 'a.translateX' to 'b.translateX' to disconnect."},
    };
    ExpectRefusals(REFUSALS);
}

TEST_F(SceneEditsTest, NamespacesAreManaged) {
    const Edit EDITS[] = {
        {"", "namespace -add n", "string n", "namespace -ex n", "int 1"},
        {"", "namespace -add m -p n", "string n:m", "namespaceInfo -lon -r", "string[] n n:m"},
        {"namespace -add n", "namespace -set n", "string n", "namespaceInfo -cur", "string n"},
        {"namespace -add n; namespace -set n", "namespace -add m", "string n:m", "namespace -ex \":n:m\"",
         "int 1"},
        {"namespace -add n; namespace -set n", "namespace -set \":\"", "string ", "namespaceInfo -cur",
         "string :"},
        {"namespace -add n; namespace -set n", "createNode transform -n a", "string n:a",
         "namespaceInfo -lod n", "string[] "},
        {"namespace -add n", "namespace -rm n", "string n", "namespace -ex n", "int 0"},
        {"namespace -add n; namespace -set n", "namespace -rm \":n\"", "string n", "namespaceInfo -cur",
         "string :"},
    };
    ExpectEdits(EDITS);
    const Refusal REFUSALS[] = {
        {"namespace -add n", "namespace -add n", "The namespace 'n' exists already."},
        {"", "namespace -add \"\"", "The namespace '' exists already."},
        {"", "namespace -set n", "The namespace 'n' does not exist."},
        {"", "namespace -rm n", "The namespace 'n' does not exist or is not empty."},
        {"createNode transform -n \"n:a\"", "namespace -rm n",
         "The namespace 'n' does not exist or is not empty."},
        {"createNode transform -n \"n:a\"; namespace -set n", "namespace -rm \":n\"",
         "The namespace 'n' does not exist or is not empty."},
        {"namespace -add n; namespace -add m -p n", "namespace -rm n",
         "The namespace 'n' does not exist or is not empty."},
        {"", "namespace -add \"1 b\"", "The name '1 b' is not one for a namespace."},
        {"", "namespace", "One of -add, -set, -rm and -exists has to be given."},
    };
    ExpectRefusals(REFUSALS);
    const Question QUESTIONS[] = {
        {"namespace -ex \":\"", "int 1"},
        {"namespace -ex nosuch", "int 0"},
        {"namespaceInfo -cur", "string :"},
        {"namespaceInfo -lon", "string[] n"},
        {"namespaceInfo -ls n", "string[] n:m n:a"},
        {"namespaceInfo -ls -r n", "string[] n:m n:a n:m:b"},
        {"namespaceInfo -lod -an n", "string[] :n:a"},
        {"namespaceInfo -lod \":n:m\"", "string[] n:m:b"},
    };
    ExpectAnswers("createNode transform -n \"n:a\"; createNode transform -n \"n:m:b\"", QUESTIONS);
}

} // namespace
