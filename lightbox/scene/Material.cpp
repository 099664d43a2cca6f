#include "scene/Material.h"

#include "scene/Edit.h"
#include "scene/Host.h"
#include "scene/Plug.h"
#include "scene/Scene.h"

namespace lightbox {

namespace {

using Imath::V3f;

Plug PlugOf(const Node& node, const char* attribute) {
    const auto found = node.FindAttribute(attribute);
    return found ? Plug(std::const_pointer_cast<Node>(node.Shared()), found) : Plug();
}

float Number(const Node& node, const char* attribute, float otherwise) {
    const Plug plug = PlugOf(node, attribute);
    return plug ? static_cast<float>(plug.Number()) : otherwise;
}

V3f Color(const Node& node, const char* attribute, const V3f& otherwise) {
    const Plug plug = PlugOf(node, attribute);
    const AttributeValue value = plug ? plug.Get() : AttributeValue();
    const auto* numbers = std::get_if<std::vector<double>>(&value);
    return numbers && numbers->size() == 3
               ? V3f(static_cast<float>((*numbers)[0]), static_cast<float>((*numbers)[1]),
                     static_cast<float>((*numbers)[2]))
               : otherwise;
}

float Mean(const V3f& color) {
    return (color.x + color.y + color.z) / 3.0f;
}

/// The connection from the shape to its shading group.
Connection Membership(const Node& shape) {
    if (const Scene* scene = shape.InScene()) {
        for (const Connection& connection : scene->connections().Of(shape)) {
            const bool isWhole = connection.source.attribute->LongName() == "instObjGroups";
            if (connection.source.node.get() == &shape && isWhole &&
                connection.destination.node->Type().IsA("shadingEngine")) {
                return connection;
            }
        }
    }
    return {};
}

} // namespace

std::shared_ptr<Node> Material::ShadingGroupOf(const Node& shape) {
    return Membership(shape).destination.node;
}

Material Material::Of(const Node& shape) {
    Material material;
    const std::shared_ptr<Node> group = ShadingGroupOf(shape);
    const Plug source =
        group ? group->InScene()->connections().SourceOf(PlugOf(*group, "surfaceShader")) : Plug();
    if (!source) {
        return material;
    }
    const Node& shader = *source.node;
    material.isFlat = shader.Type().IsA("surfaceShader");
    material.color = Color(shader, material.isFlat ? "outColor" : "color", material.color);
    material.incandescence = Color(shader, "incandescence", material.incandescence);
    material.diffuse = Number(shader, "diffuse", material.diffuse);
    material.opacity =
        1.0f - Mean(Color(shader, material.isFlat ? "outTransparency" : "transparency", V3f(0.0f)));
    material.specular = Mean(Color(shader, "specularColor", V3f(0.0f)));
    return material;
}

void Material::Assign(Host& host, const std::shared_ptr<Node>& shape, const std::shared_ptr<Node>& group) {
    const Connection before = Membership(*shape);
    if (before.source) {
        if (before.destination.node == group) {
            return;
        }
        edit::Disconnect(host, before.source, before.destination);
    }
    edit::Connect(host, PlugOf(*shape, "instObjGroups").Element(0),
                  PlugOf(*group, "dagSetMembers").NextElement());
}

} // namespace lightbox
