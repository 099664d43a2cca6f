#include "commands/Registration.h"
#include "commands/SceneArguments.h"
#include "formats/AttributeFactory.h"
#include "formats/SceneFiles.h"
#include "mel/SyntaxBuilder.h"
#include "scene/DataType.h"
#include "scene/Edit.h"
#include "scene/Host.h"
#include "scene/Scene.h"
#include "text/NumberText.h"
#include "text/Quoted.h"

#include <algorithm>
#include <cmath>

namespace lightbox::mel {
namespace {

/// Assembles compound attributes. Several addAttr calls define one: the compound first, then its children. It
/// is added to the node when it is complete.
class PendingCompounds {
public:
    /// Takes a compound that lacks `missing` children. Drops a pending one with the same name.
    void Add(const std::shared_ptr<Node>& node, std::shared_ptr<Attribute> attribute, int missing);
    /// True when a pending compound of the node, or an attribute in it, has one of the attribute's names.
    bool HasName(const std::shared_ptr<Node>& node, const Attribute& attribute) const;
    /// Adds a child to its pending parent, and returns false when no such parent is pending. When this
    /// completes the outermost compound, sets `whole` to it.
    bool AddChild(const std::shared_ptr<Node>& node, const std::string& parent,
                  std::shared_ptr<Attribute> child, int missingOfChild, std::shared_ptr<Attribute>& whole);

private:
    struct Entry {
        std::weak_ptr<Node> node;
        std::shared_ptr<Attribute> attribute;
        int missing = 0;
    };

    std::vector<Entry>::iterator Find(const std::shared_ptr<Node>& node, const std::string& name);

    std::vector<Entry> pending_;
};

/// Returns the outermost compound of an attribute, or the attribute itself.
const Attribute& RootOf(const Attribute& attribute) {
    return attribute.Parent() ? RootOf(*attribute.Parent()) : attribute;
}

bool SharesName(const Attribute& left, const Attribute& right) {
    return left.HasName(right.LongName()) || left.HasName(right.ShortName());
}

/// True when an attribute of the tree shares a name with `named`.
bool HoldsName(const Attribute& tree, const Attribute& named) {
    return SharesName(tree, named) ||
           std::any_of(tree.Children().begin(), tree.Children().end(),
                       [&](const std::shared_ptr<Attribute>& child) { return HoldsName(*child, named); });
}

void PendingCompounds::Add(const std::shared_ptr<Node>& node, std::shared_ptr<Attribute> attribute,
                           int missing) {
    // Also drops the compounds nested in the old one, and those of deleted nodes.
    const auto isStale = [&](const Entry& entry) {
        const std::shared_ptr<Node> owner = entry.node.lock();
        return !owner || !owner->InScene() ||
               (owner == node && SharesName(RootOf(*entry.attribute), *attribute));
    };
    pending_.erase(std::remove_if(pending_.begin(), pending_.end(), isStale), pending_.end());
    pending_.push_back({node, std::move(attribute), missing});
}

bool PendingCompounds::HasName(const std::shared_ptr<Node>& node, const Attribute& attribute) const {
    return std::any_of(pending_.begin(), pending_.end(), [&](const Entry& entry) {
        return entry.node.lock() == node && HoldsName(RootOf(*entry.attribute), attribute);
    });
}

std::vector<PendingCompounds::Entry>::iterator PendingCompounds::Find(const std::shared_ptr<Node>& node,
                                                                      const std::string& name) {
    return std::find_if(pending_.begin(), pending_.end(), [&](const Entry& entry) {
        return entry.node.lock() == node && entry.attribute->HasName(name);
    });
}

bool PendingCompounds::AddChild(const std::shared_ptr<Node>& node, const std::string& parent,
                                std::shared_ptr<Attribute> child, int missingOfChild,
                                std::shared_ptr<Attribute>& whole) {
    auto above = Find(node, parent);
    if (above == pending_.end()) {
        return false;
    }
    above->attribute->AddChild(child);
    --above->missing;
    if (missingOfChild > 0) {
        pending_.push_back({node, std::move(child), missingOfChild});
        return true;
    }
    // Completing the parent may complete the compounds above it, too.
    while (above != pending_.end() && above->missing == 0) {
        const std::shared_ptr<Attribute> complete = above->attribute;
        const Attribute* outer = complete->Parent();
        pending_.erase(above);
        if (!outer) {
            whole = complete;
            break;
        }
        const bool siblingsPending = std::any_of(pending_.begin(), pending_.end(), [&](const Entry& entry) {
            return entry.attribute->Parent() == outer;
        });
        above = siblingsPending ? pending_.end() : Find(node, outer->LongName());
    }
    return true;
}

void SetEnumFields(const std::string& text, Attribute& attribute) {
    int number = 0;
    std::size_t begin = 0;
    // The window for new attributes writes a colon after the last field, too.
    while (begin < text.size() || begin == 0) {
        const std::size_t end = std::min(text.find(':', begin), text.size());
        std::string field = text.substr(begin, end - begin);
        const std::size_t equals = field.find('=');
        double given = 0.0;
        if (equals != std::string::npos && IsNumber(std::string_view(field).substr(equals + 1), given)) {
            number = static_cast<int>(std::clamp(given, -2147483647.0, 2147483646.0));
            field.resize(equals);
        }
        attribute.enumFields.emplace_back(field, number++);
        begin = end + 1;
    }
}

/// Applies the flags that switch a limit on or off. A limit without a value is 0.
void SetLimitSwitches(const CommandCall& call, Attribute& attribute) {
    const std::pair<const char*, std::optional<double>*> limits[] = {
        {"-hasMinValue", &attribute.minimum},
        {"-hasMaxValue", &attribute.maximum},
        {"-hasSoftMinValue", &attribute.softMinimum},
        {"-hasSoftMaxValue", &attribute.softMaximum}};
    for (const auto& [flag, limit] : limits) {
        if (call.Has(flag)) {
            *limit = call.Bool(flag) ? std::optional<double>(limit->value_or(0.0)) : std::nullopt;
        }
    }
}

/// Fails for a flag that does not apply to the attribute's type.
void CheckFlagsFit(const CommandCall& call, const Attribute& attribute) {
    for (const char* flag : {"-defaultValue", "-minValue", "-maxValue", "-softMinValue", "-softMaxValue",
                             "-hasMinValue", "-hasMaxValue", "-hasSoftMinValue", "-hasSoftMaxValue"}) {
        if (call.Has(flag) && !attribute.IsNumber()) {
            call.Fail(std::string("The flag '") + flag + "' is for numeric attributes only.");
        }
    }
    if (call.Has("-enumName") && attribute.Kind() != AttributeKind::Enum) {
        call.Fail("The flag '-enumName' is for enum attributes only.");
    }
    if (call.Has("-numberOfChildren") && !attribute.IsCompound()) {
        call.Fail("The flag '-numberOfChildren' is for compound attributes only.");
    }
    if (call.UseCount("-dataType") > 1) {
        call.Fail("An attribute takes data of one type only.");
    }
}

/// The flags that mean nothing here, as text, for scene files.
std::string FurtherFlags(const CommandCall& call, const Attribute& attribute) {
    std::string text;
    const auto addSwitch = [&](const char* flag, const char* shortFlag) {
        if (call.Has(flag)) {
            text += std::string(" ") + shortFlag + (call.Bool(flag) ? " true" : " false");
        }
    };
    if (call.Has("-cachedInternally") && !call.Bool("-cachedInternally")) {
        text += " -ci false";
    }
    addSwitch("-internalSet", "-is");
    if (call.Has("-disconnectBehaviour")) {
        text += " -dcb " + std::to_string(call.Int("-disconnectBehaviour"));
    }
    for (const auto& [flag, shortFlag] :
         {std::pair("-binaryTag", "-bt"), std::pair("-category", "-ct"), std::pair("-proxy", "-pxy")}) {
        for (unsigned use = 0; use < call.UseCount(flag); ++use) {
            text += std::string(" ") + shortFlag + " " + Quoted(call.String(flag, 0, use));
        }
    }
    text += call.Has("-usedAsFilename") ? " -uaf" : "";
    text += call.Has("-usedAsProxy") ? " -uap" : "";
    addSwitch("-fromPlugin", "-fp");
    addSwitch("-worldSpace", "-ws");
    if (call.Has("-defaultValue") && !attribute.IsNumber()) {
        text += " -dv " + DecimalText(call.Float("-defaultValue"));
    }
    for (const auto& [flag, shortFlag] :
         {std::pair("-defaultValue", "-dv"), std::pair("-minValue", "-min"), std::pair("-maxValue", "-max"),
          std::pair("-softMinValue", "-smn"), std::pair("-softMaxValue", "-smx")}) {
        const double number = call.FloatOr(flag, 0.0);
        if (!std::isfinite(number)) {
            text += std::string(" ") + shortFlag +
                    (std::isnan(number) ? " nan"
                     : number < 0.0     ? " -inf"
                                        : " inf");
        }
    }
    return text;
}

void SetProperties(const CommandCall& call, Attribute& attribute) {
    const auto setFlag = [&](const char* flag, bool& property) {
        if (call.Has(flag)) {
            property = call.Bool(flag);
        }
    };
    setFlag("-keyable", attribute.keyable);
    setFlag("-hidden", attribute.hidden);
    setFlag("-readable", attribute.readable);
    setFlag("-writable", attribute.writable);
    setFlag("-storable", attribute.storable);
    attribute.multi = call.Has("-multi");
    setFlag("-indexMatters", attribute.indexMatters);
    attribute.furtherFlags = FurtherFlags(call, attribute);
    attribute.usedAsColor = call.Has("-usedAsColor");
    attribute.niceName = call.StringOr("-niceName", "");
    if (call.Has("-defaultValue") && attribute.IsNumber() && std::isfinite(call.Float("-defaultValue"))) {
        attribute.defaultValue = call.Float("-defaultValue");
    }
    const auto setNumber = [&](const char* flag, std::optional<double>& property) {
        if (call.Has(flag) && std::isfinite(call.Float(flag))) {
            property = call.Float(flag);
        }
    };
    setNumber("-minValue", attribute.minimum);
    setNumber("-maxValue", attribute.maximum);
    setNumber("-softMinValue", attribute.softMinimum);
    setNumber("-softMaxValue", attribute.softMaximum);
    SetLimitSwitches(call, attribute);
    if (call.Has("-enumName") && attribute.Kind() == AttributeKind::Enum) {
        SetEnumFields(call.String("-enumName"), attribute);
    }
}

/// Remembers the type as it was given where the kind alone would not give it back, and makes the children
/// that a data type implies.
void SetGivenType(const CommandCall& call, Attribute& attribute, const std::string& type) {
    const bool isData = !call.Has("-attributeType") && call.Has("-dataType");
    if (isData && attribute.IsCompound()) {
        AttributeFactory::AddImpliedChildren(attribute, type);
    }
    const bool isMatrix = attribute.Kind() == AttributeKind::Matrix;
    if (attribute.IsCompound() || (isMatrix && (!isData || type != "matrix"))) {
        attribute.givenType = (isData ? "-dt " : "-at ") + Quoted(type);
    }
}

std::shared_ptr<Attribute> MakeAttribute(const CommandCall& call, std::string& type) {
    std::string longName = call.StringOr("-longName", "");
    std::string shortName = call.StringOr("-shortName", longName);
    longName = longName.empty() ? shortName : longName;
    if (longName.empty()) {
        call.Fail("New attribute needs either a long (-ln) or short (-sn) attribute name.");
    }
    type = call.StringOr("-attributeType", call.StringOr("-dataType", "double"));
    std::shared_ptr<Attribute> attribute =
        AttributeFactory::Make(call.GetHost().scene(), type, longName, shortName);
    if (!attribute && !(AttributeFactory::IsName(longName) && AttributeFactory::IsName(shortName))) {
        call.Fail("The attribute name contains invalid characters: " + longName);
    }
    if (!attribute && call.GetHost().files().IsReading() && call.Has("-parent")) {
        // A file's compound stays whole; the value is kept with the file's other unknown content.
        attribute = AttributeFactory::MakeUnknown(type, longName, shortName);
    } else if (!attribute) {
        call.Fail("Type specified for new attribute is unknown: " + type);
    }
    if (!call.GetHost().files().IsReading()) {
        CheckFlagsFit(call, *attribute); // what another program wrote is not refused for it
    }
    SetProperties(call, *attribute);
    SetGivenType(call, *attribute, type);
    return attribute;
}

void AddTo(const CommandCall& call, const std::shared_ptr<Node>& node, PendingCompounds& pending) {
    std::string type;
    const std::shared_ptr<Attribute> attribute = MakeAttribute(call, type);
    const bool isPending = attribute->IsCompound() && attribute->Children().empty();
    const int missing = !isPending           ? 0
                        : type == "compound" ? call.IntOr("-numberOfChildren", 0)
                                             : AttributeFactory::ChildCountOf(type);
    if (isPending && (missing < 1 || missing > 1000)) {
        call.Fail("A compound attribute needs its number of children (-nc).");
    }
    if (node->FindAttribute(attribute->LongName()) || node->FindAttribute(attribute->ShortName()) ||
        (call.Has("-parent") && pending.HasName(node, *attribute))) {
        call.Fail("Found an attribute of the name '" + attribute->LongName() + "' already.");
    }
    std::shared_ptr<Attribute> whole;
    if (call.Has("-parent")) {
        if (!pending.AddChild(node, call.String("-parent"), attribute, missing, whole)) {
            call.Fail("No compound attribute '" + call.String("-parent") + "' is waiting for a child.");
        }
    } else if (isPending) {
        pending.Add(node, attribute, missing);
    } else {
        whole = attribute;
    }
    if (whole) {
        edit::AddAttribute(call.GetHost(), *node, whole);
    }
}

Value DefaultOf(const Attribute& attribute) {
    const AttributeValue value = attribute.Default();
    const double* number = std::get_if<double>(&value);
    return number ? Value(*number) : Value();
}

Value QueryAttribute(CommandCall& call) {
    const Attribute& attribute = *PlugNamed(call, call.Object(0).AsString()).attribute;
    const std::string parent = attribute.Parent() ? attribute.Parent()->LongName() : std::string();
    const std::pair<const char*, Value> answers[] = {
        {"-minValue", attribute.minimum.value_or(0.0)},
        {"-maxValue", attribute.maximum.value_or(0.0)},
        {"-softMinValue", attribute.softMinimum.value_or(0.0)},
        {"-softMaxValue", attribute.softMaximum.value_or(0.0)},
        {"-hasMinValue", attribute.minimum.has_value()},
        {"-hasMaxValue", attribute.maximum.has_value()},
        {"-hasSoftMinValue", attribute.softMinimum.has_value()},
        {"-hasSoftMaxValue", attribute.softMaximum.has_value()},
        {"-defaultValue", DefaultOf(attribute)},
        {"-enumName", EnumFieldsText(attribute)},
        {"-niceName", attribute.niceName},
        {"-longName", attribute.LongName()},
        {"-shortName", attribute.ShortName()},
        {"-keyable", attribute.keyable},
        {"-hidden", attribute.hidden},
        {"-readable", attribute.readable},
        {"-writable", attribute.writable},
        {"-storable", attribute.storable},
        {"-multi", attribute.multi},
        {"-usedAsColor", attribute.usedAsColor},
        {"-indexMatters", attribute.indexMatters},
        {"-numberOfChildren", static_cast<int>(attribute.Children().size())},
        {"-parent", parent},
        {"-attributeType", attribute.TypeName()},
        {"-dataType", attribute.TypeName()},
        {"-exists", attribute.dynamic}};
    for (const auto& [flag, answer] : answers) {
        if (call.Has(flag)) {
            return answer;
        }
    }
    call.Fail("No flag that can be queried was given.");
}

Value AddAttr(CommandCall& call, PendingCompounds& pending) {
    if (call.IsQuery()) {
        return QueryAttribute(call);
    }
    for (const std::shared_ptr<Node>& node : ObjectsOrSelection(call)) {
        AddTo(call, node, pending);
    }
    return {};
}

Value DeleteAttr(CommandCall& call) {
    const std::string text = call.Object(0).AsString();
    if (text.find('.') != std::string::npos) {
        const Plug plug = PlugNamed(call, text);
        edit::DeleteAttribute(call.GetHost(), *plug.node, *plug.attribute);
        return {};
    }
    const std::shared_ptr<Node> node = NodeNamed(call, text);
    const std::string name = call.StringOr("-attribute", "");
    const auto attribute = node->FindAttribute(name);
    if (!attribute) {
        call.Fail("No object matches name: " + text + "." + name);
    }
    edit::DeleteAttribute(call.GetHost(), *node, *attribute);
    return {};
}

} // namespace

void RegisterAddAttrCommands(CommandRegistry& registry) {
    const auto pending = std::make_shared<PendingCompounds>();
    AddSceneCommand(registry, "addAttr",
                    SyntaxBuilder()
                        .Flag("-ln", "-longName", MSyntax::kString)
                        .Flag("-sn", "-shortName", MSyntax::kString)
                        .Flag("-nn", "-niceName", MSyntax::kString)
                        .Flag("-at", "-attributeType", MSyntax::kString)
                        .Flag("-dt", "-dataType", MSyntax::kString)
                        .MultiUse()
                        .Flag("-dv", "-defaultValue", MSyntax::kDouble)
                        .Flag("-min", "-minValue", MSyntax::kDouble)
                        .Flag("-max", "-maxValue", MSyntax::kDouble)
                        .Flag("-smn", "-softMinValue", MSyntax::kDouble)
                        .Flag("-smx", "-softMaxValue", MSyntax::kDouble)
                        .Flag("-hnv", "-hasMinValue", MSyntax::kBoolean)
                        .Flag("-hxv", "-hasMaxValue", MSyntax::kBoolean)
                        .Flag("-hsn", "-hasSoftMinValue", MSyntax::kBoolean)
                        .Flag("-hsx", "-hasSoftMaxValue", MSyntax::kBoolean)
                        .Flag("-ex", "-exists")
                        .Flag("-en", "-enumName", MSyntax::kString)
                        .Flag("-k", "-keyable", MSyntax::kBoolean)
                        .Flag("-h", "-hidden", MSyntax::kBoolean)
                        .Flag("-r", "-readable", MSyntax::kBoolean)
                        .Flag("-w", "-writable", MSyntax::kBoolean)
                        .Flag("-s", "-storable", MSyntax::kBoolean)
                        .Flag("-ci", "-cachedInternally", MSyntax::kBoolean)
                        .Flag("-m", "-multi")
                        .Flag("-im", "-indexMatters", MSyntax::kBoolean)
                        .Flag("-uac", "-usedAsColor")
                        .Flag("-uaf", "-usedAsFilename")
                        .Flag("-uap", "-usedAsProxy")
                        .Flag("-pxy", "-proxy", MSyntax::kString)
                        .Flag("-is", "-internalSet", MSyntax::kBoolean)
                        .Flag("-dcb", "-disconnectBehaviour", MSyntax::kLong)
                        .Flag("-bt", "-binaryTag", MSyntax::kString)
                        .Flag("-ct", "-category", MSyntax::kString)
                        .MultiUse()
                        .Flag("-fp", "-fromPlugin", MSyntax::kBoolean)
                        .Flag("-ws", "-worldSpace", MSyntax::kBoolean)
                        .Flag("-p", "-parent", MSyntax::kString)
                        .Flag("-nc", "-numberOfChildren", MSyntax::kUnsigned)
                        .Query()
                        .Objects(),
                    [pending](CommandCall& call) { return AddAttr(call, *pending); });
    AddSceneCommand(registry, "deleteAttr",
                    SyntaxBuilder().Flag("-at", "-attribute", MSyntax::kString).Objects(1, 1), DeleteAttr);
}

} // namespace lightbox::mel
