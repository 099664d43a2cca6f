#pragma once

#include <cstdint>

namespace lightbox::mel {

/// How an argument of a command was written, which decides whether a text that begins with a hyphen is a
/// flag: a bare word always is; a text in quotes is one only before the first object, so that what is stored
/// in quotes may begin with a hyphen; a computed one is a flag wherever a flag may stand.
enum class ArgumentForm : std::uint8_t { Computed, FlagWord, Quoted };

} // namespace lightbox::mel
