// polyCube, polySphere, polyPlane, polyCylinder and polyCone. They create a transform, a mesh and, unless
// -constructionHistory is off, the node that keeps generating the mesh.

#include "commands/Registration.h"
#include "commands/ShapeArguments.h"
#include "mel/SyntaxBuilder.h"
#include "scene/DagNode.h"
#include "scene/Edit.h"
#include "scene/Host.h"
#include "scene/Material.h"
#include "scene/MeshNode.h"
#include "scene/Scene.h"

namespace lightbox::mel {
namespace {

/// A flag and its attribute of the generating node.
struct PrimitiveFlag {
    const char* shortName;
    const char* longName;
    const char* attribute;
    bool isWhole;
};

struct Primitive {
    const char* command; ///< also the type of the generating node
    const char* name;    ///< of the transform
    std::vector<PrimitiveFlag> properties;
};

constexpr PrimitiveFlag RADIUS{"-r", "-radius", "radius", false};
constexpr PrimitiveFlag WIDTH{"-w", "-width", "width", false};
constexpr PrimitiveFlag HEIGHT{"-h", "-height", "height", false};
constexpr PrimitiveFlag CREATE_UVS{"-cuv", "-createUVs", "createUVs", true};
constexpr PrimitiveFlag ROUND_CAP{"-rcp", "-roundCap", "roundCap", true};

std::vector<PrimitiveFlag> OfCylinder() {
    return {RADIUS,
            HEIGHT,
            {"-sx", "-subdivisionsX", "subdivisionsAxis", true},
            {"-sy", "-subdivisionsY", "subdivisionsHeight", true},
            {"-sz", "-subdivisionsZ", "subdivisionsCaps", true},
            {"-sa", "-subdivisionsAxis", "subdivisionsAxis", true},
            {"-sh", "-subdivisionsHeight", "subdivisionsHeight", true},
            {"-sc", "-subdivisionsCaps", "subdivisionsCaps", true},
            ROUND_CAP,
            CREATE_UVS};
}

std::vector<Primitive> Primitives() {
    return {{"polyCube",
             "pCube",
             {WIDTH,
              HEIGHT,
              {"-d", "-depth", "depth", false},
              {"-sx", "-subdivisionsX", "subdivisionsWidth", true},
              {"-sy", "-subdivisionsY", "subdivisionsHeight", true},
              {"-sz", "-subdivisionsZ", "subdivisionsDepth", true},
              CREATE_UVS}},
            {"polySphere",
             "pSphere",
             {RADIUS,
              {"-sx", "-subdivisionsX", "subdivisionsAxis", true},
              {"-sy", "-subdivisionsY", "subdivisionsHeight", true},
              {"-sa", "-subdivisionsAxis", "subdivisionsAxis", true},
              {"-sh", "-subdivisionsHeight", "subdivisionsHeight", true},
              CREATE_UVS}},
            {"polyPlane",
             "pPlane",
             {WIDTH,
              HEIGHT,
              {"-sx", "-subdivisionsX", "subdivisionsWidth", true},
              {"-sy", "-subdivisionsY", "subdivisionsHeight", true},
              {"-sw", "-subdivisionsWidth", "subdivisionsWidth", true},
              {"-sh", "-subdivisionsHeight", "subdivisionsHeight", true},
              CREATE_UVS}},
            {"polyCylinder", "pCylinder", OfCylinder()},
            {"polyCone", "pCone", OfCylinder()}};
}

void SetProperties(const CommandCall& call, const Primitive& primitive, const std::shared_ptr<Node>& node) {
    for (const PrimitiveFlag& property : primitive.properties) {
        if (call.Has(property.longName)) {
            const double value =
                property.isWhole ? call.Int(property.longName) : call.Float(property.longName);
            edit::SetPlug(call.GetHost(), Plug::Of(*node, property.attribute), value);
        }
    }
    if (call.Has("-axis")) {
        edit::SetPlug(
            call.GetHost(), Plug::Of(*node, "axis"),
            std::vector<double>{call.Float("-axis", 0), call.Float("-axis", 1), call.Float("-axis", 2)});
    }
}

Value Create(const CommandCall& call, const Primitive& primitive) {
    Host& host = call.GetHost();
    Scene& scene = host.scene();
    const std::string base = call.StringOr("-name", scene.FreeNumberedName(primitive.name));
    const auto [transform, shape] = MakeShape(host, "mesh", base);
    const std::shared_ptr<Node> maker = edit::CreateNode(host, primitive.command);
    SetProperties(call, primitive, maker);
    edit::Connect(host, Plug::Of(*maker, "output"), Plug::Of(*shape, "inMesh"));
    if (const std::shared_ptr<Node> group = scene.Find("initialShadingGroup")) {
        Material::Assign(host, shape, group);
    }
    NodeList made{transform, maker};
    if (call.Has("-constructionHistory") && !call.Bool("-constructionHistory")) {
        edit::DeleteNodes(host, {maker});
        made.pop_back();
    }
    edit::Select(host, {transform});
    return ShownNames(made);
}

/// Returns the generating node: the given or selected node itself, or the source of its mesh when it is a
/// transform or shape. Fails when there is none.
std::shared_ptr<Node> MakerOf(const CommandCall& call, const Primitive& primitive) {
    const std::shared_ptr<Node> node = ObjectsOrSelection(call).front();
    NodeList candidates{node};
    if (const auto* dag = dynamic_cast<const DagNode*>(node.get())) {
        for (DagNode* shape : dag->Shapes()) {
            candidates.push_back(shape->Shared());
        }
    }
    for (const std::shared_ptr<Node>& candidate : candidates) {
        std::shared_ptr<Node> maker =
            MeshNode::Is(*candidate)
                ? call.GetHost().scene().connections().SourceOf(Plug::Of(*candidate, "inMesh")).node
                : candidate;
        if (maker && maker->Type().Name() == primitive.command) {
            return maker;
        }
    }
    call.Fail("The object '" + ShownName(*node) + "' has no " + primitive.command + " in its history.");
}

Value QueryPrimitive(const CommandCall& call, const Primitive& primitive,
                     const std::shared_ptr<Node>& maker) {
    for (const PrimitiveFlag& property : primitive.properties) {
        if (call.Has(property.longName)) {
            const double value = Plug::Of(*maker, property.attribute).Number();
            return property.isWhole ? Value(static_cast<int>(value)) : Value(value);
        }
    }
    if (call.Has("-axis")) {
        return std::get<std::vector<double>>(Plug::Of(*maker, "axis").Get());
    }
    if (call.Has("-name")) {
        return maker->Name();
    }
    call.Fail("Nothing was asked for.");
}

void Register(CommandRegistry& registry, const Primitive& primitive) {
    SyntaxBuilder syntax;
    for (const PrimitiveFlag& property : primitive.properties) {
        syntax.Flag(property.shortName, property.longName, property.isWhole ? MSyntax::kLong : NUMBER);
    }
    syntax.Flag("-ax", "-axis", NUMBER, NUMBER, NUMBER)
        .Flag("-n", "-name", MSyntax::kString)
        .Flag("-ch", "-constructionHistory", MSyntax::kBoolean)
        .Flag("-o", "-object", MSyntax::kBoolean)
        .Query()
        .Edit()
        .Objects(0, 1);
    AddSceneCommand(registry, primitive.command, syntax, [primitive](CommandCall& call) -> Value {
        if (call.IsCreate()) {
            return Create(call, primitive);
        }
        const std::shared_ptr<Node> maker = MakerOf(call, primitive);
        if (call.IsQuery()) {
            return QueryPrimitive(call, primitive, maker);
        }
        SetProperties(call, primitive, maker);
        if (call.Has("-name")) {
            edit::Rename(call.GetHost(), *maker, call.String("-name"));
        }
        return {};
    });
}

} // namespace

void RegisterPolygonCommands(CommandRegistry& registry) {
    for (const Primitive& primitive : Primitives()) {
        Register(registry, primitive);
    }
}

} // namespace lightbox::mel
