#pragma once

#include "mel/CommandCall.h"

#include <Imath/ImathMatrix.h>
#include <Imath/ImathVec.h>
#include <string>
#include <vector>

namespace lightbox {
class DagNode;
class Host;
} // namespace lightbox

/// Helpers of the commands that place transforms. Angles are in degrees; matrices are for row vectors.
namespace lightbox::mel {

/// Returns the named transforms, else the selected ones. A shape stands for its transform. Fails for other
/// nodes.
std::vector<DagNode*> Transforms(const CommandCall& call, const std::vector<std::string>& names);
/// True for a number or a text that reads as a number. No node name does.
bool IsNumeric(const Value& value);

Imath::V3d GetTriple(DagNode& node, const char* attribute);
/// Sets only the children whose values change, so a locked or driven child with its old value is no obstacle.
void SetTriple(Host& host, DagNode& node, const char* attribute, const Imath::V3d& value);
int RotateOrder(DagNode& node);

Imath::M44d ParentMatrix(DagNode& node);
/// Returns the node's origin in world space.
Imath::V3d WorldPosition(DagNode& node);
/// Converts an offset from world space to the space of the node's parent.
Imath::V3d OffsetInParent(DagNode& node, const Imath::V3d& offset);

/// Converts an offset from the parent's space to the space before the node's rotation.
Imath::V3d OffsetBeforeRotation(DagNode& node, const Imath::V3d& offset);

/// Returns the node's rotation in world space, in the node's rotate order.
Imath::V3d WorldAngles(DagNode& node);
/// Returns the value of `rotate` that gives the node these angles in world space.
Imath::V3d AnglesForWorld(DagNode& node, const Imath::V3d& angles);
/// Returns the value of `rotate` after a further turn about the world's axes or the node's own axes.
Imath::V3d TurnedAngles(DagNode& node, const Imath::V3d& turn, int order, bool aboutWorld);
/// Returns the value of `rotate` that keeps the node's orientation in another rotate order.
Imath::V3d AnglesForOrder(DagNode& node, int order);

} // namespace lightbox::mel
