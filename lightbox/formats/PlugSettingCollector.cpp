#include "formats/PlugSettingCollector.h"

#include "formats/MeshPlugSettings.h"
#include "scene/DataType.h"
#include "scene/DataValue.h"

#include <algorithm>
#include <iterator>

namespace lightbox {
namespace {

/// The type with which the numbers of a compound are written; empty where there is none, as of two times, or
/// of a compound that was made as such.
std::string TypeOfNumbers(const Attribute& attribute) {
    if (!attribute.IsNumericCompound() || attribute.givenType == "-at \"compound\"") {
        return {};
    }
    const std::string type = attribute.TypeName();
    return NumberCountOfType(type) > 0 ? type : std::string();
}

} // namespace

std::vector<PlugSetting> PlugSettingCollector::Collect(const std::shared_ptr<Node>& node) {
    PlugSettingCollector collector(node);
    for (const auto& attribute : node->Attributes()) {
        collector.AddAttribute(attribute, -1);
    }
    return std::move(collector.settings_);
}

void PlugSettingCollector::AddAttribute(const std::shared_ptr<Attribute>& attribute, int element) {
    if (attribute->multi && element < 0) {
        AddArray(attribute);
    } else if (attribute->IsCompound()) {
        AddCompound(attribute, element);
    } else {
        AddPlain(attribute, element);
    }
}

void PlugSettingCollector::AddArray(const std::shared_ptr<Attribute>& attribute) {
    AddPlain(attribute, -1);
    const std::vector<int> elements = node_->Elements(*attribute);
    std::size_t first = 0;
    while (first < elements.size()) {
        // Neighbouring elements of plain numbers share one statement. This keeps arrays of keys short.
        PlugSetting run = Begin(attribute, elements[first]);
        std::size_t last = first;
        bool anySet = false;
        while (last < elements.size() && elements[last] - elements[first] == static_cast<int>(last - first) &&
               !HasFlagsBelow(*attribute, elements[last]) &&
               Numbers(*attribute, elements[last], run.numbers, anySet)) {
            ++last;
        }
        const std::size_t length = last - first;
        // One key is written as one, too: its time and its value.
        const bool isPlain = length == 1 && (!attribute->IsCompound() || !TypeOfNumbers(*attribute).empty());
        if (length == 0 || isPlain) {
            AddAttribute(attribute, elements[first]);
            ++first;
            continue;
        }
        run.path = Plug(node_, attribute).AttributeName(false) + "[" + std::to_string(elements[first]);
        run.path += length == 1 ? "]" : ":" + std::to_string(elements[last - 1]) + "]";
        if (length > 1) {
            run.size = static_cast<unsigned>(length);
        }
        run.hasValue = true;
        run.isBoolean = attribute->Kind() == AttributeKind::Bool;
        run.type = TypeOfNumbers(*attribute);
        settings_.push_back(std::move(run));
        first = last;
    }
}

void PlugSettingCollector::AddCompound(const std::shared_ptr<Attribute>& attribute, int element) {
    PlugSetting whole = Begin(attribute, element);
    bool anySet = false;
    bool childFlags = false;
    for (const auto& child : attribute->Children()) {
        childFlags = childFlags || HasFlagsBelow(*child, element);
    }
    const std::string type = TypeOfNumbers(*attribute);
    if (!type.empty() && !childFlags) {
        if (Numbers(*attribute, element, whole.numbers, anySet) && anySet) {
            whole.hasValue = true;
            whole.type = type;
        } else {
            whole.numbers.clear();
        }
    }
    if (whole.hasValue || HasFlags(*attribute, element)) {
        settings_.push_back(whole);
    }
    if (!whole.hasValue) {
        for (const auto& child : attribute->Children()) {
            AddAttribute(child, element);
        }
    }
}

void PlugSettingCollector::AddPlain(const std::shared_ptr<Attribute>& attribute, int element) {
    if (attribute->Kind() == AttributeKind::Mesh) {
        AddMesh(*attribute);
        return;
    }
    PlugSetting setting = Begin(attribute, element);
    const AttributeValue* value = attribute->multi && element < 0 ? nullptr : ValueOf(*attribute, element);
    if (value) {
        FillValue(*attribute, *value, setting);
    }
    if (setting.hasValue || HasFlags(*attribute, element)) {
        settings_.push_back(std::move(setting));
    }
}

void PlugSettingCollector::AddMesh(const Attribute& attribute) {
    const AttributeValue* value = ValueOf(attribute, -1);
    const auto* mesh = value ? std::get_if<std::shared_ptr<const MeshData>>(value) : nullptr;
    if (mesh && *mesh) {
        std::vector<PlugSetting> statements = MeshPlugSettings::Collect(**mesh);
        std::move(statements.begin(), statements.end(), std::back_inserter(settings_));
    }
}

const PlugState* PlugSettingCollector::StateOf(const Attribute& attribute, int element) const {
    return node_->FindState(attribute, element);
}

bool PlugSettingCollector::HasFlags(const Attribute& attribute, int element) const {
    const PlugState* state = StateOf(attribute, element);
    return state && (state->locked || (state->keyable && *state->keyable != attribute.keyable) ||
                     (state->channelBox && *state->channelBox != attribute.channelBox));
}

bool PlugSettingCollector::HasFlagsBelow(const Attribute& attribute, int element) const {
    return HasFlags(attribute, element) ||
           std::any_of(attribute.Children().begin(), attribute.Children().end(),
                       [&](const auto& child) { return HasFlagsBelow(*child, element); });
}

const AttributeValue* PlugSettingCollector::ValueOf(const Attribute& attribute, int element) const {
    const PlugState* state = StateOf(attribute, element);
    if (!state || !state->isSet || !attribute.storable) {
        return nullptr;
    }
    // An array element exists only because it was set, so even its default value is written.
    return element >= 0 || state->isGiven || !(state->value == attribute.Default()) ? &state->value : nullptr;
}

bool PlugSettingCollector::Numbers(const Attribute& attribute, int element, std::vector<double>& numbers,
                                   bool& anySet) const {
    if (attribute.IsCompound()) {
        const std::size_t before = numbers.size();
        for (const auto& child : attribute.Children()) {
            if (child->multi || !Numbers(*child, element, numbers, anySet)) {
                numbers.resize(before);
                return false;
            }
        }
        return !attribute.Children().empty();
    }
    if (!attribute.IsNumber() || !attribute.storable) {
        return false;
    }
    const AttributeValue* value = ValueOf(attribute, element);
    const AttributeValue standard = attribute.Default();
    const double* number = std::get_if<double>(value ? value : &standard);
    anySet = anySet || value;
    numbers.push_back(number ? *number : 0.0);
    return true;
}

PlugSetting PlugSettingCollector::Begin(const std::shared_ptr<Attribute>& attribute, int element) const {
    PlugSetting setting;
    setting.path = Plug(node_, attribute, element).AttributeName(false);
    if (const PlugState* state = StateOf(*attribute, element)) {
        if (state->locked) {
            setting.locked = true;
        }
        if (state->keyable && *state->keyable != attribute->keyable) {
            setting.keyable = state->keyable;
        }
        if (state->channelBox && *state->channelBox != attribute->channelBox) {
            setting.channelBox = state->channelBox;
        }
    }
    return setting;
}

void PlugSettingCollector::FillValue(const Attribute& attribute, const AttributeValue& value,
                                     PlugSetting& setting) {
    setting.hasValue = true;
    setting.isBoolean = attribute.Kind() == AttributeKind::Bool;
    if (const double* number = std::get_if<double>(&value)) {
        setting.numbers = {*number};
    } else if (const std::string* text = std::get_if<std::string>(&value)) {
        setting.type = "string";
        setting.texts = {*text};
    } else if (const auto* numbers = std::get_if<std::vector<double>>(&value)) {
        setting.type = attribute.TypeName();
        setting.numbers = *numbers;
    } else if (const auto* texts = std::get_if<std::vector<std::string>>(&value)) {
        setting.type = "stringArray";
        setting.texts = *texts;
    } else if (const auto* data = std::get_if<std::shared_ptr<DataValue>>(&value); data && *data) {
        setting.type = (*data)->Type()->name;
        setting.data = *data;
    } else {
        setting.hasValue = false;
    }
}

} // namespace lightbox
