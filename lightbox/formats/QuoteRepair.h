#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace lightbox {

/// Puts the quotation mark right that one wrong bit has changed into another character, or has made of one,
/// or the backslash that escapes one. Returns the statement with it; nothing when the lines do not tell which
/// character it was. Values are written line by line, and no string goes over the end of a line, so damage
/// stays in its line. A string without its opening mark must not hold a ";", which ends the statement then.
std::optional<std::string> WithQuoteRestored(std::string_view statement);

} // namespace lightbox
