#include "commands/KeyArguments.h"
#include "commands/Registration.h"
#include "scene/AnimationEdit.h"
#include "scene/Host.h"
#include "scene/Scene.h"

#include <algorithm>

namespace lightbox::mel {
namespace {

using Key = AnimCurve::Key;

/// Runs one call of keyTangent: queries tangents or changes them.
class KeyTangentCall {
public:
    explicit KeyTangentCall(CommandCall& call)
        : call_(call) {}

    Value Run();

private:
    /// The in or out side of a key with its flags.
    struct Side {
        bool isIn;
        const char* type;
        const char* angle;
        const char* weight;
        const char* x;
        const char* y;
    };
    static constexpr Side IN{true, "-inTangentType", "-inAngle", "-inWeight", "-ix", "-iy"};
    static constexpr Side OUT{false, "-outTangentType", "-outAngle", "-outWeight", "-ox", "-oy"};

    Value Defaults() const;
    Value Query() const;
    void QueryKey(const AnimCurve& curve, std::size_t i, Value::FloatArray& numbers,
                  Value::StringArray& texts, Value::IntArray& states) const;
    void QuerySide(const AnimCurve& curve, std::size_t i, const Side& side, Value::FloatArray& numbers,
                   Value::StringArray& texts) const;
    bool EditCurve(const KeySet& set) const;
    void EditKey(AnimCurve& curve, std::size_t i) const;
    void EditSide(AnimCurve& curve, std::size_t i, const Side& side) const;
    /// Turns and stretches the opposite tangent as far as the two are locked together. `turn` is in degrees.
    void Follow(AnimCurve& curve, std::size_t i, const Side& side, double turn, double stretch) const;
    void SetFixed(AnimCurve& curve, std::size_t i, bool isIn, const AnimCurve::Tangent& tangent) const;
    TangentType TypeGiven(const Side& side) const;
    bool MovesSide(const Side& side) const;
    double Given(const char* flag, double before) const;

    CommandCall& call_;
};

TangentType KeyTangentCall::TypeGiven(const Side& side) const {
    const TangentType type = KeyArguments::TangentNamed(call_, call_.String(side.type));
    if (side.isIn && (type == TangentType::Step || type == TangentType::StepNext)) {
        call_.Fail("Only out tangents can be stepped.");
    }
    return type;
}

Value KeyTangentCall::Defaults() const {
    TangentDefaults& defaults = call_.GetHost().scene().tangentDefaults;
    if (call_.IsQuery()) {
        if (call_.Has("-weightedTangents")) {
            return defaults.weighted;
        }
        return Value::StringArray{KeyArguments::NameOf(call_.Has(OUT.type) ? defaults.out : defaults.in)};
    }
    TangentDefaults changed = defaults;
    if (call_.Has(IN.type)) {
        changed.in = TypeGiven(IN);
    }
    if (call_.Has(OUT.type)) {
        changed.out = TypeGiven(OUT);
    }
    if (call_.Has("-weightedTangents")) {
        changed.weighted = call_.Bool("-weightedTangents");
    }
    defaults = changed;
    return 0;
}

void KeyTangentCall::QuerySide(const AnimCurve& curve, std::size_t i, const Side& side,
                               Value::FloatArray& numbers, Value::StringArray& texts) const {
    const AnimCurve::Tangent tangent = side.isIn ? curve.InTangent(i) : curve.OutTangent(i);
    if (call_.Has(side.type)) {
        texts.push_back(KeyArguments::NameOf(side.isIn ? curve.Keys()[i].inType : curve.Keys()[i].outType));
    }
    if (call_.Has(side.angle)) {
        numbers.push_back(side.isIn ? curve.InAngle(i) : curve.OutAngle(i));
    }
    if (call_.Has(side.weight)) {
        numbers.push_back(side.isIn ? curve.InWeight(i) : curve.OutWeight(i));
    }
    if (call_.Has(side.x)) {
        numbers.push_back(tangent.x);
    }
    if (call_.Has(side.y)) {
        numbers.push_back(tangent.y);
    }
}

void KeyTangentCall::QueryKey(const AnimCurve& curve, std::size_t i, Value::FloatArray& numbers,
                              Value::StringArray& texts, Value::IntArray& states) const {
    QuerySide(curve, i, IN, numbers, texts);
    QuerySide(curve, i, OUT, numbers, texts);
    if (call_.Has("-lock")) {
        states.push_back(curve.Keys()[i].isLocked);
    }
    if (call_.Has("-weightLock")) {
        states.push_back(curve.Keys()[i].areWeightsLocked);
    }
}

Value KeyTangentCall::Query() const {
    Value::FloatArray numbers;
    Value::StringArray texts;
    Value::IntArray states;
    for (const KeySet& set : KeyArguments(call_).KeySets()) {
        const AnimCurve& curve = set.node->Curve();
        if (call_.Has("-weightedTangents")) {
            states.push_back(curve.isWeighted);
            continue;
        }
        for (const std::size_t i : set.keys) {
            QueryKey(curve, i, numbers, texts, states);
        }
    }
    const bool wantsTexts = call_.Has(IN.type) || call_.Has(OUT.type);
    const bool wantsStates = call_.Has("-lock") || call_.Has("-weightLock") || call_.Has("-weightedTangents");
    return wantsTexts ? Value(texts) : wantsStates ? Value(states) : Value(numbers);
}

bool KeyTangentCall::MovesSide(const Side& side) const {
    return call_.Has(side.angle) || call_.Has(side.weight) || call_.Has(side.x) || call_.Has(side.y);
}

double KeyTangentCall::Given(const char* flag, double before) const {
    if (!call_.Has(flag)) {
        return before;
    }
    return call_.Has("-relative") ? before + call_.Float(flag) : call_.Float(flag);
}

void KeyTangentCall::SetFixed(AnimCurve& curve, std::size_t i, bool isIn,
                              const AnimCurve::Tangent& tangent) const {
    Key& key = curve.At(i);
    (isIn ? key.inType : key.outType) = TangentType::Fixed;
    (isIn ? key.in : key.out) = tangent;
}

void KeyTangentCall::Follow(AnimCurve& curve, std::size_t i, const Side& side, double turn,
                            double stretch) const {
    const Key& key = curve.Keys()[i];
    const double angle = side.isIn ? curve.OutAngle(i) : curve.InAngle(i);
    const double weight = side.isIn ? curve.OutWeight(i) : curve.InWeight(i);
    if (key.isLocked || (key.areWeightsLocked && curve.isWeighted)) {
        SetFixed(curve, i, !side.isIn,
                 curve.FromAngle(key.isLocked ? angle + turn : angle,
                                 key.areWeightsLocked && curve.isWeighted ? weight * stretch : weight));
    }
}

void KeyTangentCall::EditSide(AnimCurve& curve, std::size_t i, const Side& side) const {
    if (call_.Has(side.type)) {
        const TangentType type = TypeGiven(side);
        const AnimCurve::Tangent now = side.isIn ? curve.InTangent(i) : curve.OutTangent(i);
        if (type == TangentType::Fixed) {
            SetFixed(curve, i, side.isIn, now);
        } else {
            (side.isIn ? curve.At(i).inType : curve.At(i).outType) = type;
        }
    }
    if (!MovesSide(side)) {
        return;
    }
    const double angle = side.isIn ? curve.InAngle(i) : curve.OutAngle(i);
    const double weight = side.isIn ? curve.InWeight(i) : curve.OutWeight(i);
    AnimCurve::Tangent tangent = side.isIn ? curve.InTangent(i) : curve.OutTangent(i);
    if (call_.Has(side.angle) || call_.Has(side.weight)) {
        tangent = curve.FromAngle(Given(side.angle, angle), std::max(0.0, Given(side.weight, weight)));
    }
    tangent.x = Given(side.x, tangent.x);
    tangent.y = Given(side.y, tangent.y);
    SetFixed(curve, i, side.isIn, tangent);
    if (!MovesSide(side.isIn ? OUT : IN)) {
        const double newAngle = side.isIn ? curve.InAngle(i) : curve.OutAngle(i);
        const double newWeight = side.isIn ? curve.InWeight(i) : curve.OutWeight(i);
        Follow(curve, i, side, newAngle - angle, weight > 0.0 ? newWeight / weight : 1.0);
    }
}

void KeyTangentCall::EditKey(AnimCurve& curve, std::size_t i) const {
    if (call_.Has("-lock")) {
        curve.At(i).isLocked = call_.Bool("-lock");
    }
    if (call_.Has("-weightLock")) {
        curve.At(i).areWeightsLocked = call_.Bool("-weightLock");
    }
    EditSide(curve, i, IN);
    EditSide(curve, i, OUT);
}

bool KeyTangentCall::EditCurve(const KeySet& set) const {
    AnimCurve curve = set.node->Curve();
    if (call_.Has("-weightedTangents")) {
        curve.SetWeighted(call_.Bool("-weightedTangents"));
    }
    for (const std::size_t i : set.keys) {
        EditKey(curve, i);
    }
    animation::SetCurve(call_.GetHost(), set.node, curve);
    return true;
}

Value KeyTangentCall::Run() {
    if (call_.Has("-global")) {
        return Defaults();
    }
    if (call_.IsQuery()) {
        return Query();
    }
    int count = 0;
    for (const KeySet& set : KeyArguments(call_).KeySets()) {
        count += EditCurve(set) ? 1 : 0;
    }
    return count;
}

struct InfinityName {
    const char* name;
    Infinity mode;
};
constexpr InfinityName INFINITY_NAMES[] = {{"constant", Infinity::Constant},
                                           {"linear", Infinity::Linear},
                                           {"cycle", Infinity::Cycle},
                                           {"cycleRelative", Infinity::CycleWithOffset},
                                           {"oscillate", Infinity::Oscillate}};

Infinity InfinityGiven(const CommandCall& call, const char* flag) {
    for (const InfinityName& infinity : INFINITY_NAMES) {
        if (call.String(flag) == infinity.name) {
            return infinity.mode;
        }
    }
    call.Fail("Unknown infinity: \"" + call.String(flag) + "\".");
}

Value SetInfinity(CommandCall& call) {
    Value::StringArray names;
    int count = 0;
    for (const KeySet& set : KeyArguments(call).KeySets()) {
        AnimCurve curve = set.node->Curve();
        if (call.IsQuery()) {
            const Infinity mode = call.Has("-postInfinite") ? curve.postInfinity : curve.preInfinity;
            for (const InfinityName& infinity : INFINITY_NAMES) {
                if (infinity.mode == mode) {
                    names.push_back(infinity.name);
                }
            }
            continue;
        }
        if (call.Has("-preInfinite")) {
            curve.preInfinity = InfinityGiven(call, "-preInfinite");
        }
        if (call.Has("-postInfinite")) {
            curve.postInfinity = InfinityGiven(call, "-postInfinite");
        }
        animation::SetCurve(call.GetHost(), set.node, curve);
        ++count;
    }
    return call.IsQuery() ? Value(names) : Value(count);
}

} // namespace

void RegisterKeyTangentCommand(CommandRegistry& registry) {
    SyntaxBuilder tangent;
    KeyArguments::AddFlags(tangent)
        .Flag("-itt", "-inTangentType", MSyntax::kString)
        .Flag("-ott", "-outTangentType", MSyntax::kString)
        .Flag("-ia", "-inAngle", MSyntax::kDouble)
        .Flag("-oa", "-outAngle", MSyntax::kDouble)
        .Flag("-iw", "-inWeight", MSyntax::kDouble)
        .Flag("-ow", "-outWeight", MSyntax::kDouble)
        .Flag("-ix", "-ix", MSyntax::kDouble)
        .Flag("-iy", "-iy", MSyntax::kDouble)
        .Flag("-ox", "-ox", MSyntax::kDouble)
        .Flag("-oy", "-oy", MSyntax::kDouble)
        .Flag("-l", "-lock", MSyntax::kBoolean)
        .Flag("-wl", "-weightLock", MSyntax::kBoolean)
        .Flag("-wt", "-weightedTangents", MSyntax::kBoolean)
        .Flag("-g", "-global")
        .Flag("-a", "-absolute")
        .Flag("-r", "-relative")
        .Query()
        .Edit();
    AddSceneCommand(registry, "keyTangent", tangent,
                    [](CommandCall& call) { return KeyTangentCall(call).Run(); });
    SyntaxBuilder infinity;
    KeyArguments::AddFlags(infinity)
        .Flag("-pri", "-preInfinite", MSyntax::kString)
        .Flag("-poi", "-postInfinite", MSyntax::kString)
        .Query()
        .Edit();
    AddSceneCommand(registry, "setInfinity", infinity, SetInfinity);
}

} // namespace lightbox::mel
