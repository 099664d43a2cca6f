#pragma once

#include "scene/AnimCurve.h"
#include "scene/Plug.h"

#include <functional>
#include <memory>
#include <vector>

namespace lightbox {

class AnimCurveNode;
class Host;

/// Animation edits and queries for commands and the time slider. Edits fire "timeSliderChanged" and can be
/// undone. An edit that is refused throws SceneError and changes nothing.
namespace animation {

/// The plugs of a node's numeric attributes that are keyable and neither locked nor driven by anything but
/// animation.
std::vector<Plug> KeyablePlugs(const std::shared_ptr<Node>& node);
/// The curves connected directly to the node's attributes, in the order of the attributes.
std::vector<std::shared_ptr<AnimCurveNode>> CurvesOf(const std::shared_ptr<Node>& node);
/// The key times of the nodes and of their shapes, sorted, without duplicates.
std::vector<double> KeyTimesOf(const std::vector<std::shared_ptr<Node>>& nodes);

/// The time-driven curve of a plug; when nothing drives the plug, a new curve without keys.
std::shared_ptr<AnimCurveNode> RequireCurve(Host& host, const Plug& plug);
/// Replaces the node's curve. A curve without keys is deleted with its node; the plug it drove keeps its
/// value.
void SetCurve(Host& host, const std::shared_ptr<AnimCurveNode>& node, const AnimCurve& curve);

} // namespace animation

} // namespace lightbox
