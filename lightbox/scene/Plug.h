#pragma once

#include "scene/AttributeValue.h"
#include "scene/Node.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lightbox {

class AnimCurveNode;

/// An attribute of one node, or one element of it. A plug below an array attribute carries the array's index:
/// ktv[3].kv is the attribute kv with element 3. Nothing here records undo; Edit.h has the undoable edits.
class Plug {
public:
    Plug() = default;
    Plug(std::shared_ptr<Node> plugNode, std::shared_ptr<Attribute> plugAttribute, int plugElement = -1);
    /// The plug of an attribute by long or short name; a null plug when the node has no such attribute.
    static Plug Of(const Node& node, const std::string& attribute);

    explicit operator bool() const { return node && attribute; }
    bool operator==(const Plug& other) const;
    bool operator!=(const Plug& other) const { return !(*this == other); }
    /// An order for containers, without further meaning.
    bool operator<(const Plug& other) const;

    /// The plug's name: "node.translate.translateX" with the whole attribute path, else "node.translateX".
    /// The node is named by its shortest path.
    std::string Name(bool longNames = true, bool fullAttributePath = false) const;
    std::string AttributeName(bool longNames, bool fullAttributePath = false) const;

    Plug Child(std::size_t index) const;
    Plug Parent() const;
    Plug Element(int index) const;
    /// The plugs of the existing elements.
    std::vector<Plug> Elements() const;
    /// The element after the last existing one.
    Plug NextElement() const;
    /// Whether this is an array attribute's plug without an index.
    bool IsArray() const;

    /// The value: from a connection, computed by the node type, or else the stored one.
    AttributeValue Get() const;
    double Number() const;
    std::string Text() const;
    std::shared_ptr<DataValue> Data() const;
    /// The stored value, regardless of connections. Null when nothing was ever set.
    std::optional<AttributeValue> Stored() const;

    /// The message why Set() would refuse; empty when the plug can be set.
    std::string WhyNotSettable() const;
    /// Sets the value. Returns false for a plug that is locked, driven or not writable, and for a value that
    /// the attribute cannot hold. An animation curve is no obstacle: the new value overrides it until the
    /// scene is evaluated for another time, so that it can be keyed.
    bool Set(const AttributeValue& value) const;
    /// Sets the value regardless of locks and connections, without overriding an animation curve. Null unsets
    /// it.
    void Store(const std::optional<AttributeValue>& value) const;

    /// Whether the stored value overrides the animation curve that drives the plug.
    bool IsHeld() const;
    /// Makes the stored value override the animation curve that drives the plug, or ends that.
    void SetHeld(bool held) const;
    /// The animation curve that drives the plug; null when there is none.
    AnimCurveNode* AnimationCurve() const;

    /// Whether the plug itself, its parent or its array is locked.
    bool IsLocked() const;
    bool IsKeyable() const;
    bool IsInChannelBox() const;

    std::shared_ptr<Node> node;
    std::shared_ptr<Attribute> attribute;
    int element = -1;
};

} // namespace lightbox
