#include "scene/AnimationEdit.h"

#include "scene/AnimCurveNode.h"
#include "scene/DagNode.h"
#include "scene/Edit.h"
#include "scene/EventBus.h"
#include "scene/Host.h"
#include "scene/Scene.h"
#include "scene/SceneError.h"
#include "scene/Timeline.h"

#include <algorithm>
#include <set>

namespace lightbox::animation {

namespace {

void AddKeyable(const Plug& plug, std::vector<Plug>& plugs) {
    if (plug.IsArray()) {
        return;
    }
    for (std::size_t i = 0; i < plug.attribute->Children().size(); ++i) {
        AddKeyable(plug.Child(i), plugs);
    }
    if (plug.attribute->IsNumber() && plug.IsKeyable() && plug.WhyNotSettable().empty()) {
        plugs.push_back(plug);
    }
}

void AddCurves(const Plug& plug, std::vector<std::shared_ptr<AnimCurveNode>>& curves) {
    if (AnimCurveNode* curve = plug.AnimationCurve()) {
        curves.push_back(std::static_pointer_cast<AnimCurveNode>(curve->Shared()));
    }
    for (std::size_t i = 0; i < plug.attribute->Children().size(); ++i) {
        AddCurves(plug.Child(i), curves);
    }
}

const char* CurveTypeFor(const Attribute& attribute) {
    switch (attribute.Kind()) {
    case AttributeKind::Distance:
        return "animCurveTL";
    case AttributeKind::Angle:
        return "animCurveTA";
    case AttributeKind::Time:
        return "animCurveTT";
    default:
        return "animCurveTU";
    }
}

/// The name of a new curve: "box_translateX", illegal characters left out.
std::string NameFor(const Plug& plug) {
    std::string name = plug.node->Name() + "_" + plug.attribute->LongName();
    if (plug.element >= 0) {
        name += "_" + std::to_string(plug.element) + "_";
    }
    return name;
}

std::vector<Plug> HeldBy(const AnimCurveNode& node) {
    std::vector<Plug> held;
    if (const Scene* scene = node.InScene()) {
        for (const Connection& connection : scene->connections().Of(node)) {
            if (connection.source.node.get() == &node && connection.destination.IsHeld()) {
                held.push_back(connection.destination);
            }
        }
    }
    return held;
}

void SetHeld(const std::vector<Plug>& plugs, bool held) {
    for (const Plug& plug : plugs) {
        plug.SetHeld(held);
    }
}

/// Stores the curve's current value in the plugs that it drives.
void KeepValues(Host& host, const AnimCurveNode& node) {
    for (const Connection& connection : host.scene().connections().Of(node)) {
        if (connection.source.node.get() == &node) {
            const Plug plug = connection.destination;
            const AttributeValue value = plug.Get();
            const std::optional<AttributeValue> before = plug.Stored();
            const bool wasHeld = plug.IsHeld();
            const auto undo = [plug, before, wasHeld] {
                plug.Store(before);
                plug.SetHeld(wasHeld);
            };
            edit::Do(
                host, "setAttr", [plug, value] { plug.Store(value); }, undo);
        }
    }
}

} // namespace

std::vector<Plug> KeyablePlugs(const std::shared_ptr<Node>& node) {
    std::vector<Plug> plugs;
    for (const std::shared_ptr<Attribute>& attribute : node->Attributes()) {
        AddKeyable(Plug(node, attribute), plugs);
    }
    return plugs;
}

std::vector<std::shared_ptr<AnimCurveNode>> CurvesOf(const std::shared_ptr<Node>& node) {
    std::vector<std::shared_ptr<AnimCurveNode>> curves;
    if (!node->InScene() || node->InScene()->connections().Of(*node).empty()) {
        return curves;
    }
    for (const std::shared_ptr<Attribute>& attribute : node->Attributes()) {
        const Plug plug(node, attribute);
        if (plug.IsArray()) {
            for (const Plug& element : plug.Elements()) {
                AddCurves(element, curves);
            }
        } else {
            AddCurves(plug, curves);
        }
    }
    return curves;
}

std::vector<double> KeyTimesOf(const std::vector<std::shared_ptr<Node>>& nodes) {
    std::set<double> times;
    const auto add = [&times](const std::shared_ptr<Node>& node) {
        for (const std::shared_ptr<AnimCurveNode>& curve : CurvesOf(node)) {
            if (curve->IsOverTime()) {
                for (const AnimCurve::Key& key : curve->Curve().Keys()) {
                    times.insert(key.time);
                }
            }
        }
    };
    for (const std::shared_ptr<Node>& node : nodes) {
        add(node);
        if (const auto* dag = dynamic_cast<const DagNode*>(node.get())) {
            for (DagNode* shape : dag->Shapes()) {
                add(shape->Shared());
            }
        }
    }
    return {times.begin(), times.end()};
}

std::shared_ptr<AnimCurveNode> RequireCurve(Host& host, const Plug& plug) {
    if (AnimCurveNode* curve = plug.AnimationCurve()) {
        return std::static_pointer_cast<AnimCurveNode>(curve->Shared());
    }
    if (!plug.attribute->IsNumber() || plug.IsArray()) {
        throw SceneError("Cannot set keys on the attribute '" + plug.Name() + "'.");
    }
    const std::string reason = plug.WhyNotSettable();
    if (!reason.empty()) {
        throw SceneError(reason);
    }
    const std::shared_ptr<Node> node = edit::CreateNode(host, CurveTypeFor(*plug.attribute), NameFor(plug));
    const TangentDefaults& defaults = host.scene().tangentDefaults;
    // The curve's own type applies to all keys that store none.
    edit::SetPlug(host, Plug::Of(*node, "tangentType"), static_cast<double>(defaults.in));
    edit::SetPlug(host, Plug::Of(*node, "weightedTangents"), defaults.weighted ? 1.0 : 0.0);
    edit::Connect(host, Plug::Of(*node, "output"), plug);
    return std::static_pointer_cast<AnimCurveNode>(node);
}

void SetCurve(Host& host, const std::shared_ptr<AnimCurveNode>& node, const AnimCurve& curve) {
    EventBus& events = host.events();
    if (curve.Keys().empty()) {
        KeepValues(host, *node);
        edit::DeleteNodes(host, {node});
        events.Fire("timeSliderChanged");
        return;
    }
    const auto before = std::make_shared<Node::PlugStates>();
    const std::vector<Plug> held = HeldBy(*node);
    const auto redo = [node, curve, before, held, &events] {
        *before = node->TakeCurve();
        node->SetCurve(curve);
        SetHeld(held, false);
        events.Fire("timeSliderChanged");
    };
    const auto undo = [node, before, held, &events] {
        node->TakeCurve();
        node->PutStates(std::move(*before));
        SetHeld(held, true);
        events.Fire("timeSliderChanged");
    };
    edit::Do(host, "setKeyframe", redo, undo);
}

} // namespace lightbox::animation
