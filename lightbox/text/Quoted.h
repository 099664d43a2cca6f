#pragma once

#include <string>
#include <string_view>

namespace lightbox {

/// The text as a MEL string literal with its quotes: quotes, backslashes, line breaks and tabs escaped, every
/// other byte as it is.
std::string Quoted(std::string_view text);

} // namespace lightbox
