#include "commands/KeyArguments.h"
#include "commands/Registration.h"
#include "scene/AnimationEdit.h"
#include "scene/Host.h"
#include "scene/Scene.h"

#include <algorithm>
#include <cmath>

namespace lightbox::mel {
namespace {

/// True for attributes without values in between, whose keys are stepped.
bool IsStepped(const Attribute& attribute) {
    return attribute.Kind() == AttributeKind::Bool || attribute.Kind() == AttributeKind::Enum;
}

/// Adds full turns to an angle in degrees so that it is nearest to the previous key's value.
double NearestAngle(const AnimCurve& curve, double time, double angle) {
    const std::vector<AnimCurve::Key>& keys = curve.Keys();
    const auto next =
        std::find_if(keys.begin(), keys.end(), [&](const AnimCurve::Key& key) { return key.time >= time; });
    return next == keys.begin() ? angle : angle + 360.0 * std::round(((next - 1)->value - angle) / 360.0);
}

/// Runs one call of setKeyframe: sets the same keys on several attributes.
class SetKeyframeCall {
public:
    explicit SetKeyframeCall(CommandCall& call)
        : call_(call)
        , arguments_(call)
        , times_(arguments_.Times()) {}

    Value Run();

private:
    bool IsWanted(const Plug& plug) const;
    int KeyPlug(const Plug& plug) const;
    AnimCurve::Key NewKey(const Plug& plug, const AnimCurve& curve, double time, double value) const;

    CommandCall& call_;
    KeyArguments arguments_;
    std::vector<double> times_;
};

bool SetKeyframeCall::IsWanted(const Plug& plug) const {
    const bool isAnimated = plug.AnimationCurve() != nullptr;
    if (call_.Has("-respectKeyable") && call_.Bool("-respectKeyable") && !plug.IsKeyable()) {
        return false;
    }
    const bool needsAnimation = call_.Has("-animated") || (call_.Has("-insert") && call_.Bool("-insert"));
    return plug.attribute->IsNumber() && !plug.IsLocked() && (isAnimated || !needsAnimation);
}

AnimCurve::Key SetKeyframeCall::NewKey(const Plug& plug, const AnimCurve& curve, double time,
                                       double value) const {
    const TangentDefaults& defaults = call_.GetHost().scene().tangentDefaults;
    AnimCurve::Key key;
    if (const auto same = curve.Find(time)) {
        key = curve.Keys()[*same];
    } else {
        key.time = time;
        key.inType = defaults.in;
        key.outType = IsStepped(*plug.attribute) ? TangentType::Step : defaults.out;
    }
    key.value = value;
    if (plug.attribute->Kind() == AttributeKind::Angle && call_.Has("-minimizeRotation") &&
        call_.Bool("-minimizeRotation")) {
        key.value = NearestAngle(curve, time, value);
    }
    if (call_.Has("-inTangentType")) {
        key.inType = KeyArguments::TangentNamed(call_, call_.String("-inTangentType"));
    }
    if (call_.Has("-outTangentType")) {
        key.outType = KeyArguments::TangentNamed(call_, call_.String("-outTangentType"));
    }
    if (call_.Has("-breakdown")) {
        key.isBreakdown = call_.Bool("-breakdown");
    }
    return key;
}

int SetKeyframeCall::KeyPlug(const Plug& plug) const {
    const double value = call_.Has("-value") ? call_.Float("-value") : plug.Number();
    const bool isInserting = call_.Has("-insert") && call_.Bool("-insert");
    const std::shared_ptr<AnimCurveNode> node = animation::RequireCurve(call_.GetHost(), plug);
    AnimCurve curve = node->Curve();
    int count = 0;
    for (const double time : times_) {
        if (isInserting) {
            count += curve.InsertOnCurve(time) ? 1 : 0;
        } else {
            curve.Insert(NewKey(plug, curve, time, value));
            ++count;
        }
    }
    if (count > 0) {
        animation::SetCurve(call_.GetHost(), node, curve);
    }
    return count;
}

Value SetKeyframeCall::Run() {
    if (call_.StringOr("-inTangentType", "").rfind("step", 0) == 0) {
        call_.Fail("Only out tangents can be stepped.");
    }
    const std::vector<Plug> plugs = arguments_.KeyablePlugs();
    if (plugs.empty()) {
        call_.Fail("Nothing to set keys on was specified or selected.");
    }
    int count = 0;
    for (const Plug& plug : plugs) {
        if (IsWanted(plug)) {
            count += KeyPlug(plug);
        }
    }
    return count;
}

} // namespace

void RegisterSetKeyframeCommand(CommandRegistry& registry) {
    SyntaxBuilder syntax;
    KeyArguments::AddObjectFlags(syntax)
        .RangeFlag("-t", "-time")
        .MultiUse()
        .RangeFlag("-f", "-float")
        .MultiUse()
        .Flag("-v", "-value", MSyntax::kDouble)
        .Flag("-itt", "-inTangentType", MSyntax::kString)
        .Flag("-ott", "-outTangentType", MSyntax::kString)
        .Flag("-i", "-insert", MSyntax::kBoolean)
        .Flag("-bd", "-breakdown", MSyntax::kBoolean)
        .Flag("-rk", "-respectKeyable", MSyntax::kBoolean)
        .Flag("-an", "-animated")
        .Flag("-mr", "-minimizeRotation", MSyntax::kBoolean)
        .Flag("-dd", "-dirtyDG", MSyntax::kBoolean)
        .Flag("-nr", "-noResolve", MSyntax::kBoolean);
    AddSceneCommand(registry, "setKeyframe", syntax,
                    [](CommandCall& call) { return SetKeyframeCall(call).Run(); });
}

} // namespace lightbox::mel
