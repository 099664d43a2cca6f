#pragma once

#include "scene/AnimCurve.h"
#include "scene/Node.h"

#include <cstdint>

namespace lightbox {

/// An animation curve in the scene: the node types animCurveTL, TA, TT and TU, which go by time, and
/// animCurveUL, UA, UT and UU, which go by any number. What the curve is, its attributes say.
class AnimCurveNode : public Node {
public:
    using Node::Node;

    /// Whether its input is time; without a connection that is the time that the scene shows.
    bool IsOverTime() const;
    /// Made of the attributes when they have changed since it was last asked for.
    const AnimCurve& Curve() const;
    /// Sets the attributes, which is not recorded for undo; see AnimationEdit.h.
    void SetCurve(const AnimCurve& curve);
    /// Moves out all that makes the curve, for PutStates().
    PlugStates TakeCurve();
    /// The curve's value at its input.
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
