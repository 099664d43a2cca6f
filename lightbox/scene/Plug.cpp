#include "scene/Plug.h"

#include "scene/AnimCurveNode.h"
#include "scene/DataValue.h"
#include "scene/Scene.h"
#include "scene/Timeline.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <tuple>

namespace lightbox {

namespace {

/// Maximum number of connections to follow. A longer chain is a cycle and returns the stored value.
constexpr int MAX_CONNECTION_DEPTH = 200;

int g_depth = 0;

/// The plug that drives a plug: its own source, or the matching child of its parent's source.
Plug DrivingPlug(const Plug& plug) {
    const Scene* scene = plug.node->InScene();
    if (!scene) {
        return {};
    }
    if (Plug source = scene->connections().SourceOf(plug)) {
        return source;
    }
    const Plug parent = plug.Parent();
    const Plug parentSource = parent ? DrivingPlug(parent) : Plug();
    if (!parentSource) {
        return {};
    }
    const auto& siblings = parent.attribute->Children();
    const auto position = static_cast<std::size_t>(
        std::find(siblings.begin(), siblings.end(), plug.attribute) - siblings.begin());
    return position < parentSource.attribute->Children().size() ? parentSource.Child(position) : Plug();
}

/// Whether a plug other than an animation curve's output drives this one.
bool IsDriven(const Plug& plug) {
    return DrivingPlug(plug) && !plug.AnimationCurve();
}

} // namespace

Plug::Plug(std::shared_ptr<Node> plugNode, std::shared_ptr<Attribute> plugAttribute, int plugElement)
    : node(std::move(plugNode))
    , attribute(std::move(plugAttribute))
    , element(plugElement) {}

Plug Plug::Of(const Node& node, const std::string& attribute) {
    return Plug(std::const_pointer_cast<Node>(node.Shared()), node.FindAttribute(attribute));
}

bool Plug::operator==(const Plug& other) const {
    return node == other.node && attribute == other.attribute && element == other.element;
}

bool Plug::operator<(const Plug& other) const {
    return std::tie(node, attribute, element) < std::tie(other.node, other.attribute, other.element);
}

std::string Plug::AttributeName(bool longNames, bool fullAttributePath) const {
    std::string name;
    for (const Attribute* part = attribute.get(); part; part = part->Parent()) {
        const bool isIndexed = part->multi && element >= 0;
        const bool isNeeded = part == attribute.get() || fullAttributePath || attribute->HasElements();
        if (isNeeded) {
            std::string text = longNames ? part->LongName() : part->ShortName();
            if (isIndexed) {
                text.append("[").append(std::to_string(element)).append("]");
            }
            if (!name.empty()) {
                text += '.';
            }
            name.insert(0, text);
        }
    }
    return name;
}

std::string Plug::Name(bool longNames, bool fullAttributePath) const {
    return Scene::ShownName(*node) + "." + AttributeName(longNames, fullAttributePath);
}

Plug Plug::Child(std::size_t index) const {
    return index < attribute->Children().size() ? Plug(node, attribute->Children()[index], element) : Plug();
}

Plug Plug::Parent() const {
    if (!attribute->Parent()) {
        return {};
    }
    const auto parent = std::static_pointer_cast<Attribute>(attribute->Parent()->shared_from_this());
    return Plug(node, parent, parent->HasElements() ? element : -1);
}

Plug Plug::Element(int index) const {
    return IsArray() && index >= 0 ? Plug(node, attribute, index) : Plug();
}

std::vector<Plug> Plug::Elements() const {
    if (!IsArray()) {
        return {};
    }
    std::vector<int> indexes = node->Elements(*attribute);
    if (node->InScene()) {
        for (const Connection& connection : node->InScene()->connections().Of(*node)) {
            for (const Plug* end : {&connection.source, &connection.destination}) {
                if (end->node == node && end->element >= 0 &&
                    end->attribute->ArrayAttribute() == attribute.get()) {
                    indexes.push_back(end->element);
                }
            }
        }
        std::sort(indexes.begin(), indexes.end());
        indexes.erase(std::unique(indexes.begin(), indexes.end()), indexes.end());
    }
    std::vector<Plug> elements;
    elements.reserve(indexes.size());
    for (const int index : indexes) {
        elements.emplace_back(node, attribute, index);
    }
    return elements;
}

Plug Plug::NextElement() const {
    const std::vector<Plug> elements = Elements();
    return Element(elements.empty() ? 0 : elements.back().element + 1);
}

bool Plug::IsArray() const {
    return attribute && attribute->multi && element < 0;
}

AttributeValue Plug::Get() const {
    const QScopedValueRollback<int> depth(g_depth, g_depth + 1);
    if (g_depth <= MAX_CONNECTION_DEPTH) {
        const Plug source = IsHeld() ? Plug() : DrivingPlug(*this);
        if (source) {
            AttributeValue value = source.Get();
            if (attribute->IsNumericCompound()) {
                return value;
            }
            if (std::optional<AttributeValue> accepted = attribute->Accept(value)) {
                return *accepted;
            }
        }
        if (const NodeType::ComputeFunction& compute = node->Type().Compute()) {
            if (std::optional<AttributeValue> computed = compute(*node, *attribute, element)) {
                return *computed;
            }
        }
    }
    if (attribute->IsNumericCompound() && !IsArray()) {
        std::vector<double> numbers;
        for (std::size_t i = 0; i < attribute->Children().size(); ++i) {
            numbers.push_back(Child(i).Number());
        }
        return numbers;
    }
    const PlugState* state = node->FindState(*attribute, element);
    return state && state->isSet ? state->value : attribute->Default();
}

double Plug::Number() const {
    const AttributeValue value = Get();
    const double* number = std::get_if<double>(&value);
    return number ? *number : 0.0;
}

std::string Plug::Text() const {
    const AttributeValue value = Get();
    const auto* text = std::get_if<std::string>(&value);
    return text ? *text : std::string();
}

std::shared_ptr<DataValue> Plug::Data() const {
    const AttributeValue value = Get();
    const auto* data = std::get_if<std::shared_ptr<DataValue>>(&value);
    return data ? *data : nullptr;
}

std::optional<AttributeValue> Plug::Stored() const {
    if (attribute->IsNumericCompound() && !IsArray()) {
        bool anySet = false;
        std::vector<double> numbers;
        for (std::size_t i = 0; i < attribute->Children().size(); ++i) {
            const std::optional<AttributeValue> child = Child(i).Stored();
            anySet = anySet || child.has_value();
            numbers.push_back(std::get<double>(child ? *child : attribute->Children()[i]->Default()));
        }
        return anySet ? std::optional<AttributeValue>(numbers) : std::nullopt;
    }
    const PlugState* state = node->FindState(*attribute, element);
    return state && state->isSet ? std::optional<AttributeValue>(state->value) : std::nullopt;
}

std::string Plug::WhyNotSettable() const {
    if (IsArray() || (attribute->IsCompound() && !attribute->IsNumericCompound())) {
        return "The attribute '" + Name() + "' has no value of its own.";
    }
    if (!attribute->writable) {
        return "The attribute '" + Name() + "' is not writable.";
    }
    bool isFixed = IsLocked() || IsDriven(*this);
    for (std::size_t i = 0; i < attribute->Children().size(); ++i) {
        isFixed = isFixed || Child(i).IsLocked() || IsDriven(Child(i));
    }
    return isFixed ? "The attribute '" + Name() + "' is locked or connected and cannot be modified."
                   : std::string();
}

bool Plug::Set(const AttributeValue& value) const {
    if (!WhyNotSettable().empty()) {
        return false;
    }
    if (attribute->IsNumericCompound()) {
        const auto* numbers = std::get_if<std::vector<double>>(&value);
        if (!numbers || numbers->size() != attribute->Children().size()) {
            return false;
        }
        std::vector<double> accepted;
        for (std::size_t i = 0; i < numbers->size(); ++i) {
            const std::optional<AttributeValue> number = attribute->Children()[i]->Accept((*numbers)[i]);
            if (!number) {
                return false;
            }
            accepted.push_back(std::get<double>(*number));
        }
        Store(accepted);
        for (std::size_t i = 0; i < attribute->Children().size(); ++i) {
            Child(i).SetHeld(true);
        }
        return true;
    }
    const std::optional<AttributeValue> accepted = attribute->Accept(value);
    if (!accepted) {
        return false;
    }
    Store(*accepted);
    SetHeld(true);
    return true;
}

void Plug::Store(const std::optional<AttributeValue>& value) const {
    if (attribute->IsNumericCompound() && !IsArray()) {
        const auto* numbers = value ? std::get_if<std::vector<double>>(&*value) : nullptr;
        for (std::size_t i = 0; i < attribute->Children().size(); ++i) {
            const bool hasNumber = numbers && i < numbers->size();
            Child(i).Store(hasNumber ? std::optional<AttributeValue>((*numbers)[i]) : std::nullopt);
        }
        return;
    }
    const PlugState* before = node->FindState(*attribute, element);
    PlugState state = before ? *before : PlugState();
    state.isSet = value.has_value();
    state.value = value.value_or(AttributeValue());
    state.heldAt = 0;
    node->SetState(*attribute, element, state);
}

bool Plug::IsHeld() const {
    const PlugState* state = node->FindState(*attribute, element);
    return state && state->heldAt != 0 && node->InScene() &&
           state->heldAt == node->InScene()->timeline().Evaluations() && AnimationCurve();
}

void Plug::SetHeld(bool held) const {
    const PlugState* state = node->FindState(*attribute, element);
    if (state && state->isSet && (held ? AnimationCurve() != nullptr : state->heldAt != 0)) {
        node->State(*attribute, element).heldAt = held ? node->InScene()->timeline().Evaluations() : 0;
    }
}

AnimCurveNode* Plug::AnimationCurve() const {
    const Plug source = node->InScene() ? node->InScene()->connections().SourceOf(*this) : Plug();
    return source ? dynamic_cast<AnimCurveNode*>(source.node.get()) : nullptr;
}

bool Plug::IsLocked() const {
    for (const Attribute* part = attribute.get(); part; part = part->Parent()) {
        const PlugState* state = node->FindState(*part, part->HasElements() ? element : -1);
        const PlugState* whole = part->multi ? node->FindState(*part) : nullptr;
        if ((state && state->locked) || (whole && whole->locked)) {
            return true;
        }
    }
    return false;
}

bool Plug::IsKeyable() const {
    const PlugState* state = node->FindState(*attribute, element);
    return state && state->keyable ? *state->keyable : attribute->keyable;
}

bool Plug::IsInChannelBox() const {
    const PlugState* state = node->FindState(*attribute, element);
    return state && state->channelBox ? *state->channelBox : attribute->channelBox;
}

} // namespace lightbox
