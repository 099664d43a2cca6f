#include "scene/MeshNode.h"
#include "scene/Plug.h"
#include "scene/PolyPrimitives.h"
#include "scene/TypeTable.h"

#include <functional>

namespace lightbox {

namespace {

using Kind = AttributeKind;

/// Maximum subdivisions along one side, so that a number in a file cannot exhaust the memory.
constexpr double MAX_SUBDIVISIONS = 1000;

/// The numbers that determine a primitive's shape.
using Numbers = std::vector<double>;

struct GeneratedMesh {
    Numbers inputs;
    std::shared_ptr<const MeshData> mesh;
};

/// A compute function that rebuilds the mesh only when one of the numbers has changed.
NodeType::ComputeFunction MadeFrom(std::vector<std::string> names,
                                   const std::function<std::shared_ptr<MeshData>(const Numbers&)>& make) {
    names.insert(names.begin(), {"axisX", "axisY", "axisZ"});
    return [names, make](const Node& node, const Attribute& attribute, int) -> std::optional<AttributeValue> {
        if (attribute.Kind() != Kind::Mesh) {
            return std::nullopt;
        }
        Numbers inputs;
        for (const std::string& name : names) {
            inputs.push_back(Plug::Of(node, name).Number());
        }
        auto computed = std::static_pointer_cast<GeneratedMesh>(node.computed);
        if (!computed || computed->inputs != inputs) {
            const std::shared_ptr<MeshData> mesh = make(Numbers(inputs.begin() + 3, inputs.end()));
            poly::TurnTo(*mesh, {inputs[0], inputs[1], inputs[2]});
            computed = std::make_shared<GeneratedMesh>(GeneratedMesh{inputs, mesh});
            node.computed = computed;
        }
        return computed->mesh;
    };
}

std::shared_ptr<NodeType> MakePrimitive(TypeRegistry& registry, const char* name,
                                        const std::vector<AttributeRow>& rows) {
    auto type = MakeType(registry, name, "polyPrimitive", MFn::kDependencyNode, rows);
    for (const AttributeRow& row : rows) {
        Attribute& attribute = *type->FindAttribute(row.longName);
        if (row.kind == Kind::Long) {
            attribute.minimum = row.defaultValue > 0.0 ? 1.0 : 0.0;
            attribute.maximum = MAX_SUBDIVISIONS;
        } else if (row.kind == Kind::Distance) {
            attribute.minimum = 0.0;
        }
    }
    return type;
}

int Whole(double number) {
    return static_cast<int>(number);
}

void AddPrimitives(TypeRegistry& registry) {
    MakeType(registry, "polyBase", "node", MFn::kDependencyNode, {{Kind::Mesh, "output", "out", 0, "oh"}})
        ->isAbstract = true;
    MakeType(registry, "polyCreator", "polyBase", MFn::kDependencyNode, {})->isAbstract = true;
    const auto primitive =
        MakeType(registry, "polyPrimitive", "polyCreator", MFn::kDependencyNode,
                 {{Kind::Double, "axis", "ax", 0, "", "X:Y:Z"}, {Kind::Bool, "paramWarn", "pw", 1, "h"}});
    primitive->isAbstract = true;
    primitive->FindAttribute("axisY")->defaultValue = 1.0;

    MakePrimitive(registry, "polyCube",
                  {{Kind::Distance, "width", "w", 1, "k"},
                   {Kind::Distance, "height", "h", 1, "k"},
                   {Kind::Distance, "depth", "d", 1, "k"},
                   {Kind::Long, "subdivisionsWidth", "sw", 1, "k"},
                   {Kind::Long, "subdivisionsHeight", "sh", 1, "k"},
                   {Kind::Long, "subdivisionsDepth", "sd", 1, "k"},
                   {Kind::Enum, "createUVs", "cuv", 3, "", "Off:A:B:C:D"}})
        ->SetCompute(MadeFrom(
            {"width", "height", "depth", "subdivisionsWidth", "subdivisionsHeight", "subdivisionsDepth"},
            [](const Numbers& n) {
                return Make(poly::Cube{n[0], n[1], n[2], Whole(n[3]), Whole(n[4]), Whole(n[5])});
            }));
    for (const char* name : {"sw", "sh", "sd"}) {
        // A cube has six such sides.
        registry.FindNodeType("polyCube")->FindAttribute(name)->maximum = MAX_SUBDIVISIONS / 2;
    }
    MakePrimitive(registry, "polyPlane",
                  {{Kind::Distance, "width", "w", 1, "k"},
                   {Kind::Distance, "height", "h", 1, "k"},
                   {Kind::Long, "subdivisionsWidth", "sw", 10, "k"},
                   {Kind::Long, "subdivisionsHeight", "sh", 10, "k"},
                   {Kind::Enum, "createUVs", "cuv", 1, "", "Off:A:B"}})
        ->SetCompute(
            MadeFrom({"width", "height", "subdivisionsWidth", "subdivisionsHeight"}, [](const Numbers& n) {
                return Make(poly::Plane{n[0], n[1], Whole(n[2]), Whole(n[3])});
            }));
    MakePrimitive(registry, "polySphere",
                  {{Kind::Distance, "radius", "r", 1, "k"},
                   {Kind::Long, "subdivisionsAxis", "sa", 20, "k"},
                   {Kind::Long, "subdivisionsHeight", "sh", 20, "k"},
                   {Kind::Enum, "createUVs", "cuv", 2, "", "Off:A:B"}})
        ->SetCompute(MadeFrom({"radius", "subdivisionsAxis", "subdivisionsHeight"}, [](const Numbers& n) {
            return Make(poly::Sphere{n[0], Whole(n[1]), Whole(n[2])});
        }));
    for (const bool isCone : {false, true}) {
        MakePrimitive(registry, isCone ? "polyCone" : "polyCylinder",
                      {{Kind::Distance, "radius", "r", 1, "k"},
                       {Kind::Distance, "height", "h", 2, "k"},
                       {Kind::Long, "subdivisionsAxis", "sa", 20, "k"},
                       {Kind::Long, "subdivisionsHeight", "sh", 1, "k"},
                       {Kind::Long, "subdivisionsCaps", "sc", isCone ? 0.0 : 1.0, "k"},
                       {Kind::Bool, "roundCap", "rcp"},
                       {Kind::Enum, "createUVs", "cuv", 2, "", "Off:A:B:C"}})
            ->SetCompute(MadeFrom(
                {"radius", "height", "subdivisionsAxis", "subdivisionsHeight", "subdivisionsCaps"},
                [isCone](const Numbers& n) {
                    return Make(poly::Cylinder{n[0], n[1], Whole(n[2]), Whole(n[3]), Whole(n[4]), isCone});
                }));
    }
    registry.FindNodeType("polyCylinder")->FindAttribute("subdivisionsCaps")->minimum = 0.0;
}

std::optional<AttributeValue> ComputeMesh(const Node& node, const Attribute& attribute, int) {
    if (attribute.LongName() != "outMesh" && attribute.LongName() != "worldMesh") {
        return std::nullopt;
    }
    return MeshNode::Evaluate(node);
}

} // namespace

void AddMeshTypes(TypeRegistry& registry) {
    for (const auto& [name, base] :
         {std::pair("geometryShape", "shape"), std::pair("deformableShape", "geometryShape"),
          std::pair("controlPoint", "deformableShape"), std::pair("surfaceShape", "controlPoint")}) {
        MakeType(registry, name, base, MFn::kShape, {})->isAbstract = true;
    }
    const auto mesh =
        MakeType(registry, "mesh", "surfaceShape", MFn::kMesh,
                 {{Kind::Mesh, "inMesh", "i", 0, "h"},
                  {Kind::Mesh, "outMesh", "o", 0, "oh"},
                  {Kind::Mesh, "worldMesh", "w", 0, "ohm"},
                  {Kind::Mesh, MeshNode::OWN_GEOMETRY, "lbxg", 0, "h"},
                  {Kind::Bool, "castsShadows", "csh", 1},
                  {Kind::Bool, "receiveShadows", "rcsh", 1},
                  {Kind::Bool, "motionBlur", "mb", 1},
                  {Kind::Bool, "primaryVisibility", "vis", 1},
                  {Kind::Bool, "smoothShading", "smo", 1},
                  {Kind::Bool, "visibleInReflections", "vir"},
                  {Kind::Bool, "visibleInRefractions", "vif"},
                  {Kind::Bool, "doubleSided", "ds", 1},
                  {Kind::Bool, "opposite", "op"},
                  {Kind::Bool, "displayColors", "dcol"},
                  {Kind::String, "displayColorChannel", "dcc"},
                  {Kind::String, "currentColorSet", "ccls"},
                  {Kind::String, "currentUVSet", "cuvs"},
                  {Kind::Bool, "displayVertices", "dv"},
                  {Kind::Enum, "displayEdges", "de", 0, "", "Standard:Soft/Hard:Hard:None"},
                  {Kind::Bool, "displayBorders", "db"},
                  {Kind::Bool, "displayCenter", "dc"},
                  {Kind::Bool, "displayTriangles", "dt"},
                  {Kind::Bool, "displayNormal", "dn"},
                  {Kind::Enum, "vertexNormalMethod", "vnm", 3, "", "Unweighted:Angle:Area:Angle and Area"},
                  {Kind::Enum, "displaySmoothMesh", "dsm", 0, "", "Off:Cage and Smooth:Smooth"},
                  {Kind::Enum, "quadSplit", "qsp", 1, "", "Left:Right:Best Shape"},
                  {Kind::Long, "smoothLevel", "lev", 2},
                  {Kind::Bool, "useMaxSubdivisions", "ums"},
                  {Kind::Bool, "holdOut", "hot"}});
    mesh->defaultName = "polySurfaceShape";
    mesh->FindAttribute(MeshNode::OWN_GEOMETRY)->connectable = false;
    mesh->SetCompute(ComputeMesh);
    AddPrimitives(registry);
}

} // namespace lightbox
