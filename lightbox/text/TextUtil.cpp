#include "text/TextUtil.h"

#include <algorithm>

namespace lightbox {

namespace {

bool IsContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0u) == 0x80u;
}

/// Whether a letter is in the set that starts at `begin`, just after the "[". `end` receives the position
/// after the set. A "[" without a closing bracket is an ordinary character.
bool InSet(std::string_view pattern, std::size_t begin, char letter, std::size_t& end) {
    const auto close = pattern.find(']', begin + 1);
    if (close == std::string_view::npos) {
        end = begin;
        return letter == '[';
    }
    end = close + 1;
    std::size_t i = begin;
    const bool isNegated = pattern[i] == '^' || pattern[i] == '!';
    i += isNegated ? 1 : 0;
    bool found = false;
    while (i < close) {
        const bool isRange = i + 2 < close && pattern[i + 1] == '-';
        const char last = isRange ? pattern[i + 2] : pattern[i];
        found = found || (letter >= pattern[i] && letter <= last);
        i += isRange ? 3 : 1;
    }
    return found != isNegated;
}

} // namespace

std::size_t CharacterCount(std::string_view text) {
    return text.size() - static_cast<std::size_t>(std::count_if(text.begin(), text.end(), IsContinuation));
}

std::size_t CharacterOffset(std::string_view text, std::size_t character) {
    std::size_t offset = 0;
    while (offset < text.size()) {
        if (!IsContinuation(text[offset])) {
            if (character == 0) {
                break;
            }
            --character;
        }
        ++offset;
    }
    return offset;
}

bool MatchesGlob(std::string_view text, std::string_view pattern) {
    std::size_t t = 0;
    std::size_t p = 0;
    // Positions of the last star and of the end of the text it matches: backtracking never goes further back.
    std::size_t star = std::string_view::npos;
    std::size_t eaten = 0;
    while (t < text.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            eaten = t;
            continue;
        }
        std::size_t next = p + 1;
        const bool isSet = p < pattern.size() && pattern[p] == '[';
        const bool fits = p < pattern.size() && (isSet ? InSet(pattern, p + 1, text[t], next)
                                                       : pattern[p] == '?' || pattern[p] == text[t]);
        if (fits) {
            ++t;
            p = next;
        } else if (star != std::string_view::npos) {
            p = star + 1;
            t = ++eaten;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', p) == std::string_view::npos;
}

std::vector<std::string> Tokens(std::string_view text, std::string_view separators) {
    std::vector<std::string> tokens;
    for (auto begin = text.find_first_not_of(separators); begin != std::string_view::npos;) {
        const auto end = text.find_first_of(separators, begin);
        tokens.emplace_back(text.substr(begin, end - begin));
        begin = text.find_first_not_of(separators, end);
    }
    return tokens;
}

std::string Stripped(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n\v\f";
    const auto begin = text.find_first_not_of(blanks);
    if (begin == std::string_view::npos) {
        return std::string();
    }
    return std::string(text.substr(begin, text.find_last_not_of(blanks) - begin + 1));
}

std::string Joined(const std::vector<std::string>& parts, std::string_view separator) {
    std::string text;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        text.append(i > 0 ? separator : std::string_view()).append(parts[i]);
    }
    return text;
}

} // namespace lightbox
