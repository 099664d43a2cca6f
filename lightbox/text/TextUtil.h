#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace lightbox {

/// Number of characters of a UTF-8 text.
std::size_t CharacterCount(std::string_view text);
/// The byte offset of a character in a UTF-8 text; the text's size when it has fewer characters.
std::size_t CharacterOffset(std::string_view text, std::size_t character);
/// Whether the text matches a pattern with * ? [abc] [a-z].
bool MatchesGlob(std::string_view text, std::string_view pattern);
/// Splits a text at runs of any of the separators; no part is empty.
std::vector<std::string> Tokens(std::string_view text, std::string_view separators);
std::string Stripped(std::string_view text);
std::string Joined(const std::vector<std::string>& parts, std::string_view separator);

} // namespace lightbox
