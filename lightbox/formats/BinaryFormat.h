#pragma once

#include "scene/Attribute.h"

#include <cstdint>
#include <string_view>

namespace lightbox::binary {

// The constants of the binary container, shared by its writer and its reader.
// docs/lightbox-scene-files.md describes the format.

constexpr std::uint32_t VERSION = 3;

constexpr std::string_view HEAD = "HEAD";
constexpr std::string_view REFERENCE = "REFR";
constexpr std::string_view REQUIREMENT = "REQU";
constexpr std::string_view UNITS = "UNIT";
constexpr std::string_view INFO = "INFO";
constexpr std::string_view NODE = "NODE";
constexpr std::string_view CONFIGURATION = "CONF";
constexpr std::string_view EDIT = "EDIT";
constexpr std::string_view DEFAULT_NODE = "DFLT";
constexpr std::string_view BROKEN = "BRKN";
constexpr std::string_view CONNECTION = "CONN";
constexpr std::string_view STATEMENT = "KEPT";
constexpr std::string_view DONE = "DONE";

enum NodeFlag : std::uint8_t { SHARED_NODE = 1, LOCKED_NODE = 2 };

enum class ValueKind : std::uint8_t { None, Numbers, Booleans, Texts, Data };

/// A flag of a setting. Unset leaves the plug's flag unchanged.
enum class FlagState : std::uint8_t { Unset, Off, On };

/// The flags of an attribute, from the lowest bit on.
constexpr bool Attribute::*ATTRIBUTE_FLAGS[] = {
    &Attribute::readable,    &Attribute::writable, &Attribute::storable,
    &Attribute::connectable, &Attribute::keyable,  &Attribute::hidden,
    &Attribute::channelBox,  &Attribute::multi,    &Attribute::usedAsColor};

/// Further bits: two texts follow the attribute's children, and the index of an element has no meaning.
constexpr std::uint32_t HAS_TEXTS = 1U << 9;
constexpr std::uint32_t ANY_INDEX = 1U << 10;

} // namespace lightbox::binary
