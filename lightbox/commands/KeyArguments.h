#pragma once

#include "commands/SceneArguments.h"
#include "mel/SyntaxBuilder.h"
#include "scene/AnimCurve.h"
#include "scene/AnimCurveNode.h"

#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace lightbox::mel {

/// The keys of one curve that a command works on.
struct KeySet {
    std::shared_ptr<AnimCurveNode> node;
    /// Ascending indexes into the curve's keys.
    std::vector<std::size_t> keys;
};

/// The arguments that the animation commands share: objects (or the selection), -attribute, -hierarchy,
/// -shape, and the ranges of -time, -float and -index.
class KeyArguments {
public:
    /// Adds the flags for objects and attributes.
    static SyntaxBuilder& AddObjectFlags(SyntaxBuilder& syntax);
    /// Adds the flags for objects, attributes and ranges.
    static SyntaxBuilder& AddFlags(SyntaxBuilder& syntax);

    /// Set `readsRanges` to false when the call's -time is not a range of keys.
    explicit KeyArguments(const CommandCall& call, bool readsRanges = true);

    /// The given or selected nodes, with those that -hierarchy and -shape add.
    const NodeList& Nodes() const { return nodes_; }
    /// Returns the given attributes, else all keyable attributes of the nodes.
    std::vector<Plug> KeyablePlugs() const;
    /// Returns the curves of the given attributes, else all curves of the nodes, with their keys inside the
    /// ranges. Without ranges, all keys count. Leaves out curves without such keys unless `withEmpty`.
    std::vector<KeySet> KeySets(bool withEmpty = false) const;
    /// Returns the given times in frames, and the start of each range; the current time when there are none.
    std::vector<double> Times() const;
    bool HasRanges() const { return !times_.empty() || !inputs_.empty() || !indexes_.empty(); }

    /// Converts a number or a text like "2sec" to frames.
    static double TimeOf(const CommandCall& call, const Value& value);
    static TangentType TangentNamed(const CommandCall& call, const std::string& name);
    static std::string NameOf(TangentType type);

private:
    struct Range {
        double first = -std::numeric_limits<double>::infinity();
        double last = std::numeric_limits<double>::infinity();
        bool isSingle = false;
        bool Holds(double number, double tolerance, bool includesLast) const;
    };

    void AddObject(const std::string& name);
    void AddNode(const std::shared_ptr<Node>& node, bool withShapes);
    void ReadRanges(const char* flag, std::vector<Range>& ranges, bool isTime) const;
    double Number(const std::string& text, bool isTime) const;
    std::vector<Plug> GivenPlugs(const std::shared_ptr<Node>& node) const;
    bool HoldsKey(const AnimCurveNode& node, std::size_t index) const;

    const CommandCall& call_;
    NodeList nodes_;
    /// Given as "node.attribute".
    std::vector<Plug> plugs_;
    std::vector<std::string> attributes_;
    std::vector<Range> times_;
    std::vector<Range> inputs_;
    std::vector<Range> indexes_;
    bool includesLast_ = true;
};

} // namespace lightbox::mel
