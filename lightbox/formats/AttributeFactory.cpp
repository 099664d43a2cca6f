#include "formats/AttributeFactory.h"

#include "formats/PlugSetting.h"
#include "scene/DataType.h"
#include "scene/Scene.h"

#include <algorithm>
#include <map>

namespace lightbox {

bool AttributeFactory::IsName(const std::string& name) {
    const auto isLetter = [](char c) { return c == '_' || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    return !name.empty() && isLetter(name[0]) && std::all_of(name.begin(), name.end(), [&](char c) {
        return isLetter(c) || (c >= '0' && c <= '9');
    });
}

std::shared_ptr<Attribute> AttributeFactory::Make(const Scene& scene, const std::string& type,
                                                  const std::string& longName, const std::string& shortName) {
    static const std::map<std::string, AttributeKind> kinds{{"bool", AttributeKind::Bool},
                                                            {"byte", AttributeKind::Byte},
                                                            {"char", AttributeKind::Char},
                                                            {"short", AttributeKind::Short},
                                                            {"long", AttributeKind::Long},
                                                            {"int64", AttributeKind::Int64},
                                                            {"float", AttributeKind::Float},
                                                            {"double", AttributeKind::Double},
                                                            {"doubleAngle", AttributeKind::Angle},
                                                            {"doubleLinear", AttributeKind::Distance},
                                                            {"time", AttributeKind::Time},
                                                            {"enum", AttributeKind::Enum},
                                                            {"string", AttributeKind::String},
                                                            {"stringArray", AttributeKind::StringArray},
                                                            {"matrix", AttributeKind::Matrix},
                                                            {"fltMatrix", AttributeKind::Matrix},
                                                            {"doubleArray", AttributeKind::DoubleArray},
                                                            {"Int32Array", AttributeKind::IntArray},
                                                            {"pointArray", AttributeKind::PointArray},
                                                            {"vectorArray", AttributeKind::VectorArray},
                                                            {"compound", AttributeKind::Compound},
                                                            {"message", AttributeKind::Message}};
    if (!IsName(longName) || !IsName(shortName)) {
        return nullptr;
    }
    const auto kind = kinds.find(type);
    if (kind != kinds.end()) {
        return std::make_shared<Attribute>(longName, shortName, kind->second);
    }
    if (ChildCountOf(type) > 0) {
        return std::make_shared<Attribute>(longName, shortName, AttributeKind::Compound);
    }
    const auto data = scene.types().FindDataType(type);
    if (!data) {
        return nullptr;
    }
    auto attribute = std::make_shared<Attribute>(longName, shortName, AttributeKind::PluginData);
    attribute->dataTypeId = data->id;
    attribute->dataTypeName = data->name;
    return attribute;
}

std::shared_ptr<Attribute> AttributeFactory::MakeUnknown(const std::string& type, const std::string& longName,
                                                         const std::string& shortName) {
    auto attribute = std::make_shared<Attribute>(longName, shortName, AttributeKind::PluginData);
    attribute->dataTypeName = type;
    return attribute;
}

std::shared_ptr<Attribute> AttributeFactory::Clone(const Attribute& attribute) {
    auto copy = std::make_shared<Attribute>(attribute.LongName(), attribute.ShortName(), attribute.Kind());
    copy->niceName = attribute.niceName;
    copy->defaultValue = attribute.defaultValue;
    copy->minimum = attribute.minimum;
    copy->maximum = attribute.maximum;
    copy->softMinimum = attribute.softMinimum;
    copy->softMaximum = attribute.softMaximum;
    copy->enumFields = attribute.enumFields;
    copy->dataTypeId = attribute.dataTypeId;
    copy->dataTypeName = attribute.dataTypeName;
    copy->readable = attribute.readable;
    copy->writable = attribute.writable;
    copy->storable = attribute.storable;
    copy->connectable = attribute.connectable;
    copy->keyable = attribute.keyable;
    copy->hidden = attribute.hidden;
    copy->channelBox = attribute.channelBox;
    copy->multi = attribute.multi;
    copy->indexMatters = attribute.indexMatters;
    copy->usedAsColor = attribute.usedAsColor;
    copy->furtherFlags = attribute.furtherFlags;
    copy->givenType = attribute.givenType;
    for (const auto& child : attribute.Children()) {
        copy->AddChild(Clone(*child));
    }
    return copy;
}

void AttributeFactory::AddImpliedChildren(Attribute& compound, const std::string& type) {
    const std::string letters = compound.usedAsColor ? "RGBA" : "XYZW";
    const AttributeKind kind = type.compare(0, 5, "short") == 0   ? AttributeKind::Short
                               : type.compare(0, 4, "long") == 0  ? AttributeKind::Long
                               : type.compare(0, 5, "float") == 0 ? AttributeKind::Float
                                                                  : AttributeKind::Double;
    for (int i = 0; i < ChildCountOf(type); ++i) {
        const char letter = letters[static_cast<std::size_t>(i)];
        compound.AddChild(
            std::make_shared<Attribute>(compound.LongName() + letter, compound.ShortName() + letter, kind));
    }
}

int AttributeFactory::ChildCountOf(const std::string& type) {
    const int count = NumberCountOfType(type);
    return count <= 4 ? count : 0;
}

} // namespace lightbox
