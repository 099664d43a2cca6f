#include "commands/Registration.h"
#include "commands/SceneArguments.h"
#include "mel/SyntaxBuilder.h"
#include "scene/Host.h"
#include "scene/Scene.h"

#include <algorithm>
#include <cctype>

namespace lightbox::mel {
namespace {

/// Returns the nice name. By default it derives from the long name: "focalLength" becomes "Focal Length".
std::string NiceName(const Attribute& attribute) {
    if (!attribute.niceName.empty()) {
        return attribute.niceName;
    }
    std::string nice;
    for (const char c : attribute.LongName()) {
        const auto byte = static_cast<unsigned char>(c);
        if (nice.empty()) {
            nice += static_cast<char>(std::toupper(byte));
        } else {
            nice += std::isupper(byte) ? std::string(" ") + c : std::string(1, c);
        }
    }
    return nice;
}

Value::StringArray NamesOf(const std::vector<std::shared_ptr<Attribute>>& attributes) {
    Value::StringArray names;
    for (const auto& attribute : attributes) {
        names.push_back(attribute->LongName());
    }
    return names;
}

Value AttributeQuery(CommandCall& call) {
    const std::string name = call.Object(0).AsString();
    std::shared_ptr<Attribute> attribute;
    if (call.Has("-node")) {
        attribute = NodeNamed(call, call.String("-node"))->FindAttribute(name);
    } else if (call.Has("-type")) {
        const auto type = call.GetHost().scene().types().FindNodeType(call.String("-type"));
        attribute = type ? type->FindAttribute(name) : nullptr;
    } else {
        call.Fail("A node (-n) or a type (-typ) has to be given.");
    }
    if (call.Has("-exists")) {
        return attribute != nullptr;
    }
    if (!attribute) {
        call.Fail("No attribute matches name: " + name);
    }
    const std::pair<const char*, bool> flags[] = {{"-keyable", attribute->keyable},
                                                  {"-hidden", attribute->hidden},
                                                  {"-readable", attribute->readable},
                                                  {"-writable", attribute->writable},
                                                  {"-storable", attribute->storable},
                                                  {"-connectable", attribute->connectable},
                                                  {"-channelBox", attribute->channelBox},
                                                  {"-multi", attribute->multi},
                                                  {"-enum", attribute->Kind() == AttributeKind::Enum},
                                                  {"-message", attribute->Kind() == AttributeKind::Message},
                                                  {"-usedAsColor", attribute->usedAsColor},
                                                  {"-minExists", attribute->minimum.has_value()},
                                                  {"-maxExists", attribute->maximum.has_value()},
                                                  {"-rangeExists", attribute->minimum && attribute->maximum}};
    for (const auto& [flag, state] : flags) {
        if (call.Has(flag)) {
            return state;
        }
    }
    if (call.Has("-minimum") || call.Has("-maximum") || call.Has("-range")) {
        Value::FloatArray range;
        if (!call.Has("-maximum")) {
            range.push_back(attribute->minimum.value_or(0.0));
        }
        if (!call.Has("-minimum")) {
            range.push_back(attribute->maximum.value_or(0.0));
        }
        return range;
    }
    if (call.Has("-listDefault")) {
        const AttributeValue value = attribute->Default();
        if (const double* number = std::get_if<double>(&value)) {
            return Value::FloatArray{*number};
        }
        const auto* numbers = std::get_if<std::vector<double>>(&value);
        return numbers ? *numbers : Value::FloatArray{};
    }
    if (call.Has("-listEnum")) {
        return Value::StringArray{EnumFieldsText(*attribute)};
    }
    if (call.Has("-numberOfChildren")) {
        return static_cast<int>(attribute->Children().size());
    }
    if (call.Has("-listChildren")) {
        return NamesOf(attribute->Children());
    }
    if (call.Has("-listParent")) {
        return attribute->Parent() ? Value::StringArray{attribute->Parent()->LongName()}
                                   : Value::StringArray{};
    }
    if (call.Has("-attributeType")) {
        return attribute->TypeName();
    }
    if (call.Has("-shortName")) {
        return attribute->ShortName();
    }
    return call.Has("-niceName") ? NiceName(*attribute) : attribute->LongName();
}

/// True for an attribute whose single value is an array. A multi attribute is something else.
bool IsDataArray(const Attribute& attribute) {
    switch (attribute.Kind()) {
    case AttributeKind::StringArray:
    case AttributeKind::DoubleArray:
    case AttributeKind::IntArray:
    case AttributeKind::PointArray:
    case AttributeKind::VectorArray:
        return true;
    default:
        return false;
    }
}

/// True when the plug passes all filter flags of the call.
bool IsWanted(const CommandCall& call, const Plug& plug, bool isUserDefined) {
    const Attribute& attribute = *plug.attribute;
    const std::pair<const char*, bool> conditions[] = {
        {"-keyable", plug.IsKeyable()},
        {"-locked", plug.IsLocked()},
        {"-unlocked", !plug.IsLocked()},
        {"-channelBox", plug.IsInChannelBox()},
        {"-userDefined", isUserDefined},
        {"-readOnly", attribute.readable && !attribute.writable},
        {"-read", attribute.readable},
        {"-write", attribute.writable},
        {"-connectable", attribute.connectable},
        {"-visible", !attribute.hidden},
        {"-settable", plug.WhyNotSettable().empty()},
        {"-array", IsDataArray(attribute)},
        {"-scalar", attribute.IsNumber()},
        {"-scalarAndArray", attribute.IsNumber() || IsDataArray(attribute)}};
    return std::all_of(std::begin(conditions), std::end(conditions),
                       [&](const auto& condition) { return !call.Has(condition.first) || condition.second; });
}

bool HasWantedName(const CommandCall& call, const Plug& plug) {
    const unsigned count = call.UseCount("-string");
    for (unsigned use = 0; use < count; ++use) {
        const std::string& pattern = call.String("-string", 0, use);
        if (Scene::MatchesName(pattern, plug.attribute->LongName()) ||
            Scene::MatchesName(pattern, plug.attribute->ShortName()) ||
            Scene::MatchesName(pattern, plug.AttributeName(true))) {
            return true;
        }
    }
    return count == 0;
}

void AddNames(const CommandCall& call, const Plug& plug, bool isDynamic, Value::StringArray& names) {
    if (call.Has("-multi") && plug.IsArray()) {
        for (const Plug& element : plug.Elements()) {
            AddNames(call, element, isDynamic, names);
        }
        return;
    }
    const Attribute& attribute = *plug.attribute;
    // The children of a dynamic compound count as user-defined, too.
    const bool isUser = isDynamic || attribute.dynamic;
    // Only the number children of a compound can be keyed, not the compound itself.
    const bool isWhole = attribute.IsCompound() && (call.Has("-keyable") || call.Has("-channelBox"));
    if (!isWhole && IsWanted(call, plug, isUser) && HasWantedName(call, plug)) {
        const std::string name = plug.AttributeName(!call.Has("-shortNames"));
        if (std::find(names.begin(), names.end(), name) == names.end()) {
            names.push_back(name);
        }
    }
    for (std::size_t i = 0; i < attribute.Children().size(); ++i) {
        AddNames(call, plug.Child(i), isUser, names);
    }
}

Value ListAttr(CommandCall& call) {
    Value::StringArray names;
    const std::vector<std::string> objects = call.ObjectNames();
    if (!objects.empty() && objects.front().find('.') != std::string::npos) {
        for (const std::string& object : objects) {
            AddNames(call, PlugNamed(call, object), false, names);
        }
        return names;
    }
    for (const std::shared_ptr<Node>& node : ObjectsOrSelection(call)) {
        for (const auto& attribute : node->Attributes()) {
            AddNames(call, Plug(node, attribute), false, names);
        }
    }
    return names;
}

} // namespace

void RegisterAttributeQueryCommands(CommandRegistry& registry) {
    SyntaxBuilder query;
    const std::pair<const char*, const char*> flags[] = {
        {"-ex", "-exists"},       {"-k", "-keyable"},     {"-h", "-hidden"},
        {"-rd", "-readable"},     {"-w", "-writable"},    {"-s", "-storable"},
        {"-c", "-connectable"},   {"-ch", "-channelBox"}, {"-m", "-multi"},
        {"-e", "-enum"},          {"-msg", "-message"},   {"-uac", "-usedAsColor"},
        {"-mne", "-minExists"},   {"-mxe", "-maxExists"}, {"-re", "-rangeExists"},
        {"-min", "-minimum"},     {"-max", "-maximum"},   {"-r", "-range"},
        {"-ld", "-listDefault"},  {"-le", "-listEnum"},   {"-nc", "-numberOfChildren"},
        {"-lc", "-listChildren"}, {"-lp", "-listParent"}, {"-at", "-attributeType"},
        {"-sn", "-shortName"},    {"-ln", "-longName"},   {"-nn", "-niceName"}};
    for (const auto& [shortName, longName] : flags) {
        query.Flag(shortName, longName);
    }
    AddSceneCommand(
        registry, "attributeQuery",
        query.Flag("-n", "-node", MSyntax::kString).Flag("-typ", "-type", MSyntax::kString).Objects(1, 1),
        AttributeQuery);
    SyntaxBuilder list;
    const std::pair<const char*, const char*> conditions[] = {
        {"-k", "-keyable"},      {"-l", "-locked"},          {"-u", "-unlocked"},    {"-cb", "-channelBox"},
        {"-ud", "-userDefined"}, {"-ro", "-readOnly"},       {"-r", "-read"},        {"-w", "-write"},
        {"-c", "-connectable"},  {"-v", "-visible"},         {"-se", "-settable"},   {"-a", "-array"},
        {"-s", "-scalar"},       {"-sa", "-scalarAndArray"}, {"-sn", "-shortNames"}, {"-m", "-multi"}};
    for (const auto& [shortName, longName] : conditions) {
        list.Flag(shortName, longName);
    }
    AddSceneCommand(registry, "listAttr", list.Flag("-st", "-string", MSyntax::kString).MultiUse().Objects(),
                    ListAttr);
}

} // namespace lightbox::mel
