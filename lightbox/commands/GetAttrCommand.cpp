#include "commands/Registration.h"
#include "commands/SceneArguments.h"
#include "formats/MeshPlugSettings.h"
#include "mel/SyntaxBuilder.h"
#include "scene/MeshNode.h"
#include "scene/Plug.h"

#include <QDir>
#include <QRegularExpression>

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

/// Why there is no value to show; empty when there is one.
std::string WhyNotShown(const Plug& plug) {
    const Attribute& attribute = *plug.attribute;
    if (attribute.Kind() == AttributeKind::Message) {
        return "Message attributes have no data values.";
    }
    const bool isWhole = plug.IsArray() && !attribute.IsNumber();
    if (isWhole || (attribute.IsCompound() && !attribute.IsNumericCompound())) {
        return "The attribute '" + plug.Name() + "' has no value of its own.";
    }
    if (attribute.Kind() == AttributeKind::PluginData) {
        return "The data is not of a type that can be shown: " + attribute.TypeName();
    }
    return {};
}

/// The numbers of the elements that an array has.
Value ElementValues(const Plug& plug) {
    Value::FloatArray numbers;
    for (const Plug& element : plug.Elements()) {
        numbers.push_back(element.Number());
    }
    return IsWholeNumber(plug.attribute->Kind()) ? Value(Value::IntArray(numbers.begin(), numbers.end()))
                                                 : Value(numbers);
}

/// The text with ~ at its beginning and $NAME or ${NAME} replaced; a variable that is not set stays.
std::string Expanded(const std::string& text) {
    QString expanded = QString::fromStdString(text);
    if (expanded == QLatin1String("~") || expanded.startsWith(QLatin1String("~/"))) {
        expanded.replace(0, 1, QDir::homePath());
    }
    static const QRegularExpression variable(QStringLiteral(R"(\$(?:\{(\w+)\}|(\w+)))"));
    for (QRegularExpressionMatch match = variable.match(expanded); match.hasMatch();) {
        const QByteArray name = (match.captured(1) + match.captured(2)).toUtf8();
        const QString value = qEnvironmentVariableIsSet(name.constData())
                                  ? qEnvironmentVariable(name.constData())
                                  : match.captured();
        expanded.replace(match.capturedStart(), match.capturedLength(), value);
        match = variable.match(expanded, match.capturedStart() + value.size());
    }
    return expanded.toStdString();
}

Value ValueOf(const CommandCall& call, const Plug& plug) {
    const Attribute& attribute = *plug.attribute;
    const std::string reason = WhyNotShown(plug);
    if (!reason.empty() && call.Has("-silent")) {
        return {};
    }
    if (!reason.empty()) {
        call.Fail(reason);
    }
    if (plug.IsArray()) {
        return ElementValues(plug);
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
        return call.Has("-expandEnvironmentVariables") ? Expanded(*text) : *text;
    }
    return attribute.Kind() == AttributeKind::String ? Value("") : Value();
}

/// What is asked about the geometry of a mesh.
Value GetGeometry(const CommandCall& call, const Node& node, const std::string& path) {
    const std::shared_ptr<const MeshData> own = MeshNode::Own(node);
    std::size_t count = 0;
    const std::vector<double> numbers = MeshPlugSettings::Numbers(own ? *own : MeshData(), path, count);
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
    if (MeshPlugSettings::Handles(*node, path)) {
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
