#pragma once

#include "scene/Attribute.h"

#include <memory>
#include <string>

namespace lightbox {

class Scene;

/// Makes attributes from the type names that `addAttr` and scene files use.
class AttributeFactory {
public:
    /// Makes an attribute of a type such as "double", "enum", "string" or a plug-in's data type. "double3"
    /// and "compound" give a compound without children. Returns null for an unknown type and for an invalid
    /// name.
    static std::shared_ptr<Attribute> Make(const Scene& scene, const std::string& type,
                                           const std::string& longName, const std::string& shortName);
    /// Makes an attribute of a plug-in's data type that is not known. It holds no value.
    static std::shared_ptr<Attribute> MakeUnknown(const std::string& type, const std::string& longName,
                                                  const std::string& shortName);
    /// True when the name is valid for an attribute.
    static bool IsName(const std::string& name);
    /// Returns a copy with copies of its children, for another node.
    static std::shared_ptr<Attribute> Clone(const Attribute& attribute);
    /// Gives a numeric compound of that type the children that `addAttr -dataType` implies, named by the
    /// letters behind its names.
    static void AddImpliedChildren(Attribute& compound, const std::string& type);
    /// Returns the number of children of a numeric compound type ("double3": 3), or 0 for other types.
    static int ChildCountOf(const std::string& type);
};

} // namespace lightbox
