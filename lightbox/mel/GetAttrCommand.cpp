#include "formats/MeshSettings.h"
#include "mel/SceneArguments.h"
#include "mel/SceneCommands.h"
#include "mel/SyntaxBuilder.h"
#include "scene/MeshNode.h"
#include "scene/Plug.h"

namespace lightbox::mel {
namespace {

bool IsWholeNumber(AttributeKind kind) {
    switch (kind) {
    case AttributeKind::Bool:
    case AttributeKind::Byte:
    case AttributeKind::Char:
    case AttributeKind::Short:
    case AttributeKind::Long:
    case AttributeKind::Enum:
        return true;
    default:
        return false;
    }
}

Value EnumText(const Plug& plug) {
    const int number = static_cast<int>(plug.Number());
    for (const auto& field : plug.attribute->enumFields) {
        if (field.second == number) {
            return field.first;
        }
    }
    return std::to_string(number);
}

Value ValueOf(const CommandCall& call, const Plug& plug) {
    const Attribute& attribute = *plug.attribute;
    if (attribute.Kind() == AttributeKind::Message) {
        call.Fail("Message attributes have no data values.");
    }
    if (plug.IsArray() || (attribute.IsCompound() && !attribute.IsNumericCompound())) {
        call.Fail("The attribute '" + plug.Name() + "' has no value of its own.");
    }
    if (attribute.Kind() == AttributeKind::Enum && call.Has("-asString")) {
        return EnumText(plug);
    }
    const AttributeValue value = plug.Get();
    if (const double* number = std::get_if<double>(&value)) {
        return IsWholeNumber(attribute.Kind()) ? Value(static_cast<int>(*number)) : Value(*number);
    }
    if (const auto* numbers = std::get_if<std::vector<double>>(&value)) {
        if (attribute.Kind() == AttributeKind::IntArray) {
            return Value::IntArray(numbers->begin(), numbers->end());
        }
        return *numbers;
    }
    if (const auto* texts = std::get_if<std::vector<std::string>>(&value)) {
        return *texts;
    }
    if (const auto* text = std::get_if<std::string>(&value)) {
        return *text;
    }
    if (attribute.Kind() == AttributeKind::String) {
        return "";
    }
    if (attribute.Kind() == AttributeKind::PluginData) {
        call.Fail("The data is not of a type that can be shown: " + attribute.TypeName());
    }
    return {};
}

/// What is asked about the geometry of a mesh.
Value GetGeometry(const CommandCall& call, const Node& node, const std::string& path) {
    const std::shared_ptr<const MeshData> own = MeshNode::Own(node);
    std::size_t count = 0;
    const std::vector<double> numbers = MeshSettings::Numbers(own ? *own : MeshData(), path, count);
    if (call.Has("-size")) {
        return static_cast<int>(count);
    }
    if (numbers.empty()) {
        call.Fail("The attribute '" + path + "' has no value.");
    }
    return numbers.size() == 1 ? Value(numbers.front()) : Value(numbers);
}

Value GetAttr(CommandCall& call) {
    const std::string text = call.Object(0).AsString();
    const std::shared_ptr<Node> node = NodeOfPlug(call, text);
    const std::string path = text.substr(text.find('.') + 1);
    if (MeshSettings::Handles(*node, path)) {
        return GetGeometry(call, *node, path);
    }
    const Plug plug = PlugNamed(call, call.Object(0).AsString());
    if (call.Has("-lock")) {
        return plug.IsLocked();
    }
    if (call.Has("-keyable")) {
        return plug.IsKeyable();
    }
    if (call.Has("-channelBox")) {
        return plug.IsInChannelBox();
    }
    if (call.Has("-settable")) {
        return plug.WhyNotSettable().empty();
    }
    if (call.Has("-type")) {
        return plug.attribute->TypeName();
    }
    if (call.Has("-size")) {
        return plug.IsArray() ? static_cast<int>(plug.Elements().size()) : 1;
    }
    if (call.Has("-multiIndices")) {
        Value::IntArray indexes;
        for (const Plug& element : plug.Elements()) {
            indexes.push_back(element.element);
        }
        return indexes;
    }
    return ValueOf(call, plug);
}

} // namespace

void RegisterGetAttrCommand(CommandRegistry& registry) {
    AddSceneCommand(registry, "getAttr",
                    SyntaxBuilder()
                        .Flag("-l", "-lock")
                        .Flag("-k", "-keyable")
                        .Flag("-cb", "-channelBox")
                        .Flag("-se", "-settable")
                        .Flag("-typ", "-type")
                        .Flag("-s", "-size")
                        .Flag("-mi", "-multiIndices")
                        .Flag("-as", "-asString")
                        .Flag("-x", "-expandEnvironmentVariables")
                        .Flag("-sl", "-silent")
                        .Objects(1, 1),
                    GetAttr);
}

} // namespace lightbox::mel
