#pragma once

#include "scene/AttributeValue.h"
#include "scene/Node.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lightbox {

class AnimCurveNode;

/// An attribute of one node, or one element of it. A plug of an attribute below an array carries the array's
/// index; so ktv[3].kv is the attribute kv with element 3. What is set here is not recorded for undo; see
/// Edit.h.
class Plug {
public:
    Plug() = default;
    Plug(std::shared_ptr<Node> plugNode, std::shared_ptr<Attribute> plugAttribute, int plugElement = -1);
    /// The plug of an attribute by its long or short name; false when the node has none of that name.
    static Plug Of(const Node& node, const std::string& attribute);

    explicit operator bool() const { return node && attribute; }
    bool operator==(const Plug& other) const;
    bool operator!=(const Plug& other) const { return !(*this == other); }
    /// An order for containers; it has no meaning otherwise.
    bool operator<(const Plug& other) const;

    /// "node.translate.translateX" with the whole path, else "node.translateX". The node is named by its
    /// shortest path.
    std::string Name(bool longNames = true, bool fullAttributePath = false) const;
    std::string AttributeName(bool longNames, bool fullAttributePath = false) const;

    Plug Child(std::size_t index) const;
    Plug Parent() const;
    Plug Element(int index) const;
    /// Plugs of the elements that exist.
    std::vector<Plug> Elements() const;
    /// The element behind the last one that an array has.
    Plug NextElement() const;
    /// An array attribute's plug without an index.
    bool IsArray() const;

    /// Through connections and computed outputs.
    AttributeValue Get() const;
    double Number() const;
    std::string Text() const;
    std::shared_ptr<DataValue> Data() const;
    /// What is stored, whatever is connected. Nothing when it was never set.
    std::optional<AttributeValue> Stored() const;

    /// Why Set() would refuse, as a message; empty when it would not.
    std::string WhyNotSettable() const;
    /// False for a locked or a driven plug, one that is not writable, and a value that the attribute cannot
    /// take. Animation curves do not forbid: what is set stands in front of them until the scene is
    /// evaluated for another time, so that it can be keyed.
    bool Set(const AttributeValue& value) const;
    /// Sets whatever is locked or connected; nothing stands in front of an animation curve then. Empty
    /// unsets.
    void Store(const std::optional<AttributeValue>& value) const;

    /// Whether the stored value stands in front of the animation curve that drives the plug.
    bool IsHeld() const;
    /// Lets the stored value stand in front of the animation curve that drives the plug, or no longer.
    void SetHeld(bool held) const;
    /// The animation curve that drives the plug; null when there is none.
    AnimCurveNode* AnimationCurve() const;

    /// Locked itself, or through its parent or array.
    bool IsLocked() const;
    bool IsKeyable() const;
    bool IsInChannelBox() const;

    std::shared_ptr<Node> node;
    std::shared_ptr<Attribute> attribute;
    int element = -1;
};

} // namespace lightbox
