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

/// What the commands that place transforms share. Angles in degrees; matrices for row vectors.
namespace lightbox::mel {

/// The transforms that a call works on: its objects, else the selection; a shape stands for its transform.
std::vector<DagNode*> Transforms(const CommandCall& call, const std::vector<std::string>& names);
/// A number, or a text that is one: no node's name is.
bool IsNumeric(const Value& value);

Imath::V3d GetTriple(DagNode& node, const char* attribute);
/// Sets what differs, child by child, so that a locked or driven child that keeps its value is in nobody's
/// way.
void SetTriple(Host& host, DagNode& node, const char* attribute, const Imath::V3d& value);
int RotateOrder(DagNode& node);

Imath::M44d ParentMatrix(DagNode& node);
/// Where the node is in the world.
Imath::V3d WorldPosition(DagNode& node);
/// A point or an offset of the world as the node's parent sees it.
Imath::V3d OffsetInParent(DagNode& node, const Imath::V3d& offset);

/// An offset of the node's parent as it is before the node's rotation.
Imath::V3d OffsetBeforeRotation(DagNode& node, const Imath::V3d& offset);

/// The angles of the node as they are seen from the world, and those of `rotate` that it has when these are
/// wanted.
Imath::V3d WorldAngles(DagNode& node);
Imath::V3d AnglesForWorld(DagNode& node, const Imath::V3d& angles);
/// The angles of `rotate` after a turn about the world's axes, or the node's own.
Imath::V3d TurnedAngles(DagNode& node, const Imath::V3d& turn, int order, bool aboutWorld);
/// The angles of `rotate` with which the node, in another rotate order, stays as it is.
Imath::V3d AnglesForOrder(DagNode& node, int order);

} // namespace lightbox::mel
