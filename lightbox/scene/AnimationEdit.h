#pragma once

#include "scene/AnimCurve.h"
#include "scene/Plug.h"

#include <functional>
#include <memory>
#include <vector>

namespace lightbox {

class AnimCurveNode;
class Host;

/// Animation as commands and the time slider work with it. Edits fire "timeSliderChanged", can be undone, and
/// throw SceneError when they cannot be done, which changes nothing.
namespace animation {

/// The numbers of a node that are keyable and neither locked nor driven by anything but animation, one plug
/// for each.
std::vector<Plug> KeyablePlugs(const std::shared_ptr<Node>& node);
/// The curves that drive the node's attributes directly, in the order of the attributes.
std::vector<std::shared_ptr<AnimCurveNode>> CurvesOf(const std::shared_ptr<Node>& node);
/// The times of the keys of those nodes and of their shapes, in order, each once.
std::vector<double> KeyTimesOf(const std::vector<std::shared_ptr<Node>>& nodes);

/// The curve over time that drives a plug; a new one without keys when nothing does yet.
std::shared_ptr<AnimCurveNode> RequireCurve(Host& host, const Plug& plug);
/// Gives the node another curve. One that has no keys left is deleted with its node, and what it drove keeps
/// its value.
void SetCurve(Host& host, const std::shared_ptr<AnimCurveNode>& node, const AnimCurve& curve);

} // namespace animation

} // namespace lightbox
