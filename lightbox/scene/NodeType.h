#pragma once

#include "scene/Attribute.h"

#include <maya/MApiNamespace.h>
#include <maya/MFn.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace lightbox {

class Node;

/// A node type: its place in the type hierarchy and its attributes, inherited ones first.
class NodeType {
public:
    /// Computes an output attribute of a node; nullopt leaves the stored value.
    using ComputeFunction =
        std::function<std::optional<AttributeValue>(const Node&, const Attribute&, int element)>;

    NodeType(std::string name, std::shared_ptr<const NodeType> base, MFn::Type apiType);

    const std::string& Name() const { return name_; }
    const std::shared_ptr<const NodeType>& Base() const { return base_; }
    MFn::Type ApiType() const { return apiType_; }
    bool HasFn(MFn::Type type) const;
    /// True for its own name and those of its base types.
    bool IsA(const std::string& typeName) const;
    bool IsDag() const { return HasFn(MFn::kDagNode); }
    bool IsShape() const { return HasFn(MFn::kShape); }
    bool IsTransform() const { return HasFn(MFn::kTransform); }

    /// Returns false when a name is taken, by an attribute or a child.
    bool AddAttribute(std::shared_ptr<Attribute> attribute);
    /// Top-level attributes in order.
    const std::vector<std::shared_ptr<Attribute>>& Attributes() const { return attributes_; }
    /// Finds an attribute by long or short name, children included. Null for none.
    std::shared_ptr<Attribute> FindAttribute(const std::string& name) const;

    const ComputeFunction& Compute() const { return compute_; }
    void SetCompute(ComputeFunction compute) { compute_ = std::move(compute); }

    unsigned id = 0; ///< MTypeId; 0 for a type without one
    /// Makes the plug-in's object for a new node and ties the two together; null when the plug-in fails.
    /// Empty for the host's own types.
    std::function<std::unique_ptr<MPxNode>(Node&)> creator;
    std::string plugin; ///< name of the plug-in; empty for the host's own types
    std::string classification;
    /// Cannot be created by name.
    bool isAbstract = false;
    /// Base of the default name, which gets a number. Empty: the type's name.
    std::string defaultName;
    /// Number of existing nodes, in the scene or held elsewhere.
    mutable int liveNodes = 0;

private:
    void Index(const std::shared_ptr<Attribute>& attribute);

    std::string name_;
    std::shared_ptr<const NodeType> base_;
    MFn::Type apiType_;
    std::vector<std::shared_ptr<Attribute>> attributes_;
    std::unordered_map<std::string, std::shared_ptr<Attribute>> byName_;
    ComputeFunction compute_;
};

} // namespace lightbox
