#include "scene/TypeTable.h"

#include <algorithm>
#include <cctype>
#include <stdexcept>
#include <string>

namespace lightbox {

namespace {

using Kind = AttributeKind;

std::vector<std::string> Split(const std::string& text) {
    std::vector<std::string> parts;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(':', begin), text.size());
        parts.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return parts;
}

std::string Lower(std::string text) {
    for (char& c : text) {
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return text;
}

void ApplyFlags(Attribute& attribute, const std::string& flags) {
    const auto has = [&](char flag) { return flags.find(flag) != std::string::npos; };
    attribute.keyable = has('k');
    attribute.channelBox = has('c');
    attribute.hidden = has('h');
    attribute.multi = has('m') || has('n');
    attribute.indexMatters = !has('n');
    if (has('o')) {
        attribute.writable = false;
        attribute.storable = false;
    }
    for (const std::shared_ptr<Attribute>& child : attribute.Children()) {
        ApplyFlags(*child, flags);
        child->multi = false;
    }
}

} // namespace

std::shared_ptr<Attribute> MakeAttribute(const AttributeRow& row) {
    const std::string extra = row.extra;
    if (row.kind <= Kind::Time && !extra.empty()) {
        std::vector<std::string> shortSuffixes;
        for (const std::string& suffix : Split(extra)) {
            shortSuffixes.push_back(Lower(suffix));
        }
        auto compound = MakeNumericCompound(row.longName, row.shortName, row.kind, Split(extra),
                                            shortSuffixes, row.defaultValue);
        ApplyFlags(*compound, row.flags);
        return compound;
    }
    auto attribute = std::make_shared<Attribute>(row.longName, row.shortName, row.kind);
    ApplyFlags(*attribute, row.flags);
    if (attribute->IsNumber()) {
        attribute->defaultValue = row.defaultValue;
    }
    if (row.kind == Kind::Enum) {
        int number = 0;
        for (const std::string& field : Split(extra)) {
            const std::size_t equals = field.find('=');
            number = equals == std::string::npos ? number : std::stoi(field.substr(equals + 1));
            attribute->enumFields.emplace_back(field.substr(0, equals), number++);
        }
    } else if (row.kind == Kind::String && !extra.empty()) {
        attribute->defaultValue = extra;
    }
    return attribute;
}

std::shared_ptr<NodeType> MakeType(TypeRegistry& registry, const char* name, const char* base,
                                   MFn::Type apiType, const std::vector<AttributeRow>& rows) {
    auto type = std::make_shared<NodeType>(name, registry.FindNodeType(base), apiType);
    for (const AttributeRow& row : rows) {
        if (!type->AddAttribute(MakeAttribute(row))) {
            throw std::logic_error(std::string(name) + " has two attributes named " + row.longName + " or " +
                                   row.shortName);
        }
    }
    registry.AddNodeType(type);
    return type;
}

} // namespace lightbox
