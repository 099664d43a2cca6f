#include "commands/Registration.h"
#include "commands/SceneArguments.h"
#include "mel/SyntaxBuilder.h"
#include "scene/Host.h"
#include "scene/Scene.h"

#include <algorithm>
#include <cctype>
#include <initializer_list>
#include <optional>

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

/// Returns the attribute that the call names, of its node or of its type; null when there is none.
std::shared_ptr<Attribute> NamedAttribute(const CommandCall& call) {
    const std::string name = call.Object(0).AsString();
    if (call.Has("-node")) {
        return NodeNamed(call, call.String("-node"))->FindAttribute(name);
    }
    for (const char* flag : {"-type", "-typeExact"}) {
        if (call.Has(flag)) {
            const auto type = call.GetHost().scene().types().FindNodeType(call.String(flag));
            return type ? type->FindAttribute(name) : nullptr;
        }
    }
    call.Fail("A node (-n) or a type (-typ) has to be given.");
}

/// The matrices of a DAG node that depend on the transforms above it.
bool IsInWorldSpace(const Attribute& attribute) {
    const auto names = {"worldMatrix", "worldInverseMatrix", "parentMatrix", "parentInverseMatrix"};
    return std::find(names.begin(), names.end(), attribute.LongName()) != names.end();
}

/// A flag of attributeQuery that is answered with yes or no.
struct StateRow {
    const char* shortName;
    const char* longName;
    bool (*state)(const Attribute&);
};

constexpr bool (*NEVER)(const Attribute&) = [](const Attribute&) { return false; };

constexpr StateRow STATE_ROWS[] = {
    {"-k", "-keyable", [](const Attribute& a) { return a.keyable; }},
    {"-h", "-hidden", [](const Attribute& a) { return a.hidden; }},
    {"-rd", "-readable", [](const Attribute& a) { return a.readable; }},
    {"-w", "-writable", [](const Attribute& a) { return a.writable; }},
    {"-st", "-storable", [](const Attribute& a) { return a.storable; }},
    {"-c", "-connectable", [](const Attribute& a) { return a.connectable; }},
    {"-ch", "-channelBox", [](const Attribute& a) { return a.channelBox; }},
    {"-m", "-multi", [](const Attribute& a) { return a.multi; }},
    {"-im", "-indexMatters", [](const Attribute& a) { return a.indexMatters; }},
    {"-e", "-enum", [](const Attribute& a) { return a.Kind() == AttributeKind::Enum; }},
    {"-msg", "-message", [](const Attribute& a) { return a.Kind() == AttributeKind::Message; }},
    {"-uac", "-usedAsColor", [](const Attribute& a) { return a.usedAsColor; }},
    {"-mne", "-minExists", [](const Attribute& a) { return a.minimum.has_value(); }},
    {"-mxe", "-maxExists", [](const Attribute& a) { return a.maximum.has_value(); }},
    {"-re", "-rangeExists", [](const Attribute& a) { return a.minimum && a.maximum; }},
    {"-sme", "-softMinExists", [](const Attribute& a) { return a.softMinimum.has_value(); }},
    {"-sxe", "-softMaxExists", [](const Attribute& a) { return a.softMaximum.has_value(); }},
    {"-sre", "-softRangeExists", [](const Attribute& a) { return a.softMinimum && a.softMaximum; }},
    {"-ws", "-worldspace", IsInWorldSpace},
    {"-ci", "-cachedInternally", [](const Attribute&) { return true; }},
    // No attribute of this host has these properties.
    {"-aa", "-affectsAppearance", NEVER},
    {"-aws", "-affectsWorldspace", NEVER},
    {"-idt", "-indeterminant", NEVER},
    {"-i", "-internal", NEVER},
    {"-ig", "-internalGet", NEVER},
    {"-is", "-internalSet", NEVER},
    {"-rs", "-renderSource", NEVER},
    {"-uaf", "-usedAsFilename", NEVER},
    {"-umb", "-usesMultiBuilder", NEVER}};

/// The ends of a range; a missing one is 0.
Value ListedRange(std::initializer_list<std::optional<double>> ends) {
    Value::FloatArray range;
    for (const std::optional<double>& end : ends) {
        range.push_back(end.value_or(0.0));
    }
    return range;
}

Value ListedDefault(const Attribute& attribute) {
    const AttributeValue value = attribute.Default();
    if (const double* number = std::get_if<double>(&value)) {
        return Value::FloatArray{*number};
    }
    const auto* numbers = std::get_if<std::vector<double>>(&value);
    return numbers ? *numbers : Value::FloatArray{};
}

Value SiblingNames(const Attribute& attribute) {
    Value::StringArray names;
    if (attribute.Parent()) {
        names = NamesOf(attribute.Parent()->Children());
        names.erase(std::remove(names.begin(), names.end(), attribute.LongName()), names.end());
    }
    return names;
}

/// A flag of attributeQuery that is answered with anything else.
struct AnswerRow {
    const char* shortName;
    const char* longName;
    Value (*answer)(const Attribute&);
};

constexpr AnswerRow ANSWER_ROWS[] = {
    {"-min", "-minimum", [](const Attribute& a) { return ListedRange({a.minimum}); }},
    {"-max", "-maximum", [](const Attribute& a) { return ListedRange({a.maximum}); }},
    {"-r", "-range",
     [](const Attribute& a) {
         return ListedRange({a.minimum, a.maximum});
     }},
    {"-smn", "-softMin", [](const Attribute& a) { return ListedRange({a.softMinimum}); }},
    {"-smx", "-softMax", [](const Attribute& a) { return ListedRange({a.softMaximum}); }},
    {"-s", "-softRange",
     [](const Attribute& a) {
         return ListedRange({a.softMinimum, a.softMaximum});
     }},
    {"-ld", "-listDefault", ListedDefault},
    {"-le", "-listEnum", [](const Attribute& a) { return Value(Value::StringArray{EnumFieldsText(a)}); }},
    {"-nc", "-numberOfChildren",
     [](const Attribute& a) { return Value(static_cast<int>(a.Children().size())); }},
    {"-lc", "-listChildren", [](const Attribute& a) { return Value(NamesOf(a.Children())); }},
    {"-lp", "-listParent",
     [](const Attribute& a) {
         return Value(a.Parent() ? Value::StringArray{a.Parent()->LongName()} : Value::StringArray{});
     }},
    {"-ls", "-listSiblings", SiblingNames},
    {"-ct", "-categories", [](const Attribute&) { return Value(Value::StringArray{}); }},
    {"-at", "-attributeType", [](const Attribute& a) { return Value(a.TypeName()); }},
    {"-sn", "-shortName", [](const Attribute& a) { return Value(a.ShortName()); }},
    {"-ln", "-longName", [](const Attribute& a) { return Value(a.LongName()); }},
    {"-nn", "-niceName", [](const Attribute& a) { return Value(NiceName(a)); }}};

Value AttributeQuery(CommandCall& call) {
    const std::shared_ptr<Attribute> attribute = NamedAttribute(call);
    if (!attribute) {
        if (call.Has("-exists")) {
            return false;
        }
        call.Fail("No attribute matches name: " + call.Object(0).AsString());
    }
    // Several states are answered with their logical "and"; everything else is asked alone.
    bool asksState = call.Has("-exists");
    bool areAll = true;
    for (const StateRow& row : STATE_ROWS) {
        if (call.Has(row.longName)) {
            asksState = true;
            areAll = areAll && row.state(*attribute);
        }
    }
    const AnswerRow* asked = nullptr;
    for (const AnswerRow& row : ANSWER_ROWS) {
        if (call.Has(row.longName)) {
            if (asked || asksState) {
                call.Fail(std::string("Flag '") + row.longName + "' cannot be asked with another one.");
            }
            asked = &row;
        }
    }
    if (asked) {
        return asked->answer(*attribute);
    }
    return asksState ? Value(areAll) : Value(attribute->LongName());
}

/// attributeExists(attribute, node): 0 also when there is no such node.
Value AttributeExists(CommandCall& call) {
    const std::string path = call.Object(0).AsString();
    const NodeList nodes = call.GetHost().scene().FindAll(call.Object(1).AsString());
    return nodes.size() == 1 && nodes.front()->FindAttribute(path.substr(path.rfind('.') + 1)) != nullptr;
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
    for (const StateRow& row : STATE_ROWS) {
        query.Flag(row.shortName, row.longName);
    }
    for (const AnswerRow& row : ANSWER_ROWS) {
        query.Flag(row.shortName, row.longName);
    }
    AddSceneCommand(registry, "attributeQuery",
                    query.Flag("-ex", "-exists")
                        .Flag("-n", "-node", MSyntax::kString)
                        .Flag("-typ", "-type", MSyntax::kString)
                        .Flag("-tex", "-typeExact", MSyntax::kString)
                        .Objects(1, 1),
                    AttributeQuery);
    registry.RegisterRaw("attributeExists", 2, 2, AttributeExists);
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
