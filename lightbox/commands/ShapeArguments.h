#pragma once

#include "commands/SceneArguments.h"

namespace lightbox::mel {

struct TransformAndShape {
    std::shared_ptr<Node> transform;
    std::shared_ptr<DagNode> shape;
};

/// Creates a transform with the name and a shape named after it: "pCube1" gets "pCubeShape1".
TransformAndShape MakeShape(Host& host, const std::string& type, const std::string& name);
/// Returns the shape that an edit or query works on. The call's object, or else the first selected node,
/// names the shape or its transform. Fails when that is not a shape of the type.
TransformAndShape ShapeOfCall(const CommandCall& call, const std::string& type);

} // namespace lightbox::mel
