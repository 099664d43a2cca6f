#pragma once

#include "scene/TypeRegistry.h"

#include <memory>
#include <vector>

namespace lightbox {

/// One attribute. Flags: k keyable, c in the channel box, h hidden, o output (not writable, not stored), m
/// array, n array whose indexes do not matter. `extra` holds the suffixes of a number with parts or the
/// fields of an enum ("A:B=3"), separated by colons, and the default of a text.
struct AttributeRow {
    AttributeKind kind;
    const char* longName;
    const char* shortName;
    double defaultValue = 0.0;
    const char* flags = "";
    const char* extra = "";
};

/// Adds a type with the attributes of its base (none for an empty name) and those of the rows. Throws for a
/// name that two attributes have.
std::shared_ptr<NodeType> MakeType(TypeRegistry& registry, const char* name, const char* base,
                                   MFn::Type apiType, const std::vector<AttributeRow>& rows);

/// An attribute as a row describes it, for a compound that is put together by hand.
std::shared_ptr<Attribute> MakeAttribute(const AttributeRow& row);

} // namespace lightbox
