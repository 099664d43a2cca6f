#include "scene/Node.h"

#include "scene/Scene.h"

#include <QUuid>

#include <algorithm>
#include <set>

namespace lightbox {

namespace {

std::shared_ptr<Attribute> FindIn(const std::vector<std::shared_ptr<Attribute>>& attributes,
                                  const std::string& name) {
    for (const std::shared_ptr<Attribute>& attribute : attributes) {
        if (attribute->HasName(name)) {
            return attribute;
        }
        if (std::shared_ptr<Attribute> child = FindIn(attribute->Children(), name)) {
            return child;
        }
    }
    return nullptr;
}

bool HasAnyNameOf(const Node& node, const Attribute& attribute) {
    return node.FindAttribute(attribute.LongName()) || node.FindAttribute(attribute.ShortName()) ||
           std::any_of(attribute.Children().begin(), attribute.Children().end(),
                       [&](const std::shared_ptr<Attribute>& child) { return HasAnyNameOf(node, *child); });
}

} // namespace

bool PlugState::operator==(const PlugState& other) const {
    return value == other.value && isSet == other.isSet && locked == other.locked &&
           keyable == other.keyable && channelBox == other.channelBox;
}

Node::Node(std::shared_ptr<const NodeType> type)
    : type_(std::move(type)) {
    ++type_->liveNodes;
}

Node::~Node() {
    // The plug-in's object may still use its node while it is destroyed.
    userNode_.reset();
    states_.clear();
    --type_->liveNodes;
}

const std::string& Node::Uuid() {
    if (uuid_.empty()) {
        uuid_ = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper().toStdString();
    }
    return uuid_;
}

std::shared_ptr<Attribute> Node::FindAttribute(const std::string& name) const {
    if (std::shared_ptr<Attribute> attribute = type_->FindAttribute(name)) {
        return attribute;
    }
    return FindIn(dynamic_, name);
}

std::vector<std::shared_ptr<Attribute>> Node::Attributes() const {
    std::vector<std::shared_ptr<Attribute>> all = type_->Attributes();
    all.insert(all.end(), dynamic_.begin(), dynamic_.end());
    return all;
}

bool Node::AddDynamicAttribute(std::shared_ptr<Attribute> attribute, std::size_t position) {
    if (HasAnyNameOf(*this, *attribute)) {
        return false;
    }
    attribute->dynamic = true;
    position = std::min(position, dynamic_.size());
    dynamic_.insert(dynamic_.begin() + static_cast<std::ptrdiff_t>(position), std::move(attribute));
    return true;
}

bool Node::RemoveDynamicAttribute(const Attribute& attribute) {
    const auto found =
        std::find_if(dynamic_.begin(), dynamic_.end(), [&](const std::shared_ptr<Attribute>& candidate) {
            return candidate.get() == &attribute;
        });
    if (found == dynamic_.end()) {
        return false;
    }
    dynamic_.erase(found);
    return true;
}

Node::PlugStates Node::TakeStates(const Attribute& attribute) {
    Changed();
    PlugStates taken;
    for (auto state = states_.lower_bound({&attribute, -1});
         state != states_.end() && state->first.first == &attribute;) {
        const auto next = std::next(state);
        taken.insert(states_.extract(state));
        state = next;
    }
    for (const std::shared_ptr<Attribute>& child : attribute.Children()) {
        taken.merge(TakeStates(*child));
    }
    return taken;
}

const PlugState* Node::FindState(const Attribute& attribute, int element) const {
    const auto found = states_.find({&attribute, element});
    return found == states_.end() ? nullptr : &found->second;
}

PlugState& Node::State(const Attribute& attribute, int element) {
    Changed();
    return states_[{&attribute, element}];
}

void Node::SetState(const Attribute& attribute, int element, const PlugState& state) {
    Changed();
    if (state.IsDefault()) {
        states_.erase({&attribute, element});
    } else {
        states_[{&attribute, element}] = state;
    }
}

void Node::PutStates(PlugStates states) {
    Changed();
    states_.merge(states);
}

void Node::Changed() {
    ++revision_;
    if (scene_) {
        scene_->Touch();
    }
}

std::vector<int> Node::Elements(const Attribute& attribute) const {
    std::set<int> indexes;
    for (auto state = states_.lower_bound({&attribute, 0});
         state != states_.end() && state->first.first == &attribute; ++state) {
        indexes.insert(state->first.second);
    }
    for (const std::shared_ptr<Attribute>& child : attribute.Children()) {
        const std::vector<int> ofChild = Elements(*child);
        indexes.insert(ofChild.begin(), ofChild.end());
    }
    return {indexes.begin(), indexes.end()};
}

} // namespace lightbox
