#pragma once

#include <cstdint>

namespace lightbox::mel {

/// How a command argument was written. This decides whether a text that begins with a hyphen is a flag. A
/// bare word always is. A quoted text is one only before the first object, so that stored texts may begin
/// with a hyphen. A computed text is one wherever a flag is allowed.
enum class ArgumentForm : std::uint8_t { Computed, FlagWord, Quoted };

} // namespace lightbox::mel
