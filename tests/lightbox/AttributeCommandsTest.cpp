// getAttr, setAttr, addAttr, deleteAttr, listAttr, attributeQuery and connections.

#include "SceneCommandFixture.h"

namespace {

class AttributeCommandsTest : public SceneCommandFixture {};

const char* const PAIR_OF_KINDS = "createNode transform -n a; createNode locator -n l; select a;";

/// A node with an attribute of every type.
const char* const EVERY_TYPE =
    "createNode transform -n a; addAttr -ln aBool -at bool; addAttr -ln aByte -at byte; addAttr -ln aChar "
    "-at char;"
    "addAttr -ln aShort -at short; addAttr -ln aLong -at long; addAttr -ln aFloat -at float; addAttr -ln "
    "aDouble -at double;"
    "addAttr -ln anAngle -at doubleAngle; addAttr -ln aLength -at doubleLinear; addAttr -ln aTime -at time;"
    "addAttr -ln anEnum -at enum -en \"low=3:high:top=9\"; addAttr -ln aText -dt string;"
    "addAttr -ln texts -dt stringArray; addAttr -ln doubles -dt doubleArray; addAttr -ln ints -dt Int32Array;"
    "addAttr -ln vectors -dt vectorArray; addAttr -ln points -dt pointArray; addAttr -ln aMatrix -at matrix;"
    "addAttr -ln many -at double -m; addAttr -ln manyInts -at long -m; addAttr -ln manyTexts -dt string -m;"
    "addAttr -ln two -at float2; addAttr -ln twoX -at float -p two; addAttr -ln twoY -at float -p two;"
    "addAttr -ln three -at long3; addAttr -ln threeX -at long -p three; addAttr -ln threeY -at long -p three;"
    "addAttr -ln threeZ -at long -p three;"
    "addAttr -ln keys -at compound -nc 2 -m; addAttr -ln keyTime -at double -p keys; addAttr -ln keyName -dt "
    "string -p keys;"
    "addAttr -ln limited -at double -min -1 -max 2; addAttr -ln signal -at message";

TEST_F(AttributeCommandsTest, EveryTypeIsSetAndShown) {
    const Question steps[] = {
        {"setAttr a.aBool 1; getAttr a.aBool", "int 1"},
        {"setAttr a.aBool yes; setAttr a.aBool false; getAttr a.aBool", "int 0"},
        {"setAttr a.aByte 300; getAttr a.aByte", "int 255"},
        {"setAttr a.aChar 65; getAttr a.aChar", "int 65"},
        {"setAttr a.aShort 40000; getAttr a.aShort", "int 32767"},
        {"setAttr a.aLong 3.9; getAttr a.aLong", "int 3"},
        {"setAttr a.aLong -2e9; getAttr a.aLong", "int -2000000000"},
        {"setAttr a.aFloat .5; getAttr a.aFloat", "float 0.5"},
        {"setAttr a.aDouble \"1e-3\"; getAttr a.aDouble", "float 0.001"},
        {"setAttr a.anAngle 90; setAttr a.aLength 2.5; getAttr a.anAngle", "float 90"},
        {"setAttr a.aTime 12; getAttr a.aTime", "float 12"},
        {"setAttr a.anEnum 4; getAttr -as a.anEnum", "string high"},
        {"setAttr a.anEnum 4; getAttr a.anEnum", "int 4"},
        {"setAttr a.aText -type \"string\" \"x\\n\\\"é\\\"\"; getAttr a.aText", "string x\n\"é\""},
        {"getAttr a.aText", "string "},
        {"setAttr a.texts -type \"stringArray\" 2 \"-k\" \"\"; size(`getAttr a.texts`)", "int 2"},
        {"setAttr a.texts -type stringArray 0; size(`getAttr a.texts`)", "int 0"},
        {"setAttr a.doubles -type \"doubleArray\" 3 .1 2 -3; getAttr a.doubles", "float[] 0.1 2 -3"},
        {"float $v[] = {4, 5}; setAttr a.doubles -type doubleArray 2 $v; getAttr a.doubles", "float[] 4 5"},
        {"setAttr a.ints -type \"Int32Array\" 2 7 8; getAttr a.ints", "int[] 7 8"},
        {"setAttr a.vectors -type \"vectorArray\" 2 1 2 3 4 5 6; size(`getAttr a.vectors`)", "int 6"},
        {"setAttr a.points -type \"pointArray\" 1 1 2 3 1; getAttr a.points", "float[] 1 2 3 1"},
        {"setAttr a.aMatrix -type \"matrix\" 2 0 0 0 0 2 0 0 0 0 2 0 1 2 3 1; getAttr a.aMatrix",
         "float[] 2 0 0 0 0 2 0 0 0 0 2 0 1 2 3 1"},
        {"setAttr a.two 1 2; getAttr a.two", "float[] 1 2"},
        {"setAttr a.two -type \"float2\" 3 4; getAttr a.twoY", "float 4"},
        {"setAttr a.three 1.7 2 3; getAttr a.three", "float[] 1 2 3"},
        {"setAttr a.t -type \"double3\" 1 2 3; setAttr a.tx 9; getAttr a.t", "float[] 9 2 3"},
        {"setAttr -s 3 \"a.many[1:3]\" 7 8 9; getAttr \"a.many[2]\"", "float 8"},
        {"setAttr \"a.many[4]\" 7; setAttr \"a.many[9]\" 8; getAttr a.many", "float[] 7 8"},
        {"setAttr \"a.manyInts[5]\" 7; getAttr a.manyInts", "int[] 7"},
        {"setAttr \"a.many[4]\" 7; setAttr \"a.many[9]\" 8; getAttr -s a.many", "int 2"},
        {"setAttr \"a.manyTexts[2]\" -type \"string\" \"x\"; getAttr \"a.manyTexts[2]\"", "string x"},
        {"setAttr \"a.keys[7].keyTime\" 3; getAttr -mi a.keys", "int[] 7"},
        {"setAttr \"a.keys[7].keyName\" -type \"string\" \"n\"; getAttr \"a.keys[7].keyName\"", "string n"},
        {"setAttr -clamp a.limited 5; getAttr a.limited", "float 2"},
        {"setAttr -c a.limited -5; getAttr a.limited", "float -1"},
        {"setAttr -clamp a.t 1 2 3; getAttr a.t", "float[] 1 2 3"},
        {"setAttr -av a.limited 1 -ca on -ch 5; getAttr a.limited", "float 1"},
        {"putenv LIGHTBOX_TEST_FOLDER \"/tex\"; setAttr a.aText -type string "
         "\"${LIGHTBOX_TEST_FOLDER}/$NO_SUCH/a\";"
         "getAttr -x a.aText",
         "string /tex/$NO_SUCH/a"},
        {"setAttr a.aText -type string \"$HOME\"; getAttr a.aText", "string $HOME"},
        {"getAttr -sl a.signal", "void"},
        {"getAttr -silent a.keys", "void"},
        {"getAttr -type a.three", "string long3"},
        {"getAttr -se a.tx", "int 1"},
        {"setAttr -l on a.t; getAttr -se a.tx", "int 0"},
    };
    ExpectSteps(EVERY_TYPE, steps);
}

TEST_F(AttributeCommandsTest, WhatDoesNotFitIsRefused) {
    const Refusal refusals[] = {
        {EVERY_TYPE, "setAttr a.limited 5",
         "Cannot set the attribute 'a.limited' past its maximum value of 2."},
        {EVERY_TYPE, "setAttr a.limited -5",
         "Cannot set the attribute 'a.limited' below its minimum value of -1."},
        {EVERY_TYPE, "setAttr a.anEnum \"high\"", "A number was expected for 'a.anEnum', not \"high\"."},
        {EVERY_TYPE, "setAttr a.aText \"x\"", "A number was expected for 'a.aText', not \"x\"."},
        {EVERY_TYPE, "setAttr a.aText -type string", "No value was given for 'a.aText'."},
        {EVERY_TYPE, "setAttr a.aMatrix -type matrix 1 2 3",
         "The attribute 'a.aMatrix' cannot take that value."},
        {EVERY_TYPE, "setAttr a.doubles -type doubleArray 3 1 2",
         "The number of values for 'a.doubles' does not match the count before them."},
        {EVERY_TYPE, "setAttr a.texts -type stringArray 2000000000 \"x\"",
         "The number of values for 'a.texts' does not match the count before them."},
        {EVERY_TYPE, "setAttr a.t -type double3 1 2",
         "The attribute 'a.translate' takes 3 values; 2 were given."},
        {EVERY_TYPE, "setAttr a.tx -type string \"x\"",
         "The attribute 'a.translateX' cannot take that value."},
        {EVERY_TYPE, "setAttr a.keys -type componentList 2 \"vtx[0]\" \"vtx[1]\"",
         "Unknown data type 'componentList'."},
        {EVERY_TYPE, "setAttr \"a.many[0:3]\" 1 2",
         "The range of \"many[0:3]\" is longer than the values given."},
        {EVERY_TYPE, "setAttr a.many 1",
         "The value given does not fit the attribute 'a.many', of type double."},
        {EVERY_TYPE, "setAttr a.tx -wild 1", "Invalid flag '-wild'."},
        {EVERY_TYPE, "setAttr a.tx -lock", "An argument is missing at the end."},
        {EVERY_TYPE, "setAttr", "No attribute was specified."},
        {EVERY_TYPE, "getAttr a.keys", "The attribute 'a.keys' has no value of its own."},
        {EVERY_TYPE, "getAttr a.manyTexts", "The attribute 'a.manyTexts' has no value of its own."},
        {EVERY_TYPE, "getAttr a", "No attribute was specified: a"},
        {EVERY_TYPE, "getAttr \"a.t[\"", "Syntax error in the attribute \"t[\"."},
        {EVERY_TYPE, "getAttr a.nosuch", "No object matches name: a.nosuch"},
        // A range whose last value is too big leaves the first ones alone.
        {"createNode transform -n a; addAttr -ln w -at double -m -max 1 a", "setAttr \"a.w[0:2]\" 0.5 1 1.5",
         "Cannot set the attribute 'a.w[2]' past its maximum value of 1."},
        // Neither is it left unlocked.
        {"createNode transform -n a; addAttr -ln w -at double -max 1 a; setAttr -l on a.w",
         "setAttr -l off a.w 5", "Cannot set the attribute 'a.w' past its maximum value of 1."},
        {"createNode transform -n a; lockNode a", "setAttr -l on a.tx",
         "Cannot lock or unlock attributes of the locked node 'a'."},
        {"createNode transform -n a; setAttr -l on a.tx; lockNode a", "setAttr -l off a.tx 3",
         "Cannot lock or unlock attributes of the locked node 'a'."},
        {"createNode transform -n a; createNode transform -n b; lockNode b", "connectAttr -l on a.tx b.tx",
         "Cannot lock or unlock attributes of the locked node 'b'."},
    };
    ExpectRefusals(refusals);
    Begin("createNode transform -n a; lockNode a");
    EXPECT_EQ(Answer("setAttr -k off a.tx 3; getAttr a.tx"), "float 3") << "values of a locked node";
}

TEST_F(AttributeCommandsTest, AttributesInSteps) {
    const Question steps[] = {
        {"setAttr a.tx 5; getAttr a.tx", "float 5"},
        {"setAttr .tx 5; getAttr a.tx", "float 5"},
        {"setAttr a.t 1 -2 3; getAttr a.translate", "float[] 1 -2 3"},
        {"setAttr a.t -type double3 1 -2 3; getAttr a.ty", "float -2"},
        {"setAttr a.v off; getAttr a.v", "int 0"},
        {"setAttr a.ro 2; getAttr -as a.ro", "string zxy"},
        {"setAttr -l on a.tx; getAttr -l a.tx", "int 1"},
        {"setAttr -l on a.tx; setAttr a.tx 4",
         "error: The attribute 'a.translateX' is locked or connected and cannot be modified."},
        {"setAttr -l on a.t; setAttr a.tx 4",
         "error: The attribute 'a.translateX' is locked or connected and cannot be modified."},
        {"setAttr -l on a.tx; setAttr -l off a.tx 4; getAttr a.tx", "float 4"},
        {"setAttr -k 0 a.tx; getAttr -k a.tx", "int 0"},
        {"setAttr -k 0 -cb 1 a.tx; getAttr -cb a.tx", "int 1"},
        {"setAttr a.tx \"far\"", "error: A number was expected for 'a.tx', not \"far\"."},
        {"setAttr a.t 1 2", "error: The attribute 'a.translate' takes 3 values; 2 were given."},
        {"setAttr a.nothing 1", "error: No object matches name: a.nothing"},
        {"setAttr nobody.tx 1", "error: No object matches name: nobody.tx"},
        {"setAttr perspShape.imageName \"x\" -type \"string\"; getAttr perspShape.imn", "string x"},
        {"setAttr -type \"string\" perspShape.imn \"-x\" -l on; getAttr -l perspShape.imn", "int 1"},
        {"float $v[] = {4, 5, 6}; setAttr a.t $v[0] $v[1] $v[2]; getAttr a.tz", "float 6"},
        {"getAttr -type a.t", "string double3"},
        {"getAttr a.message", "error: Message attributes have no data values."},
        {"size(`getAttr a.worldMatrix[0]`)", "int 16"},
        {"addAttr -ln p -at float -min 0 -max 1 -dv 0.5 a; getAttr a.p", "float 0.5"},
        {"addAttr -ln p -at float -max 1 a; setAttr a.p 3",
         "error: Cannot set the attribute 'a.p' past its maximum value of 1."},
        {"addAttr -ln tx -at float a", "error: Found an attribute of the name 'tx' already."},
        {"addAttr -ln p -at \"spaghetti\" a",
         "error: Type specified for new attribute is unknown: spaghetti"},
        {"addAttr -at float a",
         "error: New attribute needs either a long (-ln) or short (-sn) attribute name."},
        {"addAttr -ln c -at compound -nc 2 a; addAttr -ln c1 -at long -p c a; objExists a.c", "int 0"},
        {"addAttr -ln c -at compound -nc 2 a; addAttr -ln c1 -at long -p c a;addAttr -ln c2 -dt \"string\" "
         "-p c a; attributeQuery -n a -lc c",
         "string[] c1 c2"},
        {"addAttr -ln oo -at compound -nc 2 a; addAttr -ln vv -at double2 -p oo a; addAttr -ln vX -at double "
         "-p vv a;addAttr -ln vY -at double -p vv a; addAttr -ln ww -at long -p oo a; setAttr a.oo.vv 1 2; "
         "getAttr a.vY",
         "float 2"},
        {"addAttr -ln e -at \"enum\" -en \"low=3:high\" a; setAttr a.e 4; getAttr -as a.e", "string high"},
        {"addAttr -ln p -at long a; deleteAttr a.p; objExists a.p", "int 0"},
        {"deleteAttr a.tx", "error: Cannot delete the attribute 'translateX' from 'a'."},
        {"addAttr -ln mm -at long -m a; setAttr \"a.mm[4]\" 7; getAttr -mi a.mm", "int[] 4"},
        {"attributeQuery -n a -ex nothing", "int 0"},
        {"attributeQuery -typ camera -ld focalLength", "float[] 35"},
        {"attributeQuery -n perspShape -nn focalLength", "string Focal Length"},
        {"attributeQuery -n a -lp translateX", "string[] translate"},
        // Several states at once are one answer, the logical "and"; anything else is asked alone.
        {"attributeQuery -n a -k -w -c translateX", "int 1"},
        {"attributeQuery -n a -k -h translateX", "int 0"},
        {"attributeQuery -n a -ex -k translateX", "int 1"},
        {"attributeQuery -n a -range -k translateX",
         "error: Flag '-range' cannot be asked with another one."},
        {"attributeQuery -n a -min -max translateX",
         "error: Flag '-maximum' cannot be asked with another one."},
        {"addAttr -ln p -at double -smn -1 -smx 5 a; attributeQuery -n a -softRange p", "float[] -1 5"},
        {"addAttr -ln p -at double -smx 5 a; attributeQuery -n a -sxe p", "int 1"},
        {"addAttr -ln p -at double -smx 5 a; attributeQuery -n a -softRangeExists p", "int 0"},
        {"attributeQuery -n a -listSiblings translateX", "string[] translateY translateZ"},
        {"attributeQuery -n a -ls translate", "string[] "},
        {"attributeQuery -n a -worldspace -multi worldMatrix", "int 1"},
        {"attributeQuery -n a -internal tx", "int 0"},
        {"attributeQuery -tex transform -nc translate", "int 3"},
        {"attributeQuery -typ spaghetti -ex tx", "int 0"},
        {"attributeExists(\"translateX\", \"a\") + attributeExists(\"tx\", \"|a\") * 2", "int 3"},
        {"attributeExists(\"a.tx\", \"a\") + attributeExists(\"nothing\", \"a\")", "int 1"},
        {"attributeExists(\"tx\", \"nobody\") + attributeExists(\"\", \"a\") + attributeExists(\"tx\", \"\")",
         "int 0"},
        {"attributeExists tx", "error: Wrong number of arguments on call to attributeExists."},
        // As the window that adds attributes writes it.
        {"addAttr -ln p -at \"enum\" -en \"low:high:\" a; attributeQuery -n a -le p", "string[] low:high"},
        {"addAttr -ln p -at \"enum\" -en \"\" a; attributeQuery -n a -le p", "string[] "},
        {"addAttr -ln p -at \"enum\" -en \"low::high\" a; attributeQuery -n a -le p", "string[] low::high"},
        {"addAttr -ln p -at double a; setAttr -e-keyable true a.p; attributeQuery -n a -k p", "int 0"},
        {"setAttr -e -keyable false a.tx; getAttr -k a.tx", "int 0"},
        {"setAttr -edit a.tx 5; getAttr a.tx", "float 5"},
        {"addAttr -ln p -dt \"string\" a; setAttr a.p -type \"string\" \"-e\"; getAttr a.p", "string -e"},
        {"listAttr -k a",
         "string[] visibility translateX translateY translateZ rotateX rotateY rotateZ scaleX scaleY scaleZ"},
        {"addAttr -ln p -at long a; listAttr -ud a", "string[] p"},
        {"setAttr -l on a.tx; listAttr -l a", "string[] translateX"},
        {"listAttr -sn -st translateX a", "string[] tx"},
    };
    ExpectSteps(PAIR_OF_KINDS, steps);
}

TEST_F(AttributeCommandsTest, AddedAttributesAnswerForThemselves) {
    const char* const node =
        "createNode transform -n a;"
        "addAttr -ln girth -sn gth -nn \"How big\" -at double -min 0 -smx 5 -dv 2 -k on -h off -w off a;"
        "addAttr -ln kind -at enum -en \"x=2:y\" -s off a; addAttr -ln tint -at float2 -uac a;"
        "addAttr -ln tintR -at float -p tint a; addAttr -ln tintG -at float -p tint a;"
        "addAttr -ln list -at long -m -hnv on a; addAttr -ln loose -at long -min 1 -hnv off -hsx true a";
    const Question questions[] = {
        {"addAttr -q -hnv a.girth", "int 1"},
        {"addAttr -q -hxv a.girth", "int 0"},
        {"addAttr -q -hsn a.girth", "int 0"},
        {"addAttr -q -hsx a.girth", "int 1"},
        {"addAttr -q -hnv a.list", "int 1"},
        {"addAttr -q -min a.list", "float 0"},
        {"addAttr -q -hnv a.loose", "int 0"},
        {"addAttr -q -hsx a.loose", "int 1"},
        {"addAttr -q -smx a.girth", "float 5"},
        {"addAttr -q -dv a.gth", "float 2"},
        {"addAttr -q -nn a.girth", "string How big"},
        {"addAttr -q -sn a.girth", "string gth"},
        {"addAttr -q -k a.girth", "int 1"},
        {"addAttr -q -w a.girth", "int 0"},
        {"addAttr -q -h a.girth", "int 0"},
        {"addAttr -q -r a.girth", "int 1"},
        {"addAttr -q -s a.kind", "int 0"},
        {"addAttr -q -en a.kind", "string x:y"},
        {"addAttr -q -m a.list", "int 1"},
        {"addAttr -q -m a.girth", "int 0"},
        {"addAttr -q -nc a.tint", "int 2"},
        {"addAttr -q -nc a.tintR", "int 0"},
        {"addAttr -q -p a.tintR", "string tint"},
        {"addAttr -q -p a.tint", "string "},
        {"addAttr -q -uac a.tint", "int 1"},
        {"addAttr -q -at a.tint", "string float2"},
        {"addAttr -q -ex a.tint", "int 1"},
        {"addAttr -q -ex a.tx", "int 0"},
        {"addAttr -q a.tint", "error: No flag that can be queried was given."},
        {"addAttr -q -ci a.tint", "error: No flag that can be queried was given."},
        {"addAttr -q -m a.nosuch", "error: No object matches name: a.nosuch"},
        {"listAttr -ud a", "string[] girth kind tint tintR tintG list loose"},
        {"listAttr -ud -st \"tint?\" a", "string[] tintR tintG"},
        {"listAttr -st \"tr*lateX\" -st \"translate?\" -st gth a",
         "string[] translateX translateY translateZ girth"},
        {"listAttr -st nosuch a", "string[] "},
        {"attributeQuery -n a -mne girth", "int 1"},
        {"attributeQuery -n a -le kind", "string[] x:y"},
        {"attributeQuery -n a nosuch", "error: No attribute matches name: nosuch"},
        {"attributeQuery -m tx", "error: A node (-n) or a type (-typ) has to be given."},
    };
    ExpectAnswers(node, questions);
    const Question lists[] = {
        {"listAttr -ud -m a",
         "string[] aBool aByte aChar aShort aLong aFloat aDouble anAngle aLength aTime anEnum aText texts "
         "doubles ints vectors points aMatrix many[2] many[5] two twoX twoY three threeX threeY threeZ "
         "keys[1] keys[1].keyTime keys[1].keyName limited signal"},
        {"listAttr -m a.many", "string[] many[2] many[5]"},
        {"listAttr a.keys", "string[] keys keys.keyTime keys.keyName"},
        {"listAttr -ud -a a", "string[] texts doubles ints vectors points"},
        {"listAttr -ud -s -st \"t*\" a", "string[] twoX twoY threeX threeY threeZ"},
        {"listAttr -ud -sa -st texts -st doubles -st ints -st vectors -st points -st signal a",
         "string[] texts doubles ints vectors points"},
        {"listAttr -sn -st \"translateX\" a", "string[] tx"},
    };
    ExpectAnswers((std::string(EVERY_TYPE) +
                   "; setAttr \"a.many[2]\" 1; setAttr \"a.many[5]\" 1; setAttr \"a.keys[1].keyTime\" 2")
                      .c_str(),
                  lists);
}

TEST_F(AttributeCommandsTest, CompoundsWaitForTheirChildren) {
    const Question steps[] = {
        // One that is begun anew forgets what was begun before.
        {"addAttr -ln c -at compound -nc 2 a; addAttr -ln c1 -at long -p c a; addAttr -ln c -at compound -nc "
         "1 a;"
         "addAttr -ln c1 -at double -p c a; attributeQuery -n a -lc c",
         "string[] c1"},
        {"addAttr -ln c -at compound -nc 1 a; addAttr -ln d -at compound -nc 1 a; addAttr -ln d1 -at long -p "
         "d a;"
         "addAttr -ln c1 -at long -p c a; listAttr -ud a",
         "string[] d d1 c c1"},
        {"addAttr -ln c -at compound -nc 2 a; addAttr -ln i -at compound -nc 1 -p c a;"
         "addAttr -ln c -at compound -nc 1 a; addAttr -ln j -at long -p i a",
         "error: No compound attribute 'i' is waiting for a child."},
        {"addAttr -ln c -at compound -nc 2 a; addAttr -ln x -at long -p c a; addAttr -ln x -at long -p c a",
         "error: Found an attribute of the name 'x' already."},
        {"addAttr -ln c -at compound -nc 1 a; addAttr -ln x -sn tx -at long -p c a",
         "error: Found an attribute of the name 'x' already."},
        {"addAttr -ln c -at compound -nc 1 a; delete a; createNode transform -n a; addAttr -ln x -at long -p "
         "c a",
         "error: No compound attribute 'c' is waiting for a child."},
    };
    ExpectSteps("createNode transform -n a", steps);
    const char* const node = "createNode transform -n a";
    const Refusal refusals[] = {
        {node, "addAttr -ln translate -at compound -nc 2 a",
         "Found an attribute of the name 'translate' already."},
        {node, "addAttr -ln c -at compound a", "A compound attribute needs its number of children (-nc)."},
        {node, "addAttr -ln c -at compound -nc 2000000000 a",
         "A compound attribute needs its number of children (-nc)."},
        {node, "addAttr -ln c -at long -p nosuch a",
         "No compound attribute 'nosuch' is waiting for a child."},
        {node, "addAttr -ln c -at long -nc 2 a",
         "The flag '-numberOfChildren' is for compound attributes only."},
        {node, "addAttr -ln c -dt string -dv 2 a",
         "The flag '-defaultValue' is for numeric attributes only."},
        {node, "addAttr -ln c -dt string -min 2 a", "The flag '-minValue' is for numeric attributes only."},
        {node, "addAttr -ln c -at long -en \"a:b\" a", "The flag '-enumName' is for enum attributes only."},
        {node, "addAttr -ln c -dt string -dt doubleArray a", "An attribute takes data of one type only."},
        {node, "addAttr -ln \"1c\" -at long a", "The attribute name contains invalid characters: 1c"},
        {"createNode transform -n a; createNode transform -n b; addAttr -ln x -at long b",
         "addAttr -ln x -at long a b", "Found an attribute of the name 'x' already."},
    };
    ExpectRefusals(refusals);
}

TEST_F(AttributeCommandsTest, ConnectionsInSteps) {
    const Question steps[] = {
        {"connectAttr a.tx b.ty; setAttr a.tx 4; getAttr b.ty", "float 4"},
        {"connectAttr a.t b.t; setAttr a.ty 3; getAttr b.ty", "float 3"},
        {"connectAttr a.tx b.ty; setAttr b.ty 1",
         "error: The attribute 'b.translateY' is locked or connected and cannot be modified."},
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
        {"addAttr -ln mm -at double -m b; connectAttr -na a.tx b.mm; connectAttr -na a.ty b.mm;isConnected "
         "a.ty \"b.mm[1]\"",
         "int 1"},
        {"connectAttr a.tx b.nothing", "error: No object matches name: b.nothing"},
        {"disconnectAttr a.tx b.tx",
         "error: There is no connection from 'a.translateX' to 'b.translateX' to disconnect."},
        {"addAttr -ln mm -at double -m b; connectAttr a.tx \"b.mm[3]\"; connectAttr a.ty \"b.mm[5]\";"
         "disconnectAttr -na a.ty b.mm; listConnections -p 1 b",
         "string[] a.translateX"},
        {"addAttr -ln mm -at double -m b; connectAttr a.tx \"b.mm[3]\"; disconnectAttr -na a.ty b.mm",
         "error: There is no connection from 'a.translateY' to 'b.mm' to disconnect."},
        {"connectAttr -l on a.tx b.tx; connectionInfo -il b.tx", "int 1"},
        {"connectionInfo a.tx", "error: One of -id, -is, -sfd, -dfs and -il has to be given."},
    };
    ExpectSteps("createNode transform -n a; createNode transform -n b; createNode locator -n s -p b;", steps);
}

TEST_F(AttributeCommandsTest, PlugsAreConnected) {
    const char* const pair = "createNode transform -n a; createNode transform -n b;"
                             "createNode transform -n c; select -cl";
    const Edit edits[] = {
        {pair, "connectAttr a.tx b.ty", "string Connected a.translateX to b.translateY.",
         "listConnections -p on b", "string[] a.translateX"},
        {pair, "connectAttr -l on a.tx b.tx", "string Connected a.translateX to b.translateX.",
         "getAttr -l b.tx", "int 1"},
        {"createNode transform -n a; createNode transform -n b; createNode transform -n c;"
         "connectAttr a.tx b.tx",
         "connectAttr -f c.tx b.tx", "string Connected c.translateX to b.translateX.", "listConnections b",
         "string[] c"},
        {"createNode transform -n a; createNode transform -n b; connectAttr a.tx b.tx",
         "disconnectAttr a.tx b.tx", "string Disconnect a.translateX from b.translateX.",
         "isConnected a.tx b.tx", "int 0"},
    };
    ExpectEdits(edits);
    const Refusal refusals[] = {
        {pair, "connectAttr a.tx a.tx", "Cannot connect 'a.translateX' to itself."},
        {"createNode transform -n a; createNode transform -n b; setAttr -l on b.tx", "connectAttr a.tx b.tx",
         "The destination attribute 'b.translateX' is locked."},
        {pair, "disconnectAttr a.tx b.tx",
         "There is no connection from 'a.translateX' to 'b.translateX' to disconnect."},
    };
    ExpectRefusals(refusals);
}

} // namespace
