#pragma once

namespace lightbox {

class TypeRegistry;

/// Adds the node type mesh and the nodes that make polygon primitives.
void AddMeshTypes(TypeRegistry& registry);

} // namespace lightbox
