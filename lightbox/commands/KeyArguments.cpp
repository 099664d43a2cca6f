#include "commands/KeyArguments.h"

#include "mel/ArgumentTokens.h"
#include "scene/AnimationEdit.h"
#include "scene/DagNode.h"
#include "scene/Host.h"
#include "scene/Scene.h"
#include "scene/Timeline.h"

#include <maya/MTime.h>

#include <algorithm>
#include <cmath>

namespace lightbox::mel {
namespace {

struct TangentName {
    const char* name;
    TangentType type;
};

/// Queries return the first name of a type.
constexpr TangentName TANGENT_NAMES[] = {
    {"fixed", TangentType::Fixed},       {"linear", TangentType::Linear},
    {"flat", TangentType::Flat},         {"step", TangentType::Step},
    {"stepped", TangentType::Step},      {"slow", TangentType::Slow},
    {"fast", TangentType::Fast},         {"spline", TangentType::Spline},
    {"clamped", TangentType::Clamped},   {"plateau", TangentType::Plateau},
    {"stepnext", TangentType::StepNext}, {"step next", TangentType::StepNext},
    {"auto", TangentType::Auto}};

/// Adds the plug, or the leaves below it when it is a compound.
void AddLeaves(const Plug& plug, std::vector<Plug>& plugs) {
    if (plug.attribute->Children().empty()) {
        plugs.push_back(plug);
    }
    for (std::size_t i = 0; i < plug.attribute->Children().size(); ++i) {
        AddLeaves(plug.Child(i), plugs);
    }
}

void AddBelow(DagNode& node, NodeList& nodes) {
    for (DagNode* below : Scene::Subtree(node)) {
        nodes.push_back(below->Shared());
    }
}

void AddAbove(const DagNode& node, NodeList& nodes) {
    for (DagNode* above = node.Parent(); above && !above->IsWorld(); above = above->Parent()) {
        nodes.push_back(above->Shared());
    }
}

} // namespace

SyntaxBuilder& KeyArguments::AddObjectFlags(SyntaxBuilder& syntax) {
    return syntax.Flag("-at", "-attribute", MSyntax::kString)
        .MultiUse()
        .QueryWithArguments()
        .Flag("-hi", "-hierarchy", MSyntax::kString)
        .QueryWithArguments()
        .Flag("-s", "-shape", MSyntax::kBoolean)
        .QueryWithArguments()
        .Flag("-cp", "-controlPoints", MSyntax::kBoolean)
        .QueryWithArguments()
        .Objects();
}

SyntaxBuilder& KeyArguments::AddFlags(SyntaxBuilder& syntax) {
    return AddObjectFlags(syntax)
        .RangeFlag("-t", "-time")
        .MultiUse()
        .QueryWithArguments()
        .RangeFlag("-f", "-float")
        .MultiUse()
        .QueryWithArguments()
        .RangeFlag("-in", "-index")
        .MultiUse()
        .QueryWithArguments()
        .Flag("-iub", "-includeUpperBound", MSyntax::kBoolean)
        .QueryWithArguments()
        .Flag("-an", "-animation", MSyntax::kString)
        .QueryWithArguments();
}

KeyArguments::KeyArguments(const CommandCall& call, bool readsRanges)
    : call_(call) {
    for (unsigned use = 0; use < call.UseCount("-attribute"); ++use) {
        attributes_.push_back(call.String("-attribute", 0, use));
    }
    const std::string hierarchy = call.StringOr("-hierarchy", "none");
    if (hierarchy != "none" && hierarchy != "above" && hierarchy != "below" && hierarchy != "both") {
        call.Fail("-hierarchy takes \"above\", \"below\", \"both\" or \"none\", not \"" + hierarchy + "\".");
    }
    const std::vector<std::string> names = call.ObjectNames();
    for (const std::string& name : names) {
        AddObject(name);
    }
    if (names.empty()) {
        for (const std::shared_ptr<Node>& node : call.GetHost().scene().selection().Get()) {
            AddNode(node, true);
        }
    }
    if (readsRanges) {
        ReadRanges("-time", times_, true);
        ReadRanges("-float", inputs_, false);
        ReadRanges("-index", indexes_, false);
    }
    includesLast_ = !call.Has("-includeUpperBound") || call.Bool("-includeUpperBound");
}

void KeyArguments::AddObject(const std::string& name) {
    if (name.find('.') != std::string::npos) {
        AddLeaves(PlugNamed(call_, name), plugs_);
        return;
    }
    for (const std::shared_ptr<Node>& node : NodesNamed(call_, {name})) {
        AddNode(node, true);
    }
}

void KeyArguments::AddNode(const std::shared_ptr<Node>& node, bool withShapes) {
    NodeList found{node};
    const std::string hierarchy = call_.StringOr("-hierarchy", "none");
    if (auto* dag = dynamic_cast<DagNode*>(node.get())) {
        if (hierarchy == "below" || hierarchy == "both") {
            AddBelow(*dag, found);
        }
        if (hierarchy == "above" || hierarchy == "both") {
            AddAbove(*dag, found);
        }
        if (withShapes && (!call_.Has("-shape") || call_.Bool("-shape"))) {
            for (DagNode* shape : dag->Shapes()) {
                found.push_back(shape->Shared());
            }
        }
    }
    for (const std::shared_ptr<Node>& each : found) {
        if (std::find(nodes_.begin(), nodes_.end(), each) == nodes_.end()) {
            nodes_.push_back(each);
        }
    }
}

double KeyArguments::Number(const std::string& text, bool isTime) const {
    const Value value(text);
    double number = 0.0;
    if (isTime) {
        return TimeOf(call_, value);
    }
    if (!ReadDouble(value, number)) {
        call_.Fail("A number was expected, not \"" + text + "\".");
    }
    return number;
}

void KeyArguments::ReadRanges(const char* flag, std::vector<Range>& ranges, bool isTime) const {
    for (unsigned use = 0; use < call_.UseCount(flag); ++use) {
        const Value& value = call_.Argument(flag, 0, use);
        Range range;
        const std::string text = value.IsString() ? value.Text() : std::string();
        const std::size_t colon = text.find(':');
        if (colon == std::string::npos) {
            range.isSingle = true;
            range.first = value.IsString() ? Number(text, isTime) : value.AsFloat();
            range.last = range.first;
        } else {
            if (colon > 0) {
                range.first = Number(text.substr(0, colon), isTime);
            }
            if (colon + 1 < text.size()) {
                range.last = Number(text.substr(colon + 1), isTime);
            }
        }
        ranges.push_back(range);
    }
}

double KeyArguments::TimeOf(const CommandCall& call, const Value& value) {
    MTime time;
    if (!ReadTime(value, time)) {
        call.Fail("A time was expected, not \"" + value.AsString() + "\".");
    }
    return time.as(MTime::uiUnit());
}

bool KeyArguments::Range::Holds(double number, double tolerance, bool includesLast) const {
    const bool isBeforeEnd =
        isSingle || includesLast ? number <= last + tolerance : number < last - tolerance;
    return number >= first - tolerance && isBeforeEnd;
}

bool KeyArguments::HoldsKey(const AnimCurveNode& node, std::size_t index) const {
    if (!HasRanges()) {
        return true;
    }
    const auto holds = [this](const std::vector<Range>& ranges, double number, double tolerance) {
        return std::any_of(ranges.begin(), ranges.end(),
                           [&](const Range& range) { return range.Holds(number, tolerance, includesLast_); });
    };
    return holds(node.IsOverTime() ? times_ : inputs_, node.Curve().Keys()[index].time,
                 AnimCurve::SAME_TIME) ||
           holds(indexes_, static_cast<double>(index), 0.0);
}

std::vector<Plug> KeyArguments::GivenPlugs(const std::shared_ptr<Node>& node) const {
    std::vector<Plug> plugs;
    for (const std::string& attribute : attributes_) {
        const std::string name = ShownName(*node) + "." + attribute;
        if (call_.GetHost().scene().HasPlug(name)) {
            AddLeaves(call_.GetHost().scene().FindPlug(name), plugs);
        }
    }
    return plugs;
}

std::vector<Plug> KeyArguments::KeyablePlugs() const {
    std::vector<Plug> plugs = plugs_;
    for (const std::shared_ptr<Node>& node : nodes_) {
        const std::vector<Plug> more = attributes_.empty() ? animation::KeyablePlugs(node) : GivenPlugs(node);
        plugs.insert(plugs.end(), more.begin(), more.end());
    }
    return plugs;
}

std::vector<KeySet> KeyArguments::KeySets(bool withEmpty) const {
    std::vector<std::shared_ptr<AnimCurveNode>> curves;
    const auto addOf = [&curves](const std::vector<Plug>& plugs) {
        for (const Plug& plug : plugs) {
            if (AnimCurveNode* curve = plug.AnimationCurve()) {
                curves.push_back(std::static_pointer_cast<AnimCurveNode>(curve->Shared()));
            }
        }
    };
    addOf(plugs_);
    for (const std::shared_ptr<Node>& node : nodes_) {
        if (const auto curve = std::dynamic_pointer_cast<AnimCurveNode>(node)) {
            curves.push_back(curve);
        } else if (!attributes_.empty()) {
            addOf(GivenPlugs(node));
        } else {
            const auto more = animation::CurvesOf(node);
            curves.insert(curves.end(), more.begin(), more.end());
        }
    }
    std::vector<KeySet> sets;
    if (call_.StringOr("-animation", "") == "keys") {
        // -animation keys means the keys selected in a graph editor, and there is none.
        return sets;
    }
    for (const std::shared_ptr<AnimCurveNode>& curve : curves) {
        KeySet set{curve, {}};
        for (std::size_t i = 0; i < curve->Curve().Keys().size(); ++i) {
            if (HoldsKey(*curve, i)) {
                set.keys.push_back(i);
            }
        }
        const bool isNew =
            std::none_of(sets.begin(), sets.end(), [&](const KeySet& other) { return other.node == curve; });
        if (isNew && (withEmpty || !set.keys.empty())) {
            sets.push_back(std::move(set));
        }
    }
    return sets;
}

std::vector<double> KeyArguments::Times() const {
    std::vector<double> times;
    for (const Range& range : times_) {
        times.push_back(range.first);
    }
    for (const Range& range : inputs_) {
        times.push_back(range.first);
    }
    if (times.empty()) {
        times.push_back(call_.GetHost().time().CurrentTime());
    }
    if (!std::all_of(times.begin(), times.end(), [](double time) { return std::isfinite(time); })) {
        call_.Fail("A time was expected, not a range without a start.");
    }
    return times;
}

TangentType KeyArguments::TangentNamed(const CommandCall& call, const std::string& name) {
    for (const TangentName& tangent : TANGENT_NAMES) {
        if (name == tangent.name) {
            return tangent.type;
        }
    }
    call.Fail("Unknown tangent type: \"" + name + "\".");
}

std::string KeyArguments::NameOf(TangentType type) {
    for (const TangentName& tangent : TANGENT_NAMES) {
        if (type == tangent.type) {
            return tangent.name;
        }
    }
    return "auto";
}

} // namespace lightbox::mel
