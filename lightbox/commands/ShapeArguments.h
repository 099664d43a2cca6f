#pragma once

#include "commands/SceneArguments.h"

namespace lightbox::mel {

struct TransformAndShape {
    std::shared_ptr<Node> transform;
    std::shared_ptr<DagNode> shape;
};

/// Makes a transform of that name and its shape, which follows it: "pCube1" has "pCubeShape1".
TransformAndShape MakeShape(Host& host, const std::string& type, const std::string& name);
/// What a command that edits or queries a type of shape works on: the shape named by itself or by its
/// transform, or the selected one. Fails for anything else.
TransformAndShape ShapeOfCall(const CommandCall& call, const std::string& type);

} // namespace lightbox::mel
