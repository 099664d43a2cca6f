#pragma once

namespace lightbox {

class TypeRegistry;

/// Adds the node types of materials and of the sets that assign them.
void AddMaterialTypes(TypeRegistry& registry);

} // namespace lightbox
