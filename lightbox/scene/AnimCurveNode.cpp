#include "scene/AnimCurveNode.h"

#include "scene/Plug.h"
#include "scene/Scene.h"
#include "scene/TimeUnits.h"
#include "scene/Timeline.h"

namespace lightbox {

namespace {

constexpr double DEGREES_PER_RADIAN = 180.0 / 3.14159265358979323846;

double NumberIn(const PlugState* state, double standard) {
    const double* number = state && state->isSet ? std::get_if<double>(&state->value) : nullptr;
    return number ? *number : standard;
}

/// The attributes of the keys, looked up once.
struct KeyAttributes {
    explicit KeyAttributes(const Node& node)
        : keys(node.FindAttribute("keyTimeValue"))
        , time(keys->Children()[0])
        , value(keys->Children()[1])
        , inType(node.FindAttribute("keyTanInType"))
        , outType(node.FindAttribute("keyTanOutType"))
        , inX(node.FindAttribute("keyTanInX"))
        , inY(node.FindAttribute("keyTanInY"))
        , outX(node.FindAttribute("keyTanOutX"))
        , outY(node.FindAttribute("keyTanOutY"))
        , locked(node.FindAttribute("keyTanLocked"))
        , weightLocked(node.FindAttribute("keyWeightLocked"))
        , breakdown(node.FindAttribute("keyBreakdown")) {}

    std::shared_ptr<Attribute> keys;
    std::shared_ptr<Attribute> time;
    std::shared_ptr<Attribute> value;
    std::shared_ptr<Attribute> inType;
    std::shared_ptr<Attribute> outType;
    std::shared_ptr<Attribute> inX;
    std::shared_ptr<Attribute> inY;
    std::shared_ptr<Attribute> outX;
    std::shared_ptr<Attribute> outY;
    std::shared_ptr<Attribute> locked;
    std::shared_ptr<Attribute> weightLocked;
    std::shared_ptr<Attribute> breakdown;
};

double ElementOf(const Node& node, const Attribute& attribute, int element, double standard) {
    return NumberIn(node.FindState(attribute, element), standard);
}

/// 0 means the default type of new keys.
TangentType TypeFrom(double number) {
    return number == 0.0 ? TangentType::Auto : static_cast<TangentType>(static_cast<int>(number));
}

double StoredNumber(const Node& node, const char* attribute) {
    const auto found = node.FindAttribute(attribute);
    return NumberIn(node.FindState(*found), std::get<double>(found->Default()));
}

void Put(Node& node, const Attribute& attribute, int element, double number) {
    PlugState state;
    state.isSet = true;
    state.value = number;
    node.SetState(attribute, element, state);
}

void PutTangent(Node& node, const Attribute& x, const Attribute& y, int element, TangentType type,
                const AnimCurve::Tangent& tangent) {
    if (type == TangentType::Fixed || !(tangent == AnimCurve::Tangent())) {
        Put(node, x, element, tangent.x);
        Put(node, y, element, tangent.y);
    }
}

} // namespace

bool AnimCurveNode::IsOverTime() const {
    return FindAttribute("input")->Kind() == AttributeKind::Time;
}

double AnimCurveNode::FramesPerSecond() const {
    return IsOverTime() && InScene() ? RateOf(InScene()->timeline().Unit()).PerSecond() : 1.0;
}

const AnimCurve& AnimCurveNode::Curve() const {
    const double rate = FramesPerSecond();
    if (curveRevision_ != Revision() || curveRate_ != rate) {
        curve_ = Read();
        curve_.framesPerSecond = rate;
        curveRevision_ = Revision();
        curveRate_ = rate;
    }
    return curve_;
}

AnimCurve AnimCurveNode::Read() const {
    const KeyAttributes at(*this);
    const double standardType = StoredNumber(*this, "tangentType");
    std::vector<AnimCurve::Key> keys;
    for (const int i : Elements(*at.keys)) {
        AnimCurve::Key key;
        key.time = ElementOf(*this, *at.time, i, 0.0);
        key.value = ElementOf(*this, *at.value, i, 0.0);
        key.inType = TypeFrom(ElementOf(*this, *at.inType, i, standardType));
        key.outType = TypeFrom(ElementOf(*this, *at.outType, i, standardType));
        key.in = {ElementOf(*this, *at.inX, i, 1.0), ElementOf(*this, *at.inY, i, 0.0)};
        key.out = {ElementOf(*this, *at.outX, i, 1.0), ElementOf(*this, *at.outY, i, 0.0)};
        key.isLocked = ElementOf(*this, *at.locked, i, 1.0) != 0.0;
        key.areWeightsLocked = ElementOf(*this, *at.weightLocked, i, 0.0) != 0.0;
        key.isBreakdown = ElementOf(*this, *at.breakdown, i, 0.0) != 0.0;
        keys.push_back(key);
    }
    AnimCurve curve;
    curve.SetKeys(std::move(keys));
    curve.isWeighted = StoredNumber(*this, "weightedTangents") != 0.0;
    curve.preInfinity = static_cast<Infinity>(static_cast<int>(StoredNumber(*this, "preInfinity")));
    curve.postInfinity = static_cast<Infinity>(static_cast<int>(StoredNumber(*this, "postInfinity")));
    curve.valueFactor = FindAttribute("output")->Kind() == AttributeKind::Angle ? DEGREES_PER_RADIAN : 1.0;
    return curve;
}

Node::PlugStates AnimCurveNode::TakeCurve() {
    PlugStates taken;
    for (const char* name : {"keyTimeValue", "keyTanInType", "keyTanOutType", "keyTanInX", "keyTanInY",
                             "keyTanOutX", "keyTanOutY", "keyTanLocked", "keyWeightLocked", "keyBreakdown",
                             "weightedTangents", "preInfinity", "postInfinity"}) {
        taken.merge(TakeStates(*FindAttribute(name)));
    }
    return taken;
}

void AnimCurveNode::SetCurve(const AnimCurve& curve) {
    TakeCurve();
    const KeyAttributes at(*this);
    const auto standardType = static_cast<TangentType>(static_cast<int>(StoredNumber(*this, "tangentType")));
    int i = 0;
    for (const AnimCurve::Key& key : curve.Keys()) {
        Put(*this, *at.time, i, key.time);
        Put(*this, *at.value, i, key.value);
        if (key.inType != standardType) {
            Put(*this, *at.inType, i, static_cast<double>(key.inType));
        }
        if (key.outType != standardType) {
            Put(*this, *at.outType, i, static_cast<double>(key.outType));
        }
        PutTangent(*this, *at.inX, *at.inY, i, key.inType, key.in);
        PutTangent(*this, *at.outX, *at.outY, i, key.outType, key.out);
        if (!key.isLocked) {
            Put(*this, *at.locked, i, 0.0);
        }
        if (key.areWeightsLocked) {
            Put(*this, *at.weightLocked, i, 1.0);
        }
        if (key.isBreakdown) {
            Put(*this, *at.breakdown, i, 1.0);
        }
        ++i;
    }
    Put(*this, *FindAttribute("weightedTangents"), -1, curve.isWeighted);
    Put(*this, *FindAttribute("preInfinity"), -1, static_cast<double>(curve.preInfinity));
    Put(*this, *FindAttribute("postInfinity"), -1, static_cast<double>(curve.postInfinity));
}

double AnimCurveNode::Input() const {
    const Plug input(std::const_pointer_cast<Node>(Shared()), FindAttribute("input"));
    const Scene* scene = InScene();
    if (IsOverTime() && scene && !scene->connections().SourceOf(input)) {
        return scene->timeline().EvaluationTime();
    }
    return input.Number();
}

double AnimCurveNode::Output() const {
    return Curve().Evaluate(Input());
}

} // namespace lightbox
