#include "SceneFileFixture.h"
#include "scene/MeshNode.h"
#include "scene/Scene.h"

#include <gmock/gmock.h>

using namespace lightbox;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

/// A mesh as other programs write it: two faces with a hole, colours, tweaks, creases and a second set of
/// texture coordinates, in lines and ranges of their own.
const char* const FOREIGN_MESH = R"(//Maya ASCII 2018 scene
requires maya "2018";
currentUnit -l meter -a degree -t film;
createNode transform -n "leaf";
createNode mesh -n "leafShape" -p "leaf";
	setAttr -k off ".v";
	setAttr -s 2 ".iog[0].og";
	setAttr ".vir" yes;
	setAttr ".uvst[0].uvsn" -type "string" "map1";
	setAttr -s 6 ".uvst[0].uvsp[0:5]" -type "float2" 0 0 1 0 1
		 1 0 1 2 0 2 1;
	setAttr ".uvst[1].uvsn" -type "string" "light \"map\"";
	setAttr ".uvst[1].uvsp[0]" -type "float2" 0.1 0.30000001;
	setAttr ".cuvs" -type "string" "map1";
	setAttr ".dcc" -type "string" "Ambient+Diffuse";
	setAttr ".covm[0]"  0 1 1;
	setAttr ".cdvm[0]"  0 1 1;
	setAttr ".clst[0].clsn" -type "string" "colorSet1";
	setAttr -s 2 ".pt";
	setAttr ".pt[2]" -type "float3" 0 0 0.0049999999 ;
	setAttr ".pt[5].px" -0.25;
	setAttr -s 6 ".vt[0:3]"  0 0 0 0.01 0 0 0.01
		 0.01 0 0 0.01 0;
	setAttr ".vt[4]" 0.02 0 0;
	setAttr ".vt[5]" 0.02 0.01 -1.5e-08;
	setAttr -s 7 ".ed[0:6]"  0 1 0 1 2 1 2 3 0 3 0 0 1 4 0 4 5 0 5 2 0;
	setAttr -s 2 -ch 8 ".fc[0:1]" -type "polyFaces" 
		f 4 0 1 2 3
		h 3 4 5 6
		mu 0 4 0 1 2 3
		mu 1 1 0
		mc 0 4 -1 2 3 4
		f 4 4 5 6 -2
		mu 0 4 1 4 5 2;
	setAttr ".cd" -type "dataPolyComponent" Index_Data Edge 1 
		2 3.5 ;
	setAttr ".cvd" -type "dataPolyComponent" Index_Data Vertex 0 ;
	setAttr ".pd[0]" -type "dataPolyComponent" Index_Data UV 0 ;
	setAttr ".hfd" -type "dataPolyComponent" Index_Data Face 0 ;
connectAttr "leafShape.iog" ":initialShadingGroup.dsm" -na;
// End of leaf.ma
)";

} // namespace

class MeshFileTest : public SceneFileFixture {
protected:
    std::shared_ptr<const MeshData> Mesh(const char* shape) {
        return MeshNode::Evaluate(*host_.scene().Find(shape));
    }
    /// What a file says about a mesh, when its block holds these statements.
    std::string OpenMesh(const std::string& statements) {
        Write("bad.ma", "//Maya ASCII 2018 scene\nrequires maya \"2018\";\ncreateNode transform -n \"t\";\n"
                        "createNode mesh -n \"tShape\" -p \"t\";\n" +
                            statements + "createNode transform -n \"after\";\n// End of bad.ma\n");
        ErrorOfOpening("bad.ma");
        return Output();
    }
};

TEST_F(MeshFileTest, MeshesOfOtherProgramsAreReadAndWrittenWhole) {
    Write("leaf.ma", FOREIGN_MESH);
    EXPECT_EQ(ErrorOfOpening("leaf.ma"), "none");
    const std::string messages = Output();
    for (const char* known : {"vt", "ed", "fc", "uvst", "cd", "clst", "covm", "cuvs", "hfd"}) {
        EXPECT_THAT(messages, Not(HasSubstr(std::string("leafShape.") + known)));
    }
    const auto mesh = Mesh("leafShape");
    ASSERT_EQ(mesh->vertices.size(), 6U);
    EXPECT_FLOAT_EQ(mesh->vertices[5].x, 2.0f - 25.0f) << "metres, and a tweak";
    EXPECT_EQ(mesh->FaceCount(), 2U);
    EXPECT_EQ(Typed("sets -q initialShadingGroup"), "string[] leafShape");

    Save("a.ma");
    const std::string written = ReadScene("a.ma");
    for (const char* line :
         {"setAttr \".uvst[1].uvsn\" -type \"string\" \"light \\\"map\\\"\";", "-type \"float2\" 0.1 0.3",
          "setAttr \".pt[2]\" -type \"float3\" 0 0 0.005 ;",
          "setAttr \".pt[5]\" -type \"float3\" -0.25 0 0 ;",
          ("f 4 0 1 2 3 \n\t\th 3 4 5 6 \n\t\tmu 0 4 0 1 2 3 \n\t\tmu 1 1 0 \n\t\tmc 0 4 -1 2 3 4 \n\t\t"
           "f 4 4 5 6 -2 \n\t\tmu 0 4 1 4 5 2;"),
          "setAttr \".cd\" -type \"dataPolyComponent\" Index_Data Edge 1", "setAttr \".clst[0].clsn\"",
          "connectAttr \"leafShape.iog\" \":initialShadingGroup.dsm\" -na;"}) {
        EXPECT_THAT(written, HasSubstr(line));
    }
    for (const char* copy : {"b.lbx", "c.ma"}) {
        EXPECT_EQ(ErrorOfOpening(copy[0] == 'b' ? "a.ma" : "b.lbx"), "none");
        EXPECT_TRUE(mesh->HasSameContent(*Mesh("leafShape"))) << copy;
        Save(copy);
    }
    EXPECT_EQ(ReadScene("c.ma"), written);
}

TEST_F(MeshFileTest, LongMeshesComeBackTheSame) {
    Run("polySphere -sx 60 -sy 50 -ch 0 -r 3.3; polyCylinder -sx 900 -ch 0; polyCube; setAttr polyCube1.w 2");
    const auto sphere = Mesh("pSphereShape1");
    const auto cylinder = Mesh("pCylinderShape1");
    for (const char* file : {"a.ma", "b.lbx"}) {
        Save(file);
        EXPECT_EQ(ErrorOfOpening(file), "none");
        EXPECT_TRUE(sphere->HasSameContent(*Mesh("pSphereShape1")));
        EXPECT_TRUE(cylinder->HasSameContent(*Mesh("pCylinderShape1")));
        EXPECT_FLOAT_EQ(Mesh("pCubeShape1")->vertices[1].x, 1.0f) << "made again by its history";
        EXPECT_EQ(Output(), "");
    }
}

TEST_F(MeshFileTest, FaultsAreToldAndTheRestIsRead) {
    const std::pair<const char*, const char*> rows[] = {
        {"setAttr \".vt[0:2]\" 1 2;\n", "takes 3 numbers for each element"},
        {"setAttr \".vt[0:2000000000]\" 1 2 3;\n", "takes 3 numbers for each element"},
        {"setAttr \".vt[7]\" 1 2 3;\n", "skips elements before it"},
        {"setAttr \".fc[0]\" -type \"polyFaces\" 4 0 1 2 3;\n", "does not begin with \"f\""},
        {"setAttr \".fc[0:1]\" -type \"polyFaces\" f 3 0 1 2;\n", "does not match its number of faces"},
        {"setAttr \".fc[0]\" -type \"polyFaces\" f 1000000 0 1 2;\n", "face of a mesh could not be read"},
        {"setAttr \".uvst[0].uvsp[0:3]\" -type \"float2\" 1 2;\n", "takes 2 numbers for each element"},
        {"setAttr \".uvst[0].nothing\" 1;\n", "is not known"},
    };
    for (const auto& [statement, message] : rows) {
        EXPECT_THAT(OpenMesh(statement), HasSubstr(message)) << statement;
        EXPECT_EQ(Typed("objExists after"), "int 1") << statement;
    }
    // What leads nowhere is kept as it is.
    OpenMesh("setAttr \".vt[0]\" 1 2 3;\nsetAttr \".ed[0]\" 5 6 7;\n"
             "setAttr \".fc[0]\" -type \"polyFaces\" f 3 0 99 -2147483648 mu 1000000 3 0 1 2;\n");
    EXPECT_THAT(SceneText(), HasSubstr("f 3 0 99 -2147483648 \n\t\tmu 1000000 3 0 1 2;"));
    EXPECT_THAT(SceneText(), HasSubstr("setAttr \".ed[0]\" 5 6 7 ;"));
}
