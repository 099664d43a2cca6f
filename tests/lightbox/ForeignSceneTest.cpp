// Scenes as other programs write them: everything in them is shown as far as it means something here, said
// once where it does not, and written back.

#include "SceneFileFixture.h"
#include "scene/CameraFilm.h"
#include "scene/DagNode.h"
#include "scene/Material.h"
#include "scene/MeshNode.h"
#include "scene/MeshTessellation.h"
#include "scene/Scene.h"
#include "scene/ScopeExit.h"

#include <QDir>

#include <Imath/ImathMatrix.h>
#include <gmock/gmock.h>
#include <regex>

using namespace lightbox;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

class ForeignSceneTest : public SceneFileFixture {
protected:
    ForeignSceneTest() {
        const QDir data(QStringLiteral(VELLIX_SOURCE_FOLDER "/tests/data/foreign"));
        for (const QString& name : data.entryList({"*.ma"}, QDir::Files)) {
            QFile::copy(data.filePath(name), QString::fromStdString(Path(name.toStdString())));
        }
    }

    double Number(const std::string& plug) { return host_.scene().FindPlug(plug).Number(); }
    Imath::V3d WorldPosition(const char* name) {
        return static_cast<DagNode&>(*host_.scene().Find(name)).WorldMatrix().translation();
    }
    const DagNode& Dag(const char* name) { return static_cast<const DagNode&>(*host_.scene().Find(name)); }

    /// The lines of the log without the place in the file that each begins with.
    std::vector<std::string> LogLines() {
        std::vector<std::string> lines;
        for (const std::string& message : log_) {
            lines.push_back(std::regex_replace(message, std::regex("file: [^ ]* (line [0-9.]+: )?"), ""));
        }
        log_.clear();
        return lines;
    }

    static std::string Squeezed(std::string text) {
        text = std::regex_replace(text, std::regex("[ \t\n]+"), " ");
        return std::regex_replace(text, std::regex(" ;"), ";");
    }

    /// Saves as both formats and opens again, until the text has come back from each.
    void ExpectSteady(const std::string& first) {
        Save("1.ma");
        const std::string text = ReadScene("1.ma");
        EXPECT_EQ(ErrorOfOpening("1.ma"), "none") << first;
        Save("2.ma");
        EXPECT_EQ(ReadScene("2.ma"), text) << first;
        Save("3.lbx");
        EXPECT_EQ(ErrorOfOpening("3.lbx"), "none") << first;
        Save("4.ma");
        EXPECT_EQ(ReadScene("4.ma"), text) << first;
    }
};

/// What of the room has no meaning here.
const char* const KEPT_OF_ROOM[] = {
    R"(requires -nodeType "glossSurface" -nodeType "glossOptions" -dataType "glossWeights" "lightworks" "4.0.2";)",
    R"(requires "stereoCamera" "10.0";)",
    R"(setAttr ".ai_translator" -type "string" "perspective";)",
    R"(createNode glossPlate -n "glossPlateShape1" -p "shotOverShape";)",
    R"(setAttr ".imn" -type "string" "plates/sc010.####.exr"; setAttr ".cov" -type "short2" 1920 1080;)",
    R"(setAttr ".iog[0].og[1].gcl" -type "componentList" 2 "f[4]" "f[5]";)",
    R"(setAttr ".clst[0].clsp[0:3]" 1 0 0 1 0 1 0 1 0 0 1 1 1 1 1 1;)",
    R"(f 4 0 5 -2 -5 mu 0 4 0 1 3 2 mu 1 4 0 1 2 3 mc 0 4 0 1 2 3 f 4 1 7)",
    R"(setAttr ".cd" -type "dataPolyComponent" Index_Data Edge 2 0 2 3 1.5;)",
    R"(setAttr ".glossSubdiv" 2;)",
    R"(createNode furGroom -n "carpetFur" -p "bench";)",
    R"(setAttr -s 3 ".guides[0:2]" 0 1 2;)",
    R"(setAttr ".w" -type "glossWeights" 2 "base" 0.8 "coat" 0.2;)",
    R"(setAttr ".ftn" -type "string" "C:\\textures\\wood \"dark\".tif";)",
    R"(select -ne :hardwareRenderingGlobals; setAttr ".otfna" -type "stringArray" 2 "NURBS Curves" "Polygons";)",
    R"(select -ne :hardwareRenderGlobals; setAttr ".ctrs" 256; setAttr ".btrs" 512;)",
    R"(connectAttr "groupId1.id" "benchShape.iog.og[0].gid";)",
    R"(connectAttr "benchShape.iog.og[0]" "varnishSG.dsm" -na;)",
    R"(connectAttr "woodMap.oc" "varnish.c";)",
    R"(connectAttr "set.wear" "varnish.wear";)",
    R"(connectAttr "defaultRenderLayer.msg" ":defaultRenderingList1.r" -na;)",
    R"(relationship "link" ":lightLinker1" "varnishSG.message" ":defaultLightSet.message";)",
    R"(relationship "shadowLink" ":lightLinker1" "varnishSG.message" ":defaultLightSet.message";)",
    R"(dataStructure -fmt "raw" -as "name=glossStats:float=min:float=max";)"};

} // namespace

TEST_F(ForeignSceneTest, ARoomWithMeshesCamerasAndUnknownThings) {
    ASSERT_EQ(ErrorOfOpening("room.ma"), "none");
    EXPECT_EQ(messages_.size(), 1U) << "a summary";
    const std::string summary = Output();
    for (const char* part : {"the plug-ins lightworks, stereoCamera and fur", "the node types glossPlate, ",
                             " more", " kinds of attributes", "The log names each"}) {
        EXPECT_THAT(summary, HasSubstr(part));
    }
    std::vector<std::string> messages = LogLines();
    messages.pop_back();
    for (const char* unknown :
         {"\"lightworks\"", "\"stereoCamera\"", "\"fur\"", "ai_translator", "'glossPlate'", "glossSubdiv",
          "'furGroom'", "'lightLinker'", "'displayLayer'", "'glossSurface'", "'file'", "'place2dTexture'",
          "'groupId'", ":hardwareRenderingGlobals", ":hardwareRenderGlobals", "'relationship'",
          "'dataStructure'", ":defaultShaderList1"}) {
        EXPECT_EQ(
            std::count_if(messages.begin(), messages.end(),
                          [&](const std::string& line) { return line.find(unknown) != std::string::npos; }),
            1)
            << unknown;
    }
    // The attributes of a node whose type is unknown go without saying, and so do the parts of meshes.
    for (const std::string& line : messages) {
        for (const char* silent : {".ftn", ".guides", ".iog", ".clst", ".cd;", "hinge", "cap", "playback"}) {
            EXPECT_THAT(line, Not(HasSubstr(silent)));
        }
    }

    EXPECT_EQ(Number("shotFillShape.filmFit"), 0.0);
    EXPECT_EQ(Number("shotWideShape.filmFit"), 1.0);
    EXPECT_NEAR(CameraFilm(Dag("shotWideShape")).Aspect(), 2.0 * 0.825 / 0.446, 1e-9);
    EXPECT_EQ(Number("shotTallShape.horizontalPan"), 0.2);
    EXPECT_EQ(Number("shotTallShape.verticalFilmOffset"), -0.05);
    EXPECT_EQ(Number("shotOverShape.overscan"), 1.1);
    EXPECT_EQ(Number("topShape.overscan"), 1.0);
    EXPECT_EQ(Number("defaultResolution.width"), 1920.0);
    EXPECT_EQ(Typed("playbackOptions -q -min"), "float 1001");
    EXPECT_EQ(Typed("currentTime -q"), "float 1001");

    const auto mesh = MeshNode::Evaluate(*host_.scene().Find("benchShape"));
    ASSERT_TRUE(mesh);
    EXPECT_EQ(mesh->FaceCount(), 6U);
    EXPECT_EQ(mesh->uvSets.size(), 2U);
    EXPECT_EQ(mesh->vertices[2].y, 0.75f) << "a tweak";
    EXPECT_EQ(mesh->Tessellation().Triangles().size(), 36U);
    EXPECT_EQ(mesh->edges[4].smooth, 1);
    EXPECT_EQ(mesh->edges[0].smooth, 0);
    // The joint turns what hangs on it.
    EXPECT_NEAR(Dag("door").WorldMatrix()[0][1], 1.0, 1e-9);
    EXPECT_NEAR(WorldPosition("door").y, 1.0, 1e-9);

    Save("saved.ma");
    const std::string saved = Squeezed(ReadScene("saved.ma"));
    for (const char* kept : KEPT_OF_ROOM) {
        EXPECT_THAT(saved, HasSubstr(kept));
    }
    ExpectSteady("room.ma");
}

TEST_F(ForeignSceneTest, UnitsAreConvertedAndCurvesComeWithThem) {
    ASSERT_EQ(ErrorOfOpening("metres.ma"), "none");
    EXPECT_EQ(Typed("currentUnit -q -t"), "string pal");
    EXPECT_EQ(Number("walker.rotatePivotTranslateY"), 1.0);
    EXPECT_EQ(Number("rig:outer:toe.translateZ"), 20.0);
    EXPECT_EQ(Typed("namespace -exists \"rig:outer\""), "int 1");
    EXPECT_EQ(MeshNode::Evaluate(*host_.scene().Find("rig:toeShape"))->vertices[1].x, 10.0f);
    const std::pair<double, double> steps[] = {{1, 0.0}, {13, 50.0}, {25, 100.0}, {37, 150.0}};
    for (const auto& [frame, x] : steps) {
        Run("currentTime " + std::to_string(frame));
        EXPECT_NEAR(Number("walker.translateX"), x, 1e-9) << frame;
    }
    // Linear before the first key, and the offset of the cycle behind the last one.
    Run("currentTime 49");
    EXPECT_NEAR(Number("walker.translateX"), 200.0, 1e-6);
    Run("currentTime 25");
    EXPECT_NEAR(Number("walker.rotateY"), 180.0, 1e-9);
    EXPECT_NEAR(Number("walker.translateY"), 200.0, 1e-9);
    EXPECT_EQ(Number("walker.visibility"), 0.0);
    Run("currentTime 19.5");
    EXPECT_EQ(Number("walker.visibility"), 1.0) << "stepped";
    const std::tuple<double, double, const char*> betweenKeys[] = {
        {2.5, 0.0, "stepped"}, {5.5, 0.15, "linear"}, {20.5, 0.2, "stepped to the next"}};
    for (const auto& [frame, radians, how] : betweenKeys) {
        Run("currentTime " + std::to_string(frame));
        EXPECT_NEAR(Number("walker.rotateY"), radians * 180.0 / M_PI, 1e-6) << how;
    }
    EXPECT_EQ(Typed("keyTangent -q -t 22 -itt walker_rotateY"), "string[] flat");
    ExpectSteady("metres.ma");
    Run("currentTime 25");
    EXPECT_NEAR(Number("walker.translateX"), 100.0, 1e-9) << "converted once";
    EXPECT_NEAR(Number("walker.rotateY"), 180.0, 1e-9);
}

TEST_F(ForeignSceneTest, AShotThatRefersToOtherFiles) {
    ASSERT_EQ(ErrorOfOpening("shot.ma"), "none");
    EXPECT_THAT(Output(), HasSubstr("// Warning: file: " + Path("shot.ma") +
                                    " line 8: The referenced file is "
                                    "missing: " +
                                    Path("not_delivered.ma")));
    EXPECT_EQ(Typed("objExists lampA:lampShape"), "int 1") << "loaded, as the head of the file says";
    EXPECT_EQ(Typed("objExists lampB:lampShape"), "int 0") << "left unloaded";
    EXPECT_EQ(Number("lampA:lamp.translateX"), 4.0) << "an edit of the reference";
    Run("currentTime 31");
    EXPECT_NEAR(Number("lampA:lamp.translateZ"), 5.0, 1e-9);
    Run("currentTime 1");
    Save("saved.ma");
    const std::string saved = ReadScene("saved.ma");
    for (const char* kept :
         {"file -r -ns \"lampA\" -dr 1 -rfn \"lampARN\" -op \"v=0;\" -typ \"mayaAscii\" \"prop.ma\";",
          "file -rdi 1 -ns \"lampB\" -dr 1 -rfn \"lampBRN\" -op \"v=0;\" -typ \"mayaAscii\" \"prop.ma\";",
          "-rfn \"goneRN\" -typ \"mayaAscii\" \"not_delivered.ma\";",
          "2 \"|gone:thing\" \"visibility\" \" 0\"", "connectAttr \"shotCam.tx\" \"lampA:bulb.power\";"}) {
        EXPECT_THAT(saved, HasSubstr(kept));
    }
    ExpectSteady("shot.ma");
    // From another folder the files are named by their whole paths.
    QDir(folder_.path()).mkdir("elsewhere");
    Save("elsewhere/shot.ma");
    EXPECT_THAT(Read("elsewhere/shot.ma"), HasSubstr("\"" + Path("prop.ma") + "\""));
}

TEST_F(ForeignSceneTest, LaterSlicesTakeTheTypeOfTheFirst) {
    ASSERT_EQ(ErrorOfOpening("grid.ma"), "none") << Output();
    const auto mesh = MeshNode::Evaluate(*host_.scene().Find("gridShape"));
    EXPECT_EQ(mesh->FaceCount(), 620U);
    EXPECT_EQ(mesh->vertices.size(), 672U);
    EXPECT_EQ(Number("gridShape.displaySmoothMesh"), 2.0);
    Save("saved.ma");
    const std::string saved = ReadScene("saved.ma");
    EXPECT_THAT(saved, HasSubstr("setAttr \".dsm\" 2;"));
    EXPECT_THAT(saved, HasSubstr("\tsetAttr \".thread[2:2]\" c 3;\n"));
    ExpectSteady("grid.ma");
}

TEST_F(ForeignSceneTest, AttributesComeBackWithEveryFlagOfTheirs) {
    ASSERT_EQ(ErrorOfOpening("attributes.ma"), "none") << Output();
    EXPECT_EQ(messages_.size(), 2U) << "a summary, and the numbers";
    EXPECT_THAT(Output(), HasSubstr("infinite or not a number"));
    EXPECT_EQ(Typed("getAttr rig.tintG") + Typed("getAttr rig.offsetBy"), "float 0.5float[] 1 2 3");
    EXPECT_EQ(Typed("getAttr part.t") + Typed("getAttr part.sy"), "float[] 0 2 0float 0");
    EXPECT_EQ(Typed("isConnected part.msg \"rig.parts[0]\""), "int 1");
    EXPECT_EQ(Typed("lockNode -q -l part rig"), "int[] 1 0");
    EXPECT_EQ(Typed("objExists sculptor1"), "int 0") << "what it would have been is not known";
    Save("saved.ma");
    const std::string saved = Squeezed(ReadScene("saved.ma"));
    for (
        const char* kept :
        {R"(addAttr -ci true -is true -dcb 2 -k on -sn "mode" -ln "mode" -min 0 -max 2 -en "ik:fk:both" -at "enum";)",
         R"(addAttr -ci true -bt "RIG1" -ct "controls" -ct "export" -sn "weight" -ln "weight" -dv 1 -at "double";)",
         R"(addAttr -ci false -uaf -sn "map" -ln "map" -dt "string";)",
         R"(addAttr -ci true -fp true -ws true -s off -sn "gone" -ln "gone" -at "bool";)",
         R"(addAttr -ci true -pxy "rig.weight" -uap -sn "wgtProxy" -ln "weightProxy" -at "double";)",
         R"(addAttr -ci true -sn "off" -ln "offsetBy" -dt "double3"; )",
         R"(addAttr -ci true -uac -sn "tint" -ln "tint" -dt "float3"; )",
         R"(addAttr -ci true -m -im false -sn "parts" -ln "parts" -at "message";)",
         R"(addAttr -ci true -sn "bind" -ln "bindMatrix" -at "fltMatrix";)",
         R"(addAttr -ci true -sn "spec" -ln "spec" -at "spectrum" -nc 3; addAttr -ci true -sn "specR")",
         R"(addAttr -ci true -tomorrow 4 -sn "later" -ln "later" -at "double";)",
         R"(setAttr ".off" -type "double3" 1 2 3;)", R"(setAttr -k on ".later" 7; lockNode -l 0 -lu 1;)",
         R"(setAttr ".future" -type "double3" nan inf 2; lockNode -l 1 -lu 1;)",
         R"(createNode sculptor -n "sculptor1" -tomorrow 3; rename -uid)", R"(setAttr ".depth" 2;)",
         R"(connectAttr "part.msg" "rig.parts" -na;)"}) {
        EXPECT_THAT(saved, HasSubstr(kept));
    }
    EXPECT_LT(saved.find("-tomorrow 4"), saved.find("setAttr \".off\""))
        << "values come after the attributes, known or not";
    ExpectSteady("attributes.ma");
}

TEST_F(ForeignSceneTest, AFileStaysInItsUnits) {
    ASSERT_EQ(ErrorOfOpening("inches.ma"), "none") << Output();
    EXPECT_NEAR(Number("desk.translateY"), 28.5 * 2.54, 1e-9);
    EXPECT_NEAR(Number("desk.rotateY"), 0.3 * 180.0 / M_PI, 1e-9);
    Save("saved.ma");
    const std::string saved = Squeezed(ReadScene("saved.ma"));
    for (const char* kept :
         {"currentUnit -l inch -a radian -t film;", "setAttr \".t\" -type \"double3\" 1.1 28.5 -0.3;",
          "setAttr \".r\" -type \"double3\" 0 0.3 0;", "setAttr \".future\" 12.5;",
          "setAttr -s 3 \".vt[0:2]\" 0.1 0 0 0.7 0 0 0.7 0 1.3;", "setAttr \".ktv[0]\" 1 1.1;",
          "setAttr \".length\" 3.25;"}) {
        EXPECT_THAT(saved, HasSubstr(kept));
    }
    ExpectSteady("inches.ma");
    Run("setAttr desk.tz 25.4");
    EXPECT_THAT(Squeezed(SceneText()), HasSubstr("\".t\" -type \"double3\" 1.1 28.5 10;"));
    // In a scene of another unit, what means nothing there keeps the unit that it was read in.
    Run("file -f -new; createNode transform -n own; setAttr own.tx 5");
    EXPECT_EQ(ErrorOf("file -i " + Quoted("inches.ma")), "none");
    const std::string imported = Squeezed(SceneText());
    EXPECT_THAT(imported, HasSubstr("currentUnit -l inch -a radian; setAttr \".future\" 12.5; "
                                    "currentUnit -l centimeter -a degree;"));
    EXPECT_THAT(imported, HasSubstr("-type \"double3\" 2.794"));
    Save("imported.ma");
    ExpectSteady("imported.ma");
    EXPECT_EQ(Squeezed(SceneText()), imported);
}

TEST_F(ForeignSceneTest, ReferencesAreNamedAsTheirFileNamesThem) {
    qputenv("VELLIX_TEST_SHOW", QFile::encodeName(folder_.path()));
    const ScopeExit unset([] { qunsetenv("VELLIX_TEST_SHOW"); });
    ASSERT_EQ(ErrorOfOpening("shelf.ma"), "none") << Output();
    const std::string messages = Output();
    EXPECT_THAT(messages, HasSubstr("missing: P:/show/props/vase.mb."));
    EXPECT_THAT(messages, HasSubstr("missing: $NO_SUCH_SHOW/rug.ma."));
    EXPECT_THAT(messages, Not(HasSubstr("Error")));
    EXPECT_EQ(Typed("objExists lamp:lampShape") + Typed("objExists lamp1:lampShape"), "int 1int 1");
    Save("saved.ma");
    const std::string saved = Squeezed(ReadScene("saved.ma"));
    for (
        const char* kept :
        {R"(-rfn "lampRN" -op "v=0;" -typ "mayaAscii" "$VELLIX_TEST_SHOW/prop.ma";)",
         R"(-rfn "lampRN1" -op "v=0;" -typ "mayaAscii" "$VELLIX_TEST_SHOW/prop.ma{1}";)",
         R"(-rfn "vaseRN" -typ "mayaBinary" "P:/show/props/vase.mb";)",
         R"(-rfn "rugRN" -shd "displayLayers" -shd "shadingNetworks" -typ "mayaAscii" "$NO_SUCH_SHOW/rug.ma";)",
         R"(file -rdi 2 -ns "bulb" -dr 1 -rfn "lamp:bulbRN" -typ "mayaAscii" "bulb.ma"; file -r -ns)",
         R"(file -r -rpr "old" -dr 1 -rfn "oldRN" -typ "mayaAscii" "prop.ma";)",
         R"(2 "|vase:vase" "translate" " -type \"double3\" 1 2 3";)",
         R"(select -ne rug:rug; setAttr ".ty" 0.5; lockNode -l 1;)",
         R"(disconnectAttr "rug:rug.tx" "rug:fringe.tx";)",
         R"(parent -s -nc -r -add "|rug:rug|rug:rugShape" "rug:fringe";)"}) {
        EXPECT_THAT(saved, HasSubstr(kept));
    }
    ExpectSteady("shelf.ma");
}

TEST_F(ForeignSceneTest, AValueThatTheFileGivesIsWrittenEvenIfItIsTheDefault) {
    ASSERT_EQ(ErrorOfOpening("primitives.ma"), "none") << Output();
    EXPECT_EQ(Number("polyCylinder1.createUVs"), 3.0);
    Save("saved.ma");
    const std::string saved = Squeezed(ReadScene("saved.ma"));
    for (const char* kept : {"setAttr \".s\" -type \"double3\" 1 1 1;", "setAttr \".lev\" 2;",
                             "setAttr \".r\" 1; setAttr \".sc\" 1; setAttr \".cuv\" 3;",
                             "setAttr \".cuv\" 2;", "setAttr \".cuv\" 4;"}) {
        EXPECT_THAT(saved, HasSubstr(kept));
    }
    EXPECT_THAT(saved, Not(HasSubstr("setAttr \".h\"")));
    ExpectSteady("primitives.ma");
    // The published defaults, which a file leaves out.
    Run("createNode polyCylinder -n c; createNode polyCone -n k; createNode polyPlane -n p");
    EXPECT_EQ(Typed("getAttr c.cuv") + Typed("getAttr k.cuv") + Typed("getAttr p.cuv"), "int 2int 2int 1");
}

TEST_F(ForeignSceneTest, CodesetsScriptNodesAndLicencesComeBack) {
    ASSERT_EQ(ErrorOfOpening("shiftjis.ma"), "none") << Output();
    EXPECT_EQ(Typed("getAttr kage.memo"), "string 鉛筆で描いた表。ソ");
    EXPECT_EQ(Typed("playbackOptions -q -aet"), "float 48");
    Run("playbackOptions -aet 60");
    Save("saved.ma");
    const std::string saved = Squeezed(ReadScene("saved.ma"));
    for (
        const char* kept :
        {"//Codeset: UTF-8 // Licensed for classroom use only ", "\"鉛筆で描いた表。ソ\";",
         R"(requires -nodeType "glossSurface" "lightworks" "4.0.2";)",
         R"(requires -nodeType "glossOptions" "lightworks" "4.0.2";)",
         R"(requires -dataType "glossWeights" "lightworks" "4.0.2";)", R"(fileInfo "license" "student";)",
         R"(fileInfo "UUID" "4D5A2C0B-11E9-44C7-A3A4-000000000051";)", R"(setAttr ".ktv[0]" 12 4.5;)",
         R"(createNode script -n "sceneConfigurationScriptNode"; rename -uid "0C3D1F00-0000-2A2B-5C00-000000000054";)",
         R"(setAttr ".b" -type "string" "playbackOptions -min 1 -max 24 -ast 1 -aet 60 ";)",
         R"(select -ne :hardwareRenderGlobals; setAttr ".ctrs" 256; lockNode -l 0 -lu 1;)",
         R"(connectAttr "sceneConfigurationScriptNode.msg" "hub.scripts" -na;)"}) {
        EXPECT_THAT(saved, HasSubstr(kept));
    }
    EXPECT_EQ(saved.find("sceneConfigurationScriptNode\";"), saved.rfind("sceneConfigurationScriptNode\";"));
    ExpectSteady("shiftjis.ma");
    // A file that is not what its head says is not made worse.
    Write("wrong.ma", "//Maya ASCII 2018 scene\n//Codeset: 932\ncreateNode transform -n \"a\";\n"
                      "\taddAttr -ln \"memo\" -dt \"string\";\n"
                      "\tsetAttr \".memo\" -type \"string\" \"caf\xc3\xa9 \x81 e\";\n// End\n");
    EXPECT_EQ(ErrorOfOpening("wrong.ma"), "none");
    EXPECT_THAT(Output(), HasSubstr("not in its codeset, 932"));
    EXPECT_THAT(SceneText(), HasSubstr("caf\xc3\xa9 \x81 e"));
}

TEST_F(ForeignSceneTest, ARigWithNumbersArraysAndFilesOfAllKinds) {
    ASSERT_EQ(ErrorOfOpening("rig.ma"), "none") << Output();
    const std::string messages = Output();
    EXPECT_THAT(messages, HasSubstr("no time unit '119.88fps' here"));
    EXPECT_THAT(messages,
                HasSubstr("on another computer and was not opened: //no.such.server.invalid/show/far.ma. "
                          "To read it, run: file -loadReference \"farRN\"."));
    EXPECT_THAT(messages, HasSubstr("was not opened: \\\\no.such.server.invalid\\show\\away.ma."));
    EXPECT_THAT(messages, Not(HasSubstr("do not belong in a scene")));
    EXPECT_EQ(Typed("getAttr rig.upper") + Typed("getAttr rig.lower"), "float 7float -7");
    EXPECT_EQ(Typed("getAttr rig.point") + Typed("getAttr rig.till"), "float[] 1 2 3float 24");
    EXPECT_EQ(Typed("listConnections \":initialShadingGroup.ss\""), "string[] skin");
    EXPECT_EQ(Typed("keyframe -q -vc driven"), "float[] 0.5");
    Save("saved.ma");
    const std::string saved = Squeezed(ReadScene("saved.ma"));
    for (const char* kept :
         {R"("mayaAscii" "//no.such.server.invalid/show/far.ma";)",
          R"("mayaAscii" "\\\\no.such.server.invalid\\show\\away.ma";)",
          R"(requires -nodeType "notebook" -dataType "notes" "notes" "1.1";)",
          R"(requires "notes" "3.0 beta";)",
          R"(applyMetadata -fmt "raw" -v "channel\nname table\nendChannel\nendAssociations\n" -scn;)",
          R"(addAttr -ci true -max inf -sn "upper" -ln "upper" -at "double";)",
          R"(addAttr -ci true -dv nan -min -inf -max inf -sn "lower" -ln "lower" -at "double";)",
          R"(addAttr -dcb inf -ci true -sn "odd" -ln "odd" -at "double";)",
          R"(setAttr ".odd" 3;)",
          R"(-sn "point" -ln "point" -at "double3" -nc 3;)",
          R"(setAttr ".point" -type "double3" 1 2 3;)",
          R"(setAttr ".from" 12; setAttr ".till" 24;)",
          R"(setAttr ".qx" 0.5;)",
          R"(setAttr -s 2 ".part[0].weight[0:1]" 0.1 0.2; setAttr -s 2 ".part[4].weight[0:1]" 0.3 0.4;)",
          R"(addAttr -ci true -sn "v" -ln "ownVisibility" -at "bool";)",
          R"(setAttr -s 2 ".ktv[0:1]" 1 10 24 20;)",
          R"(setAttr ".ktv[0]" 1 0.5;)",
          R"(connectAttr "rig.msg" "skinSet.ub[0]";)",
          R"(connectAttr "rig.part[4].weight[1]" "skinSet.gone";)",
          R"(connectAttr "skin.oc" ":initialShadingGroup.ss";)",
          R"(parent "rig" "nobody";)"}) {
        EXPECT_THAT(saved, HasSubstr(kept));
    }
    // The settings of default nodes in a referenced file stay in that file.
    EXPECT_THAT(saved, HasSubstr("select -ne :defaultTextureList1; setAttr -s 3 \".tx\";"));
    EXPECT_THAT(saved, Not(HasSubstr("select -ne :hardwareRenderingGlobals;")));
    ExpectSteady("rig.ma");
}
