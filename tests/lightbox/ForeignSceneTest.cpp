// Scenes as other programs write them: everything in them is shown as far as it means something here, said
// once where it does not, and written back.

#include "SceneFileFixture.h"
#include "scene/CameraFilm.h"
#include "scene/DagNode.h"
#include "scene/Material.h"
#include "scene/MeshNode.h"
#include "scene/MeshTessellation.h"
#include "scene/Scene.h"

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

    /// The messages without the place in the file that each begins with.
    std::vector<std::string> Messages() {
        std::vector<std::string> lines;
        for (const std::string& message : messages_) {
            lines.push_back(std::regex_replace(message, std::regex("file: [^ ]* (line [0-9.]+: )?"), ""));
        }
        messages_.clear();
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
    const std::vector<std::string> messages = Messages();
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
    const std::string messages = Output();
    EXPECT_THAT(messages, HasSubstr("not_delivered.ma"));
    EXPECT_EQ(messages.find("'glossSurface'"), messages.rfind("'glossSurface'"));
    EXPECT_EQ(Typed("objExists lampA:lampShape"), "int 1") << "loaded, as the head of the file says";
    EXPECT_EQ(Typed("objExists lampB:lampShape"), "int 0") << "left unloaded";
    EXPECT_EQ(Number("lampA:lamp.translateX"), 4.0) << "an edit of the reference";
    Run("currentTime 31");
    EXPECT_NEAR(Number("lampA:lamp.translateZ"), 5.0, 1e-9);
    Run("currentTime 1");
    Save("saved.ma");
    const std::string saved = ReadScene("saved.ma");
    for (const char* kept :
         {"file -r -ns \"lampA\" -dr 0 -rfn \"lampARN\" -op \"v=0;\" -typ \"mayaAscii\" \"prop.ma\";",
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
