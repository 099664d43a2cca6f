#include "commands/KeyArguments.h"
#include "commands/Registration.h"
#include "scene/AnimationEdit.h"
#include "scene/Host.h"
#include "scene/Scene.h"
#include "scene/Timeline.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace lightbox::mel {
namespace {

using Key = AnimCurve::Key;

/// Runs one call of keyframe: queries keys or moves them.
class KeyframeCall {
public:
    explicit KeyframeCall(CommandCall& call)
        : call_(call)
        , arguments_(call) {}

    Value Run() { return call_.IsQuery() ? Query() : Edit(); }

private:
    Value Query() const;
    Value Evaluated() const;
    Value Edit() const;
    bool EditCurve(const KeySet& set) const;
    bool MoveInTime(std::vector<Key>& keys, const std::vector<std::size_t>& moved) const;
    bool CanMove(const std::vector<Key>& keys, const std::set<std::size_t>& moved, std::size_t index,
                 double time, const std::string& option) const;
    double NewTime(const Key& key) const;

    CommandCall& call_;
    KeyArguments arguments_;
};

Value KeyframeCall::Evaluated() const {
    Value::FloatArray values;
    for (const KeySet& set : arguments_.KeySets(true)) {
        for (const double time : arguments_.Times()) {
            values.push_back(set.node->Curve().Evaluate(time));
        }
    }
    return values;
}

Value KeyframeCall::Query() const {
    if (call_.Has("-eval")) {
        return Evaluated();
    }
    int count = 0;
    Value::FloatArray numbers;
    Value::IntArray places;
    Value::StringArray names;
    const bool wantsTimes = call_.Has("-timeChange") || call_.Has("-floatChange");
    const bool wantsSelected = call_.Has("-selected") || call_.Has("-lastSelected");
    for (const KeySet& set : wantsSelected ? std::vector<KeySet>() : arguments_.KeySets()) {
        names.push_back(ShownName(*set.node));
        for (const std::size_t i : set.keys) {
            const Key& key = set.node->Curve().Keys()[i];
            if (call_.Has("-breakdown") && !key.isBreakdown) {
                continue;
            }
            ++count;
            places.push_back(static_cast<int>(i));
            if (wantsTimes || call_.Has("-breakdown")) {
                numbers.push_back(key.time);
            }
            if (call_.Has("-valueChange")) {
                numbers.push_back(key.value);
            }
        }
    }
    if (call_.Has("-name")) {
        return names;
    }
    if (call_.Has("-indexValue")) {
        return places;
    }
    const bool wantsNumbers = wantsTimes || call_.Has("-valueChange") || call_.Has("-breakdown");
    return wantsNumbers ? Value(numbers) : Value(count);
}

double KeyframeCall::NewTime(const Key& key) const {
    const bool isRelative = call_.Has("-relative");
    if (call_.Has("-timeChange")) {
        const double given = KeyArguments::TimeOf(call_, call_.Argument("-timeChange"));
        return isRelative ? key.time + given : given;
    }
    return isRelative ? key.time + call_.Float("-floatChange") : call_.Float("-floatChange");
}

/// True when the key may move to `time`. "over" allows every time without a key; "move" also keeps the key
/// between its neighbours.
bool KeyframeCall::CanMove(const std::vector<Key>& keys, const std::set<std::size_t>& moved,
                           std::size_t index, double time, const std::string& option) const {
    for (std::size_t other = 0; other < keys.size(); ++other) {
        if (moved.count(other) != 0) {
            continue;
        }
        const double at = keys[other].time;
        const bool isTaken = std::abs(at - time) < AnimCurve::SAME_TIME;
        const bool isCrossed = (at - keys[index].time) * (at - time) < 0.0;
        if (isTaken || (option == "move" && isCrossed)) {
            return false;
        }
    }
    return true;
}

bool KeyframeCall::MoveInTime(std::vector<Key>& keys, const std::vector<std::size_t>& moved) const {
    const std::string option = call_.StringOr("-option", "over");
    const std::set<std::size_t> set(moved.begin(), moved.end());
    const std::vector<Key> before = keys;
    bool any = false;
    for (const std::size_t i : moved) {
        const double time = NewTime(before[i]);
        const double distance = time - before[i].time;
        if (option != "insert" && !CanMove(before, set, i, time, option)) {
            continue;
        }
        keys[i].time = time;
        any = any || distance != 0.0;
        if (option == "insert" && i == (distance > 0.0 ? moved.back() : moved.front())) {
            for (std::size_t other = 0; other < keys.size(); ++other) {
                if (set.count(other) == 0 && (distance > 0.0 ? other > i : other < i)) {
                    keys[other].time += distance;
                }
            }
        }
    }
    return any;
}

bool KeyframeCall::EditCurve(const KeySet& set) const {
    AnimCurve curve = set.node->Curve();
    std::vector<Key> keys = curve.Keys();
    bool isChanged = false;
    for (const std::size_t i : set.keys) {
        if (call_.Has("-valueChange")) {
            const double given = call_.Float("-valueChange");
            keys[i].value = call_.Has("-relative") ? keys[i].value + given : given;
            isChanged = true;
        }
        if (call_.Has("-breakdown")) {
            keys[i].isBreakdown = call_.Bool("-breakdown");
            isChanged = true;
        }
    }
    if (call_.Has("-timeChange") || call_.Has("-floatChange")) {
        isChanged = MoveInTime(keys, set.keys) || isChanged;
    }
    if (isChanged) {
        curve.SetKeys(std::move(keys));
        animation::SetCurve(call_.GetHost(), set.node, curve);
    }
    return isChanged;
}

Value KeyframeCall::Edit() const {
    const std::string option = call_.StringOr("-option", "over");
    if (option != "over" && option != "move" && option != "insert") {
        call_.Fail("-option takes \"over\", \"move\" or \"insert\", not \"" + option + "\".");
    }
    int count = 0;
    for (const KeySet& set : arguments_.KeySets()) {
        count += EditCurve(set) ? 1 : 0;
    }
    return count;
}

std::vector<double> TimesOf(const std::vector<KeySet>& sets) {
    std::set<double> times;
    for (const KeySet& set : sets) {
        for (const std::size_t i : set.keys) {
            times.insert(set.node->Curve().Keys()[i].time);
        }
    }
    return {times.begin(), times.end()};
}

/// Returns the time of the key that `which` asks for. "next" and "previous" wrap around at the ends.
double KeyTimeFor(const std::vector<double>& times, const std::string& which, double from) {
    if (which == "first" || which == "last") {
        return which == "first" ? times.front() : times.back();
    }
    if (which == "next") {
        const auto next = std::upper_bound(times.begin(), times.end(), from + AnimCurve::SAME_TIME);
        return next == times.end() ? times.front() : *next;
    }
    const auto here = std::lower_bound(times.begin(), times.end(), from - AnimCurve::SAME_TIME);
    return here == times.begin() ? times.back() : *(here - 1);
}

Value FindKeyframe(CommandCall& call) {
    const std::string which = call.StringOr("-which", "next");
    if (which != "next" && which != "previous" && which != "first" && which != "last") {
        call.Fail("-which takes \"next\", \"previous\", \"first\" or \"last\", not \"" + which + "\".");
    }
    const std::vector<KeySet> sets = KeyArguments(call, false).KeySets();
    if (call.Has("-curve")) {
        Value::StringArray names;
        for (const KeySet& set : sets) {
            names.push_back(ShownName(*set.node));
        }
        return names;
    }
    const double from = call.Has("-time") ? KeyArguments::TimeOf(call, call.Argument("-time"))
                                          : call.GetHost().time().CurrentTime();
    const std::vector<double> times = TimesOf(sets);
    return times.empty() ? from : KeyTimeFor(times, which, from);
}

} // namespace

void RegisterKeyframeCommands(CommandRegistry& registry) {
    SyntaxBuilder keyframe;
    KeyArguments::AddFlags(keyframe)
        .Flag("-kc", "-keyframeCount")
        .RangeFlag("-tc", "-timeChange")
        .Flag("-fc", "-floatChange", MSyntax::kDouble)
        .Flag("-vc", "-valueChange", MSyntax::kDouble)
        .Flag("-iv", "-indexValue")
        .Flag("-n", "-name")
        .Flag("-sl", "-selected")
        .Flag("-lsl", "-lastSelected")
        .Flag("-ev", "-eval")
        .Flag("-bd", "-breakdown", MSyntax::kBoolean)
        .Flag("-a", "-absolute")
        .Flag("-r", "-relative")
        .Flag("-o", "-option", MSyntax::kString)
        .Query()
        .Edit();
    AddSceneCommand(registry, "keyframe", keyframe,
                    [](CommandCall& call) { return KeyframeCall(call).Run(); });
    SyntaxBuilder find;
    KeyArguments::AddObjectFlags(find)
        .Flag("-w", "-which", MSyntax::kString)
        .RangeFlag("-t", "-time")
        .Flag("-c", "-curve")
        .Flag("-ts", "-timeSlider")
        .Flag("-an", "-animation", MSyntax::kString);
    AddSceneCommand(registry, "findKeyframe", find, FindKeyframe);
}

} // namespace lightbox::mel
