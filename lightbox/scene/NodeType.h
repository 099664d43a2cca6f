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

/// A type of node: its place in the hierarchy of types and its attributes, inherited ones first.
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
    /// True for the type itself and those it derives from.
    bool IsA(const std::string& typeName) const;
    bool IsDag() const { return HasFn(MFn::kDagNode); }
    bool IsShape() const { return HasFn(MFn::kShape); }
    bool IsTransform() const { return HasFn(MFn::kTransform); }

    /// False when a name is taken, also by a child.
    bool AddAttribute(std::shared_ptr<Attribute> attribute);
    /// Top level attributes in order.
    const std::vector<std::shared_ptr<Attribute>>& Attributes() const { return attributes_; }
    /// By long or short name, children included.
    std::shared_ptr<Attribute> FindAttribute(const std::string& name) const;

    const ComputeFunction& Compute() const { return compute_; }
    void SetCompute(ComputeFunction compute) { compute_ = std::move(compute); }

    unsigned id = 0; ///< MTypeId; 0 for a type without one
    /// Makes what a plug-in adds to a new node and ties it to that; null when the plug-in fails. Empty for a
    /// type of the host.
    std::function<std::unique_ptr<MPxNode>(Node&)> creator;
    std::string plugin; ///< empty for a type of the host
    std::string classification;
    /// Cannot be created by name.
    bool isAbstract = false;
    /// What a new node is called: this and a number. Empty: the type's name.
    std::string defaultName;
    /// Nodes that exist right now, in the scene or held elsewhere.
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
