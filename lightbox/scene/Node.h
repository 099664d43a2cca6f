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

/// What a node stores for one of its plugs. Only plugs that differ from their attribute have a state.
struct PlugState {
    AttributeValue value;
    bool isSet = false;
    /// A file gave the value, so saving writes it even if it equals the attribute's default here.
    bool isGiven = false;
    bool locked = false;
    /// Null: as in the attribute.
    std::optional<bool> keyable;
    std::optional<bool> channelBox;
    /// The evaluation of the scene (Timeline::Evaluations) during which the value overrides the animation
    /// that drives the plug; 0 for none. Not compared by operator==.
    std::uint64_t heldAt = 0;

    bool IsDefault() const { return !isSet && !locked && !keyable && !channelBox; }
    bool operator==(const PlugState& other) const;
};

/// A node. The scene owns the nodes in it; undo items and handles keep others alive.
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
    /// The name with its namespace: "ns:name".
    const std::string& Name() const { return name_; }
    /// The scene that holds the node; null outside a scene.
    Scene* InScene() const { return scene_; }
    /// Creation number; never used twice.
    std::uint64_t Serial() const { return serial_; }
    /// The plug-in's object of the node; null for the host's own types.
    MPxNode* UserNode() const { return userNode_.get(); }

    /// The UUID, made on the first call.
    const std::string& Uuid();
    void SetUuid(const std::string& uuid) { uuid_ = uuid; }

    /// Finds an attribute by long or short name, children and dynamic attributes included. Null for none.
    std::shared_ptr<Attribute> FindAttribute(const std::string& name) const;
    /// Top-level attributes: the type's, then the dynamic ones.
    std::vector<std::shared_ptr<Attribute>> Attributes() const;
    const std::vector<std::shared_ptr<Attribute>>& DynamicAttributes() const { return dynamic_; }
    /// Returns false when the node has an attribute with one of the names already.
    bool AddDynamicAttribute(std::shared_ptr<Attribute> attribute, std::size_t position = ~std::size_t{0});
    /// Removes a dynamic attribute. The states of its plugs stay until TakeStates(). Returns false when it is
    /// not a dynamic attribute of this node.
    bool RemoveDynamicAttribute(const Attribute& attribute);
    /// Moves out the plug states of an attribute and of its children. An attribute that leaves the node must
    /// take them along: a later attribute at the same address would find them.
    PlugStates TakeStates(const Attribute& attribute);
    /// Puts back what TakeStates() moved out.
    void PutStates(PlugStates states);

    /// The state of a plug; null when nothing was ever set.
    const PlugState* FindState(const Attribute& attribute, int element = -1) const;
    PlugState& State(const Attribute& attribute, int element = -1);
    void SetState(const Attribute& attribute, int element, const PlugState& state);
    /// Increases when a plug of the node is set; for caches.
    std::uint64_t Revision() const { return revision_; }
    /// The indices of the existing elements of an array attribute, in order; also those that only its
    /// children have.
    std::vector<int> Elements(const Attribute& attribute) const;

    /// A cache that belongs to the type's compute function.
    mutable std::shared_ptr<void> computed;
    bool locked = false;
    /// Made with every new scene (time1 and the like): cannot be deleted, and scene files only refer to it.
    bool isDefault = false;
    /// A node that every scene has under this name, like the start-up cameras: cannot be deleted, and files
    /// share it.
    bool isShared = false;
    bool doNotWrite = false;
    /// The file reference that brought the node; empty for the scene's own nodes.
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
