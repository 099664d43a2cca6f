#pragma once

#include "scene/Attribute.h"
#include "scene/NodeType.h"
#include "scene/Object.h"

#include <maya/MPxNode.h>

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lightbox {

class Scene;

/// What a node holds for one of its plugs. Only plugs that differ from their attribute have one.
struct PlugState {
    AttributeValue value;
    bool isSet = false;
    bool locked = false;
    /// Unset: as the attribute says.
    std::optional<bool> keyable;
    std::optional<bool> channelBox;
    /// The evaluation of the scene (Timeline::Evaluations) for which the value stands in front of the
    /// animation that drives the plug; 0 for none. No part of what makes two states equal.
    std::uint64_t heldAt = 0;

    bool IsDefault() const { return !isSet && !locked && !keyable && !channelBox; }
    bool operator==(const PlugState& other) const;
};

/// A node. The scene owns those that are in it; undo items and handles keep others alive.
class Node : public Object {
public:
    using PlugKey = std::pair<const Attribute*, int>;
    using PlugStates = std::map<PlugKey, PlugState>;

    explicit Node(std::shared_ptr<const NodeType> type);
    ~Node() override;

    MFn::Type ApiType() const override { return type_->ApiType(); }
    bool HasFn(MFn::Type type) const override { return type_->HasFn(type); }
    std::shared_ptr<Node> Shared() { return std::static_pointer_cast<Node>(shared_from_this()); }
    std::shared_ptr<const Node> Shared() const {
        return std::static_pointer_cast<const Node>(shared_from_this());
    }

    const NodeType& Type() const { return *type_; }
    /// With its namespace: "ns:name".
    const std::string& Name() const { return name_; }
    /// Null while the node is not in a scene.
    Scene* InScene() const { return scene_; }
    /// Order of creation; never used twice.
    std::uint64_t Serial() const { return serial_; }
    /// The plug-in's object behind the node; null for the host's own types.
    MPxNode* UserNode() const { return userNode_.get(); }

    /// Made when it is first asked for.
    const std::string& Uuid();
    void SetUuid(const std::string& uuid) { uuid_ = uuid; }

    /// By long or short name, children and dynamic ones included.
    std::shared_ptr<Attribute> FindAttribute(const std::string& name) const;
    /// Top level attributes: the type's, then dynamic ones.
    std::vector<std::shared_ptr<Attribute>> Attributes() const;
    const std::vector<std::shared_ptr<Attribute>>& DynamicAttributes() const { return dynamic_; }
    /// False when the node has an attribute of one of its names.
    bool AddDynamicAttribute(std::shared_ptr<Attribute> attribute, std::size_t position = ~std::size_t{0});
    /// What its plugs hold stays until TakeStates(). False when it is not a dynamic attribute of this node.
    bool RemoveDynamicAttribute(const Attribute& attribute);
    /// Moves out what the plugs of an attribute, and of those below it, hold: an attribute that leaves the
    /// node takes it along, or an attribute that is made later at the same address would find it.
    PlugStates TakeStates(const Attribute& attribute);
    /// Puts back what TakeStates() moved out.
    void PutStates(PlugStates states);

    /// Null when nothing was ever set.
    const PlugState* FindState(const Attribute& attribute, int element = -1) const;
    PlugState& State(const Attribute& attribute, int element = -1);
    void SetState(const Attribute& attribute, int element, const PlugState& state);
    /// Rises whenever something of its plugs is set: for those who keep what they made of it.
    std::uint64_t Revision() const { return revision_; }
    /// Indexes of the elements that an array attribute has, in order; also those that only children have.
    std::vector<int> Elements(const Attribute& attribute) const;

    /// What the type's compute function keeps of its last result; nobody else's.
    mutable std::shared_ptr<void> computed;
    bool locked = false;
    /// Made with the scene: cannot be deleted, and scene files only refer to it.
    bool isDefault = false;
    /// Every scene has one of its name, like the start-up cameras: cannot be deleted, and files share it.
    bool isShared = false;
    bool doNotWrite = false;
    /// Name of the reference that brought the node; empty for the scene's own nodes.
    std::string reference;

private:
    friend class Scene;

    void Changed();

    std::shared_ptr<const NodeType> type_;
    std::string name_;
    std::string uuid_;
    Scene* scene_ = nullptr;
    std::uint64_t serial_ = 0;
    std::vector<std::shared_ptr<Attribute>> dynamic_;
    PlugStates states_;
    std::uint64_t revision_ = 0;
    std::unique_ptr<MPxNode> userNode_;
};

} // namespace lightbox
