#pragma once

#include <string>
#include <string_view>

namespace lightbox {

/// The text as a MEL string literal with its quotes. Quotes, backslashes, line breaks and tabs are escaped;
/// all other bytes stay.
std::string Quoted(std::string_view text);

} // namespace lightbox
