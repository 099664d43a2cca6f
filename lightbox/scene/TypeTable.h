#pragma once

#include "scene/TypeRegistry.h"

#include <memory>
#include <vector>

namespace lightbox {

/// An attribute in a table. Flags: k keyable, c in the channel box, h hidden, o output (not writable, not
/// stored), m array, n array whose indices do not matter. `extra` holds, separated by colons, the child
/// suffixes of a numeric compound or the fields of an enum ("A:B=3"); of a string attribute, the default.
struct AttributeRow {
    AttributeKind kind;
    const char* longName;
    const char* shortName;
    double defaultValue = 0.0;
    const char* flags = "";
    const char* extra = "";
};

/// Adds a type with the attributes of its base (none for an empty name) and of the rows. Throws when two
/// attributes share a name.
std::shared_ptr<NodeType> MakeType(TypeRegistry& registry, const char* name, const char* base,
                                   MFn::Type apiType, const std::vector<AttributeRow>& rows);

/// Makes an attribute from a row, for a compound assembled by hand.
std::shared_ptr<Attribute> MakeAttribute(const AttributeRow& row);

} // namespace lightbox
