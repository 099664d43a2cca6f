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

/// The keys of one curve that a command is about.
struct KeySet {
    std::shared_ptr<AnimCurveNode> node;
    /// Places in the curve, in order.
    std::vector<std::size_t> keys;
};

/// What the animation commands have in common: objects (or the selection), -attribute, -hierarchy, -shape,
/// and the ranges of -time, -float and -index.
class KeyArguments {
public:
    /// Adds the flags for objects and attributes.
    static SyntaxBuilder& AddObjectFlags(SyntaxBuilder& syntax);
    /// Adds those and the ranges.
    static SyntaxBuilder& AddFlags(SyntaxBuilder& syntax);

    /// Without `readsRanges` the call's -time means something else.
    explicit KeyArguments(const CommandCall& call, bool readsRanges = true);

    /// The nodes: given or selected, with what -hierarchy and -shape add.
    const NodeList& Nodes() const { return nodes_; }
    /// What can be keyed: the attributes given, else all keyable ones of the nodes.
    std::vector<Plug> KeyablePlugs() const;
    /// The curves of the attributes given, else all of the nodes, with those of their keys that the ranges
    /// hold: all keys when no range is given. Curves without such keys are left out unless `withEmpty`.
    std::vector<KeySet> KeySets(bool withEmpty = false) const;
    /// The times given, of ranges the first; the current time when there are none.
    std::vector<double> Times() const;
    bool HasRanges() const { return !times_.empty() || !inputs_.empty() || !indexes_.empty(); }

    /// A time as frames: a number, or a text like "2sec".
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
    /// Named as "node.attribute".
    std::vector<Plug> plugs_;
    std::vector<std::string> attributes_;
    std::vector<Range> times_;
    std::vector<Range> inputs_;
    std::vector<Range> indexes_;
    bool includesLast_ = true;
};

} // namespace lightbox::mel
