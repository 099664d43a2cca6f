#pragma once

#include "scene/AnimCurve.h"
#include "scene/Node.h"

#include <cstdint>

namespace lightbox {

/// An animation curve node: types animCurveTL, TA, TT and TU are driven by time, animCurveUL, UA, UT and UU
/// by any number. Its attributes hold the curve.
class AnimCurveNode : public Node {
public:
    using Node::Node;

    /// Whether time drives the curve. Unconnected, such a curve uses the time that the scene shows.
    bool IsOverTime() const;
    /// The curve, rebuilt from the attributes when they have changed since the last call.
    const AnimCurve& Curve() const;
    /// Writes the curve to the attributes, without undo; AnimationEdit.h has the undoable edit.
    void SetCurve(const AnimCurve& curve);
    /// Moves out the states of all plugs that hold the curve, for PutStates().
    PlugStates TakeCurve();
    /// The curve's value at its current input.
    double Output() const;

private:
    AnimCurve Read() const;
    double FramesPerSecond() const;
    double Input() const;

    mutable AnimCurve curve_;
    mutable std::uint64_t curveRevision_ = ~std::uint64_t(0);
    mutable double curveRate_ = 0.0;
};

} // namespace lightbox
