#pragma once

#include "scene/Attribute.h"

#include <memory>
#include <string>

namespace lightbox {

class Scene;

/// Makes attributes from the names of types that `addAttr` and scene files use.
class AttributeFactory {
public:
    /// An attribute of a type by its name ("double", "enum", "string", a plug-in's data type; "double3" and
    /// "compound" give a compound without its children). Null for a type that is not known, and for a name
    /// that no attribute can have.
    static std::shared_ptr<Attribute> Make(const Scene& scene, const std::string& type,
                                           const std::string& longName, const std::string& shortName);
    /// Whether an attribute can have the name.
    static bool IsName(const std::string& name);
    /// A copy with its children, for another node.
    static std::shared_ptr<Attribute> Clone(const Attribute& attribute);
    /// How many children a numeric compound's type asks for ("double3": 3); 0 for other types.
    static int ChildCountOf(const std::string& type);
};

} // namespace lightbox
