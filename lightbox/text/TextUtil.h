#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace lightbox {

/// Number of characters of a text in UTF-8.
std::size_t CharacterCount(std::string_view text);
/// The byte at which a character begins; the text's size beyond its end.
std::size_t CharacterOffset(std::string_view text, std::size_t character);
/// True when the text matches a pattern with * ? [abc] [a-z].
bool MatchesGlob(std::string_view text, std::string_view pattern);
/// The pieces between runs of any of the separators; none is empty.
std::vector<std::string> Tokens(std::string_view text, std::string_view separators);
std::string Stripped(std::string_view text);
std::string Joined(const std::vector<std::string>& parts, std::string_view separator);

} // namespace lightbox
