#include "SceneCommandFixture.h"
#include "formats/FaceText.h"
#include "scene/MeshData.h"
#include "scene/MeshNode.h"
#include "scene/MeshTessellation.h"
#include "scene/PolyPrimitives.h"
#include "scene/Scene.h"

#include <gmock/gmock.h>
#include <map>

using namespace lightbox;
using Imath::V3d;
using Imath::V3f;

namespace {

struct Shape {
    const char* name;
    std::shared_ptr<MeshData> mesh;
    std::size_t vertices;
    std::size_t edges;
    std::size_t faces;
    bool isClosed;
    double volume;
};

std::vector<Shape> Shapes() {
    const double wedge = 20 * 0.5 * std::sin(2 * M_PI / 20); // a 20-sided disc of radius 1
    return {{"cube", Make(poly::Cube()), 8, 12, 6, true, 1.0},
            {"fine cube", Make(poly::Cube{2, 3, 4, 2, 3, 4}), 54, 104, 52, true, 24.0},
            {"plane", Make(poly::Plane()), 121, 220, 100, false, 0.0},
            {"sphere", Make(poly::Sphere()), 382, 780, 400, true, 4.0949},
            {"least sphere", Make(poly::Sphere{1.0, 0, -5}), 8, 15, 9, true, 1.2990},
            {"cylinder", Make(poly::Cylinder()), 42, 100, 60, true, 2 * wedge},
            {"ringed cylinder", Make(poly::Cylinder{1, 2, 20, 3, 2, false}), 122, 260, 140, true, 2 * wedge},
            {"open-faced cylinder", Make(poly::Cylinder{1, 2, 20, 1, 0, false}), 40, 60, 22, true, 2 * wedge},
            {"cone", Make(poly::Cylinder{1, 2, 20, 1, 0, true}), 21, 40, 21, true, 2 * wedge / 3},
            {"ringed cone", Make(poly::Cylinder{1, 2, 20, 3, 2, true}), 82, 180, 100, true, 2 * wedge / 3}};
}

} // namespace

TEST(PolyPrimitivesTest, AreWholeAndFaceOutward) {
    for (const Shape& shape : Shapes()) {
        SCOPED_TRACE(shape.name);
        const MeshData& mesh = *shape.mesh;
        EXPECT_EQ(mesh.vertices.size(), shape.vertices);
        EXPECT_EQ(mesh.edges.size(), shape.edges);
        EXPECT_EQ(mesh.FaceCount(), shape.faces);
        EXPECT_EQ(mesh.uvSets.at(0).ids.size(), mesh.corners.size());
        for (const int id : mesh.uvSets.at(0).ids) {
            EXPECT_LT(static_cast<std::size_t>(id), mesh.uvSets.at(0).coordinates.size());
        }
        // Each edge is used once in each direction.
        std::map<int, int> uses;
        for (const int edge : mesh.corners) {
            EXPECT_GE(mesh.VertexOf(edge), 0);
            ++uses[edge];
        }
        for (const auto& [edge, count] : uses) {
            EXPECT_EQ(count, 1) << edge;
            EXPECT_TRUE(!shape.isClosed || uses.count(-edge - 1) == 1) << edge;
        }
        double volume = 0.0;
        const MeshTessellation tessellation(mesh);
        const auto& corners = tessellation.Corners();
        const auto& triangles = tessellation.Triangles();
        for (std::size_t i = 0; i < triangles.size(); i += 3) {
            const V3d a(corners[triangles[i]].position);
            const V3d b(corners[triangles[i + 1]].position);
            const V3d c(corners[triangles[i + 2]].position);
            volume += a.dot(b.cross(c)) / 6.0;
            EXPECT_GT((b - a).cross(c - a).dot(V3d(corners[triangles[i]].normal)), 0.0);
        }
        EXPECT_NEAR(volume, shape.volume, 1e-3);
    }
}

/// Scripts count on these numbers.
TEST(PolyPrimitivesTest, VerticesComeInThePublishedOrder) {
    const auto near = [](const V3f& a, const V3f& b) { return (a - b).length() < 1e-5f; };
    const auto cube = Make(poly::Cube());
    EXPECT_TRUE(near(cube->vertices[0], V3f(-0.5f, -0.5f, 0.5f)));
    EXPECT_TRUE(near(cube->vertices[3], V3f(0.5f, 0.5f, 0.5f)));
    EXPECT_TRUE(near(cube->vertices[7], V3f(0.5f, -0.5f, -0.5f)));
    const auto sphere = Make(poly::Sphere());
    EXPECT_TRUE(near(sphere->vertices[0], V3f(0.14877813f, -0.98768836f, -0.048340943f)));
    EXPECT_TRUE(near(sphere->vertices[381], V3f(0.0f, 1.0f, 0.0f)));
    EXPECT_TRUE(near(Make(poly::Plane())->vertices[0], V3f(-0.5f, 0.0f, 0.5f)));
    EXPECT_TRUE(near(Make(poly::Cylinder())->vertices[0], V3f(0.95105714f, -1.0f, -0.30901718f)));
    auto turned = Make(poly::Cylinder());
    poly::TurnTo(*turned, V3d(0, 0, 2));
    EXPECT_TRUE(near(turned->vertices[41], V3f(0.0f, 0.0f, 1.0f)));
}

TEST(MeshTessellationTest, SmoothEdgesShareNormalsAndHardOnesDoNot) {
    const MeshTessellation sphere(*Make(poly::Sphere{1.0, 40, 40}));
    for (const auto& corner : sphere.Corners()) {
        EXPECT_GT(corner.normal.dot(corner.position), 0.995f);
    }
    const MeshTessellation cube(*Make(poly::Cube()));
    for (const auto& corner : cube.Corners()) {
        EXPECT_NEAR(std::abs(corner.normal.x) + std::abs(corner.normal.y) + std::abs(corner.normal.z), 1.0f,
                    1e-5f);
    }
}

TEST(MeshTessellationTest, ConcaveFacesKeepTheirOutline) {
    // An L of three unit squares, with its inner corner first.
    MeshData mesh;
    mesh.vertices = {{1, 1, 0}, {1, 2, 0}, {0, 2, 0}, {0, 0, 0}, {2, 0, 0}, {2, 1, 0}};
    for (int i = 0; i < 6; ++i) {
        mesh.edges.push_back({i, (i + 1) % 6, 1});
        mesh.corners.push_back(i);
    }
    mesh.faceBegins = {0};
    const MeshTessellation tessellation(mesh);
    ASSERT_EQ(tessellation.Triangles().size(), 12U);
    float area = 0.0f;
    for (std::size_t i = 0; i < 12; i += 3) {
        const auto at = [&](std::size_t k) {
            return tessellation.Corners()[tessellation.Triangles()[i + k]].position;
        };
        const float part = (at(1) - at(0)).cross(at(2) - at(0)).z * 0.5f;
        EXPECT_GE(part, 0.0f);
        area += part;
    }
    EXPECT_NEAR(area, 3.0f, 1e-5f);
}

TEST(MeshTessellationTest, WrongIndexesLeaveOutWhatTheySpoil) {
    auto mesh = std::make_shared<MeshData>(*Make(poly::Cube()));
    mesh->edges[0].end = 99;
    mesh->edges.push_back({-3, 2, 1});
    mesh->corners[8] = 1000;
    mesh->corners[12] = -2147483647 - 1;
    mesh->faceBegins.push_back(mesh->corners.size());
    const MeshTessellation tessellation(*mesh);
    EXPECT_LT(tessellation.Triangles().size(), 36U);
    EXPECT_EQ(tessellation.Lines().size(), 22U);
    for (const std::uint32_t index : tessellation.Triangles()) {
        EXPECT_LT(index, tessellation.Corners().size());
    }
}

class MeshCommandsTest : public SceneCommandFixture {
protected:
    std::shared_ptr<const MeshData> Mesh(const char* shape) {
        return MeshNode::Evaluate(*host_.scene().Find(shape));
    }
};

TEST_F(MeshCommandsTest, EditsCanBeUndone) {
    const Edit rows[] = {
        {"", "polyCube -w 2 -sx 3", "string[] pCube1 polyCube1", "polyCube -q -sx pCube1", "int 3"},
        {"", "polySphere -r 2.5 -n ball", "string[] ball polySphere1", "getAttr polySphere1.r", "float 2.5"},
        {"", "polyPlane -ch off", "string[] pPlane1", "getAttr -size pPlaneShape1.vt", "int 121"},
        {"", "polyCylinder -ax 1 0 0 -sz 0", "string[] pCylinder1 polyCylinder1",
         "polyCylinder -q -ax pCylinder1", "float[] 1 0 0"},
        {"", "polyCone -sx 4", "string[] pCone1 polyCone1", "nodeType pConeShape1", "string mesh"},
        {"polyCube", "polyCube -e -h 7 pCube1", "void", "getAttr polyCube1.height", "float 7"},
        {"polyCube -ch 0", "setAttr \"pCubeShape1.vt[3]\" 1 2 3", "void", "getAttr \"pCubeShape1.vrts[3]\"",
         "float[] 1 2 3"},
        {"polyCube", "setAttr \"pCubeShape1.pnts[2]\" -type \"float3\" 0 0.5 0", "void",
         "getAttr \"pCubeShape1.pt[2].py\"", "float 0.5"},
        {"polyCube", "delete polyCube1", "void", "getAttr -size pCubeShape1.face", "int 6"},
        {"polyCube", "disconnectAttr polyCube1.out pCubeShape1.inMesh",
         "string Disconnect polyCube1.output from pCubeShape1.inMesh.", "getAttr -size pCubeShape1.edge",
         "int 12"},
        {"polyCube", "duplicate pCube1", "string[] pCube2", "getAttr -size \"pCube2|pCubeShape1.vt\"",
         "int 8"},
        {"shadingNode -asShader blinn -n m; sets -r true -em -n g; polyCube", "sets -e -fe g pCube1",
         "string g", "sets -q g", "string[] pCubeShape1"},
        {"polyCube", "sets -e -rm initialShadingGroup pCube1", "string initialShadingGroup",
         "sets -q initialShadingGroup", "string[] "},
        {"polyCube -w 4; move 3 1 0; setAttr topShape.orthographicWidth 1", "viewFit top", "void",
         "getAttr top.tx", "float 3"},
        // The camera may be any of the shapes.
        {"polyCube; move 3 1 0; createNode transform -n rig; createNode locator -p rig; createNode camera -p "
         "rig; select pCube1",
         "viewFit rig", "void", "getAttr rig.tx", "float 3"},
    };
    ExpectEdits(rows);
}

TEST_F(MeshCommandsTest, WhatCannotBeIsRefused) {
    const Refusal rows[] = {
        {"polyCube", "polySphere -q -r pCube1", "The object 'pCube1' has no polySphere in its history."},
        {"", "polyCube -sx 0",
         "Cannot set the attribute 'polyCube1.subdivisionsWidth' below its minimum value of 1."},
        {"", "polyPlane -sx 100000000",
         "Cannot set the attribute 'polyPlane1.subdivisionsWidth' past its maximum value of 1000."},
        {"polyCube -ch 0", "setAttr \"pCubeShape1.vt[2000000000]\" 1 2 3",
         "The mesh attribute \"vt[2000000000]\" skips elements before it."},
        {"polyCube -ch 0", "setAttr \"pCubeShape1.vt[3\" 1 2 3",
         "The mesh attribute \"vt[3\" has an invalid index."},
        {"polyCube -ch 0", "setAttr \"pCubeShape1.ed[0:1]\" 1 2 3",
         "The mesh attribute \"ed[0:1]\" takes 3 numbers for each element."},
        {"polyCube -ch 0", "setAttr \"pCubeShape1.fc[0]\" -type \"polyFaces\" f 3 0 1 2",
         "The mesh attribute \"fc[0]\" takes only new faces, after the existing ones."},
        {"polyCube -ch 0", "setAttr \"pCubeShape1.fc[6]\" -type \"polyFaces\" f 400000000 0 1 2",
         "A face of a mesh could not be read."},
        {"polyCube -ch 0", "setAttr \"pCubeShape1.uvst[5000].uvsn\" -type \"string\" \"x\"",
         "The mesh attribute \"uvst[5000].uvsn\" has an invalid index."},
        {"", "viewFit lambert1", "The object 'lambert1' is not in the DAG."},
        {"", "sets -e -fe lambert1 persp", "The object 'lambert1' is not a set."},
    };
    ExpectRefusals(rows);
}

TEST_F(MeshCommandsTest, HistoryTweaksAndTheirOrder) {
    Run("polyCube -h 4; setAttr \"pCubeShape1.pt[3]\" -type \"float3\" 0 1 0");
    EXPECT_FLOAT_EQ(Mesh("pCubeShape1")->vertices[3].y, 3.0f);
    Run("setAttr polyCube1.h 2");
    EXPECT_FLOAT_EQ(Mesh("pCubeShape1")->vertices[3].y, 2.0f);
    const auto before = Mesh("pCubeShape1");
    EXPECT_EQ(Mesh("pCubeShape1"), before) << "made anew although nothing changed";
    Run("delete polyCube1");
    EXPECT_FLOAT_EQ(Mesh("pCubeShape1")->vertices[3].y, 2.0f);
    // A mesh goes on to others.
    Run("createNode mesh -n other; connectAttr pCubeShape1.outMesh other.inMesh");
    EXPECT_EQ(Mesh("other")->vertices.size(), 8U);
    EXPECT_FLOAT_EQ(Mesh("other")->vertices[3].y, 2.0f);
    Run("delete pCube1");
    EXPECT_FLOAT_EQ(Mesh("other")->vertices[3].y, 2.0f) << "what comes from it stays when it goes";
}

TEST(FaceTextTest, ReadsTheFormsThatFilesHave) {
    const FaceText face("f 4 0 -5 2147483647 -1\n mu 0 4 3 2 1 0 h 3 5 6 7\tmc 0 2 8 9");
    EXPECT_THAT(face.Edges(), ::testing::ElementsAre(0, -5, 2147483647, -1));
    EXPECT_THAT(face.Holes().at(0), ::testing::ElementsAre(5, 6, 7));
    EXPECT_EQ(face.UvSets().at(0).Text(), "mu 0 4 3 2 1 0");
    EXPECT_THAT(face.OtherParts(), ::testing::ElementsAre("mc 0 2 8 9"));
    for (const char* bad :
         {"", "f", "f x", "f 3 1 2", "mu 0 1 2", "f 1 2 3", "f 1 99999999999", "f 0 7 mu"}) {
        EXPECT_ANY_THROW(FaceText{bad}) << bad;
    }
}
